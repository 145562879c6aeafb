#include "graphics/painter.h"

#include <gtest/gtest.h>

#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

std::string Painted(const Drawing& drawing) {
  PixelMap display(8, 4);
  PaintDrawing(display, drawing, DeviceFonts(), 1);
  return AsText(display);
}

const DrawingObject kDot = WithVertices(Kind::Line, {{1, 0}, {1, 0}});

TEST(Painter, ALevelThatCannotBeSentIsNotDrawn) {
  const DrawingObject far = Boxed(Kind::Rectangle, {40000, 3}, {0, 0}, true);
  EXPECT_EQ(Painted({kDot, far}), Painted({}));
  EXPECT_EQ(Painted({kDot, GroupOf({far})}), Painted({kDot}));
}

TEST(Drawing, BoundsMoveAndStretch) {
  DrawingObject group =
      GroupOf({Boxed(Kind::Rectangle, {4, 4}, {2, 0}), WithVertices(Kind::Line, {{0, 1}, {3, 9}})});
  EXPECT_EQ(BoundsOf(group), (Box{0, 0, 4, 9}));
  MoveBy(group, 10, -1);
  EXPECT_EQ(BoundsOf(group), (Box{10, -1, 14, 8}));
  Stretch(group, {10, -1, 14, 8}, {0, 0, 8, 18});
  EXPECT_EQ(group.members[0].corner1, (Point{8, 10 - 2}));
  EXPECT_EQ(group.members[1].vertices[1], (Point{6, 18}));
  DrawingObject flat = WithVertices(Kind::Line, {{5, 2}, {9, 2}});
  Stretch(flat, BoundsOf(flat), {0, 7, 8, 7});  // no height to share out
  EXPECT_EQ(flat.vertices, (std::vector<Point>{{0, 7}, {8, 7}}));
}

}  // namespace
}  // namespace kelvo
