#include "graphics/snap_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace kelvo {

namespace {

using Places = std::array<int, 3>;  // the lower edge, the upper one, the middle

Places PlacesX(const Box& box) { return {2 * box.left, 2 * box.right, box.left + box.right}; }

Places PlacesY(const Box& box) { return {2 * box.bottom, 2 * box.top, box.bottom + box.top}; }

void SortOut(std::vector<int>& places) {
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
}

// The way to the nearest line, half pixels; of lines equally far the lower one.
std::optional<int> WayToNearest(const std::vector<int>& lines, int place) {
  std::optional<int> way;
  const auto above = std::lower_bound(lines.begin(), lines.end(), place);
  if (above != lines.end()) way = *above - place;
  if (above != lines.begin()) {
    const int below = *std::prev(above) - place;
    if (!way || -below <= *way) way = below;
  }
  return way;
}

// What moves a place to a line, in pixels, and the line. A middle between two pixels is met by a
// pixel as nearly as that can be.
void SnapAxis(const std::vector<int>& lines, const Places& places, double reach, int& step,
              std::optional<int>& held) {
  const int farthest = static_cast<int>(std::floor(2 * reach));
  int nearest = farthest + 1;
  for (const int place : places) {
    const auto way = WayToNearest(lines, place);
    if (!way || std::abs(*way) >= nearest) continue;
    nearest = std::abs(*way);
    step = *way / 2;
    held = place + *way;
  }
}

}  // namespace

SnapLines::SnapLines(const Drawing& drawing, const Box& display, bool withoutSelected) {
  const auto add = [this](const Box& box) {
    const Places x = PlacesX(box);
    const Places y = PlacesY(box);
    x_.insert(x_.end(), x.begin(), x.end());
    y_.insert(y_.end(), y.begin(), y.end());
  };
  add(display);
  for (const DrawingObject& object : drawing) {
    if (!withoutSelected || !object.selected) add(BoundsOf(object));
  }
  SortOut(x_);
  SortOut(y_);
}

SnapLines::Snap SnapLines::Of(const Box& box, double reach) const {
  Snap snap;
  SnapAxis(x_, PlacesX(box), reach, snap.dx, snap.held.x);
  SnapAxis(y_, PlacesY(box), reach, snap.dy, snap.held.y);
  return snap;
}

}  // namespace kelvo
