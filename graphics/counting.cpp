#include "graphics/counting.h"

namespace kelvo {

Point Counting::FirstCorner(const Box& box) const {
  return Shown({box.left, LikeCommands() ? box.top : box.bottom});
}

Point Counting::LastCorner(const Box& box) const {
  return Shown({box.right, LikeCommands() ? box.bottom : box.top});
}

Box Counting::BoxAt(Point corner, int width, int height) const {
  const Point stored = Stored(corner);
  const int bottom = LikeCommands() ? stored.y - height + 1 : stored.y;
  return {stored.x, bottom, stored.x + width - 1, bottom + height - 1};
}

}  // namespace kelvo
