#include "graphics/flood_fill.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kelvo {

namespace {

struct Pixel {
  int x;
  int y;  // downward
};

// Takes whole stretches of a row at once; each pixel is taken once, and each stretch asks the rows
// above and below one time.
class Flood {
 public:
  Flood(const PixelMap& shown, Pixel from)
      : shown_(shown), area_(shown.Width(), shown.Height()), filled_(shown.At(from.x, from.y)) {
    waiting_.push_back(from);
    while (!waiting_.empty()) {
      const Pixel next = waiting_.back();
      waiting_.pop_back();
      if (Belongs(next.x, next.y)) TakeStretch(next);
    }
  }
  PixelMap Take() { return std::move(area_); }

 private:
  bool Belongs(int x, int y) const {
    return x >= 0 && y >= 0 && x < shown_.Width() && y < shown_.Height() &&
           shown_.At(x, y) == filled_ && !area_.At(x, y);
  }

  void TakeStretch(Pixel in) {
    int first = in.x;
    int last = in.x;
    while (Belongs(first - 1, in.y)) --first;
    while (Belongs(last + 1, in.y)) ++last;
    area_.PutRow(first, last, in.y, Ink::Set);
    for (const int y : {in.y - 1, in.y + 1}) {
      for (int x = first; x <= last; ++x) {
        const bool begins = Belongs(x, y) && (x == first || !Belongs(x - 1, y));
        if (begins) waiting_.push_back({x, y});
      }
    }
  }

  const PixelMap& shown_;
  PixelMap area_;
  bool filled_;
  std::vector<Pixel> waiting_;
};

// Rows count downward here, too.
struct Extent {
  int left;
  int top;
  int right;
  int bottom;
  std::size_t pixels;
};

Extent ExtentOf(const PixelMap& area) {
  Extent extent{area.Width(), area.Height(), -1, -1, 0};
  for (int y = 0; y < area.Height(); ++y) {
    for (int x = 0; x < area.Width(); ++x) {
      if (!area.At(x, y)) continue;
      extent.left = std::min(extent.left, x);
      extent.right = std::max(extent.right, x);
      extent.top = std::min(extent.top, y);
      extent.bottom = y;
      ++extent.pixels;
    }
  }
  return extent;
}

Picture PictureOf(const PixelMap& area, const Extent& extent) {
  std::vector<Colour> colours;
  for (int y = extent.top; y <= extent.bottom; ++y) {
    for (int x = extent.left; x <= extent.right; ++x) {
      colours.push_back(area.At(x, y) ? kBlack : kWhite);
    }
  }
  return {extent.right - extent.left + 1, extent.bottom - extent.top + 1, std::move(colours)};
}

bool Lies(const PixelMap& shown, Pixel at) {
  return at.x >= 0 && at.y >= 0 && at.x < shown.Width() && at.y < shown.Height();
}

}  // namespace

PixelMap FloodArea(const PixelMap& shown, Point at) {
  const Pixel from{at.x, shown.Height() - 1 - at.y};
  if (!Lies(shown, from)) return {shown.Width(), shown.Height()};
  return Flood(shown, from).Take();
}

std::optional<DrawingObject> ObjectOf(const PixelMap& area) {
  const Extent extent = ExtentOf(area);
  if (extent.pixels == 0) return std::nullopt;
  const int top = area.Height() - 1;
  const Box box{extent.left, top - extent.bottom, extent.right, top - extent.top};
  DrawingObject object;
  SetCorners(object, box);
  const auto all = static_cast<std::size_t>(box.Width()) * static_cast<std::size_t>(box.Height());
  if (extent.pixels == all) {
    object.kind = Kind::Rectangle;  // a few characters on the line
    object.filled = true;
  } else {
    object.kind = Kind::Picture;
    object.picture = PictureOf(area, extent);
  }
  return object;
}

std::optional<DrawingObject> MakeFill(const PixelMap& shown, Point at, PenMode penMode) {
  const Pixel from{at.x, shown.Height() - 1 - at.y};
  const bool black = shown.At(from.x, from.y);
  if (!Lies(shown, from) || black == (penMode != PenMode::Erase)) return std::nullopt;
  std::optional<DrawingObject> fill = ObjectOf(FloodArea(shown, at));
  if (fill) fill->penMode = penMode;
  return fill;
}

}  // namespace kelvo
