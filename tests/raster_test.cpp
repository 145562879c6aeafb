#include "graphics/raster.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>

#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

constexpr int kFar = 32767;
constexpr int kFarthest = std::numeric_limits<int>::max();

using Draw = std::function<void(PixelMap&, Ink)>;

struct Golden {
  const char* name;
  int width;
  int height;
  Draw draw;
  const char* picture;
};

const Golden kGoldens[] = {
    {"FlatLine", 7, 3, [](PixelMap& m, Ink i) { DrawLine(m, 0, 0, 6, 2, i); },
     "##.....\n..###..\n.....##\n"},
    {"SteepLine", 3, 5, [](PixelMap& m, Ink i) { DrawLine(m, 2, 0, 0, 4, i); },
     "..#\n..#\n.#.\n.#.\n#..\n"},
    {"LineOfOnePixel", 3, 2, [](PixelMap& m, Ink i) { DrawLine(m, 1, 1, 1, 1, i); }, "...\n.#.\n"},
    {"LineFarBeyondTheEdges", 4, 4,
     [](PixelMap& m, Ink i) { DrawLine(m, -kFar, -kFar, kFar, kFar, i); },
     "#...\n.#..\n..#.\n...#\n"},
    {"RectangleFromAnyCorners", 5, 4,
     [](PixelMap& m, Ink i) { DrawRectangle(m, 4, 3, 0, 0, false, i); },
     "#####\n#...#\n#...#\n#####\n"},
    {"FilledRectangleClipped", 4, 3,
     [](PixelMap& m, Ink i) { DrawRectangle(m, 2, -kFar, kFarthest, 1, true, i); },
     "..##\n..##\n....\n"},
    {"RectangleOfOneRow", 4, 2, [](PixelMap& m, Ink i) { DrawRectangle(m, 1, 1, 3, 1, false, i); },
     "....\n.###\n"},
    {"Circle", 11, 11, [](PixelMap& m, Ink i) { DrawEllipse(m, 5, 5, 5, 5, false, i); },
     "...#####...\n..#.....#..\n.#.......#.\n#.........#\n#.........#\n#.........#\n#.........#\n"
     "#.........#\n.#.......#.\n..#.....#..\n...#####...\n"},
    {"FlatEllipse", 11, 5, [](PixelMap& m, Ink i) { DrawEllipse(m, 5, 2, 5, 2, false, i); },
     "..#######..\n.#.......#.\n#.........#\n.#.......#.\n..#######..\n"},
    {"FilledEllipse", 7, 5, [](PixelMap& m, Ink i) { DrawEllipse(m, 3, 2, 3, 2, true, i); },
     "..###..\n#######\n#######\n#######\n..###..\n"},
    {"EllipseOfHeightZero", 5, 3, [](PixelMap& m, Ink i) { DrawEllipse(m, 2, 1, 2, 0, false, i); },
     ".....\n#####\n.....\n"},
    {"EllipseOfWidthZero", 3, 3, [](PixelMap& m, Ink i) { DrawEllipse(m, 1, 1, 0, 1, false, i); },
     ".#.\n.#.\n.#.\n"},
    {"EllipseOfNegativeRadius", 3, 1,
     [](PixelMap& m, Ink i) { DrawEllipse(m, 1, 0, -1, 1, false, i); }, "...\n"},
    {"Polygon", 7, 4,
     [](PixelMap& m, Ink i) {
       DrawPolygon(m, {{3, 0}, {6, 3}, {0, 3}}, false, i);
     },
     "...#...\n..#.#..\n.#...#.\n#######\n"},
};

TEST(Raster, FiguresAreDrawnErasedAndInvertedAlike) {
  for (const Golden& golden : kGoldens) {
    SCOPED_TRACE(golden.name);
    PixelMap map(golden.width, golden.height);
    golden.draw(map, Ink::Set);
    EXPECT_EQ(AsText(map), golden.picture);

    PixelMap inverted(golden.width, golden.height);
    golden.draw(inverted, Ink::Invert);
    EXPECT_EQ(inverted, map);  // no pixel is touched twice

    golden.draw(map, Ink::Clear);
    EXPECT_EQ(SetPixels(map), 0);
  }
}

TEST(Raster, EvenOddFillLeavesAnInnerPolygonOpen) {
  PixelMap map(9, 7);
  DrawPolygon(map, {{0, 0}, {8, 0}, {8, 6}, {0, 6}, {0, 0}, {2, 2}, {6, 2}, {6, 4}, {2, 4}, {2, 2}},
              true, Ink::Set);
  EXPECT_FALSE(map.At(4, 3));
  EXPECT_TRUE(map.At(1, 3));
  EXPECT_TRUE(map.At(7, 3));
}

TEST(Raster, ALineIsTheSameFromBothEndsAndWhenClipped) {
  std::minstd_rand random(7);
  std::uniform_int_distribution<int> near(-40, 80);
  for (int i = 0; i < 2000; ++i) {
    const int x0 = near(random), y0 = near(random), x1 = near(random), y1 = near(random);
    PixelMap forth(40, 40), back(40, 40), whole(160, 160);
    DrawLine(forth, x0, y0, x1, y1, Ink::Set);
    DrawLine(back, x1, y1, x0, y0, Ink::Set);
    DrawLine(whole, x0 + 60, y0 + 60, x1 + 60, y1 + 60, Ink::Set);
    ASSERT_EQ(forth, back);
    for (int y = 0; y < 40; ++y) {
      for (int x = 0; x < 40; ++x) ASSERT_EQ(forth.At(x, y), whole.At(x + 60, y + 60));
    }
  }
}

// Every pixel of an outline has a neighbour on the outline in both directions, the filled figure
// is the outline and its inside, and all four quarters agree.
TEST(Raster, EllipsesAreClosedAndSymmetric) {
  for (int rx = 0; rx <= 30; ++rx) {
    for (int ry = 0; ry <= 30; ++ry) {
      PixelMap outline(64, 64), filled(64, 64);
      DrawEllipse(outline, 32, 32, rx, ry, false, Ink::Set);
      DrawEllipse(filled, 32, 32, rx, ry, true, Ink::Set);
      ASSERT_TRUE(outline.At(32 + rx, 32) && outline.At(32, 32 + ry)) << rx << " " << ry;
      ASSERT_FALSE(outline.At(33 + rx, 32) || outline.At(32, 33 + ry)) << rx << " " << ry;
      for (int y = 0; y < 64; ++y) {
        for (int x = 1; x < 64; ++x) {
          ASSERT_EQ(outline.At(x, y), outline.At(64 - x, y));
          ASSERT_TRUE(!outline.At(x, y) || filled.At(x, y));
          const bool edge = filled.At(x, y) && !(filled.At(x - 1, y) && filled.At(x + 1, y) &&
                                                 filled.At(x, y - 1) && filled.At(x, y + 1));
          ASSERT_TRUE(!edge || outline.At(x, y)) << "gap " << rx << " " << ry;
        }
      }
    }
  }
}

TEST(Raster, FiguresBeyondAllBoundsNeitherOverflowNorDrawOutside) {
  constexpr int kValues[] = {std::numeric_limits<int>::min(), -kFar - 1, -1, 0, 3, kFar, kFarthest};
  PixelMap map(8, 8);
  for (const int a : kValues) {
    for (const int b : kValues) {
      for (const int c : kValues) {
        DrawLine(map, a, b, c, a, Ink::Invert);
        DrawRectangle(map, a, b, c, a, a > b, Ink::Invert);
        DrawEllipse(map, a, b, c, c, a > b, Ink::Invert);
        DrawPolygon(map, {{a, b}, {c, a}, {b, c}}, a > b, Ink::Invert);
        DrawBitmap(map, a, b, AllSet(2, 2), Ink::Invert);
      }
    }
  }
  map.Clear();
  DrawEllipse(map, 3 - kFarthest, 3, kFarthest, kFarthest, true, Ink::Set);
  EXPECT_TRUE(map.At(0, 3));
}

TEST(Raster, ABitmapDrawsItsSetPixelsOnly) {
  PixelMap bits(2, 2);
  bits.Put(0, 0, Ink::Set);
  PixelMap map = AllSet(3, 2);
  DrawBitmap(map, 1, 0, bits, Ink::Clear);
  EXPECT_EQ(AsText(map), "#.#\n###\n");
  DrawBitmap(map, 1, 0, bits, Ink::Set);
  DrawBitmap(map, -1, -1, bits, Ink::Clear);  // only unset pixels of it are visible
  EXPECT_EQ(SetPixels(map), 6);
}

}  // namespace
}  // namespace kelvo
