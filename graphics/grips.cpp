#include "graphics/grips.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "graphics/editing.h"

namespace kelvo {

namespace {

const DrawingObject* SingleWithPoints(const Drawing& drawing) {
  if (SelectedCount(drawing) != 1) return nullptr;
  const auto object = std::find_if(drawing.begin(), drawing.end(),
                                   [](const DrawingObject& o) { return o.selected; });
  return object->vertices.empty() ? nullptr : &*object;
}

int Edge(int which, int low, int high) {
  return which < 0 ? low : which > 0 ? high : low + (high - low) / 2;
}

void MoveEdge(int which, int to, int& low, int& high) {
  if (which < 0) low = to;
  if (which > 0) high = to;
  if (low > high) std::swap(low, high);
}

// The box whose longer change decides about both sides.
Point KeepShape(const Box& box, const Grip& grip, Point p) {
  if (grip.edgeX == 0 || grip.edgeY == 0) return p;
  const Point fixed{Edge(-grip.edgeX, box.left, box.right), Edge(-grip.edgeY, box.bottom, box.top)};
  const double scaleX = static_cast<double>(std::abs(p.x - fixed.x) + 1) / box.Width();
  const double scaleY = static_cast<double>(std::abs(p.y - fixed.y) + 1) / box.Height();
  const double scale = std::max(scaleX, scaleY);
  const auto reach = [scale](int length) {
    return static_cast<int>(std::lround(length * scale)) - 1;
  };
  return {fixed.x + grip.edgeX * reach(box.Width()), fixed.y + grip.edgeY * reach(box.Height())};
}

// Points are at the ends of what may be long; a box has grips on all of its sides.
bool GripsCover(const Drawing& drawing, double tolerance) {
  const Box box = SelectionBounds(drawing);
  const int side = SingleWithPoints(drawing) != nullptr ? std::max(box.Width(), box.Height())
                                                        : std::min(box.Width(), box.Height());
  return side <= 4 * tolerance + 2;
}

// A grip's middle must be further from the pixel that it moves than its own half.
int DistanceOutside(double tolerance) { return static_cast<int>(std::ceil(0.5 + 0.8 * tolerance)); }

}  // namespace

std::vector<Grip> GripsOf(const Drawing& drawing, double tolerance) {
  std::vector<Grip> grips;
  if (const DrawingObject* object = SingleWithPoints(drawing)) {
    for (std::size_t i = 0; i < object->vertices.size(); ++i) {
      grips.push_back({object->vertices[i], {}, 0, 0, i});
    }
  } else if (AnySelected(drawing)) {
    const Box box = SelectionBounds(drawing);
    const int outside = GripsCover(drawing, tolerance) ? DistanceOutside(tolerance) : 0;
    for (int y = -1; y <= 1; ++y) {
      for (int x = -1; x <= 1; ++x) {
        if (x == 0 && y == 0) continue;
        const Point away{x * outside, y * outside};
        const Point at{Edge(x, box.left, box.right) + away.x,
                       Edge(y, box.bottom, box.top) + away.y};
        grips.push_back({at, away, x, y, std::nullopt});
      }
    }
  }
  return grips;
}

bool GripsCrowded(const Drawing& drawing, double tolerance) {
  const DrawingObject* const object = SingleWithPoints(drawing);
  if (object == nullptr) return false;
  const Box box = BoundsOf(*object);
  const double room = static_cast<double>(object->vertices.size()) * tolerance * 2;
  return GripsCover(drawing, tolerance) || room > box.Width() + box.Height();
}

// Of grips that lie on each other the last one is taken, so that what is small grows.
std::optional<Grip> GripAt(const Drawing& drawing, Point p, double tolerance) {
  const std::vector<Grip> grips = GripsOf(drawing, tolerance);
  if (grips.empty() || (InsideSelected(drawing, p) && GripsCover(drawing, tolerance))) {
    return std::nullopt;
  }
  const auto hit = std::find_if(grips.rbegin(), grips.rend(), [&](const Grip& grip) {
    return std::abs(grip.at.x - p.x) <= tolerance && std::abs(grip.at.y - p.y) <= tolerance;
  });
  if (hit == grips.rend()) return std::nullopt;
  return *hit;
}

Drawing DragGrip(const Drawing& drawing, const Grip& grip, Point p, bool keepShape,
                 const DeviceFonts& fonts) {
  Drawing dragged = drawing;
  if (grip.vertex) {
    for (DrawingObject& object : dragged) {
      if (object.selected) object.vertices[*grip.vertex] = p;
    }
    return dragged;
  }
  const Box from = SelectionBounds(drawing);
  Box to = from;
  const Point target = keepShape ? KeepShape(from, grip, p) : p;
  MoveEdge(grip.edgeX, target.x, to.left, to.right);
  MoveEdge(grip.edgeY, target.y, to.bottom, to.top);
  StretchSelected(dragged, from, to, fonts);
  return dragged;
}

}  // namespace kelvo
