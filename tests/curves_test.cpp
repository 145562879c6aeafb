#include "graphics/curves.h"

#include <gtest/gtest.h>

#include <cmath>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/pic_reader.h"
#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

constexpr int kSide = 64;

PixelMap Painted(std::vector<Point> points) {
  PixelMap display(kSide, kSide);
  PaintDrawing(display, {WithVertices(Kind::Polyline, std::move(points))}, {}, 0);
  return display;
}

TEST(Curves, ARoundedRectangleIsTheSameFromAllSides) {
  for (int radius = 0; radius < 16; ++radius) {
    const std::vector<Point> points = RoundedRectangle({0, 0, kSide - 1, kSide - 1}, radius);
    EXPECT_EQ(points.front(), points.back());
    EXPECT_LE(points.size(), 5U + 4 * static_cast<std::size_t>(radius + 1));
    const PixelMap map = Painted(points);
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        ASSERT_EQ(map.At(x, y), map.At(kSide - 1 - x, y)) << radius << ' ' << x << ' ' << y;
        ASSERT_EQ(map.At(x, y), map.At(x, kSide - 1 - y)) << radius << ' ' << x << ' ' << y;
      }
    }
    EXPECT_TRUE(map.At(0, radius));
    EXPECT_TRUE(map.At(0, kSide / 2));
    if (radius > 0) {
      EXPECT_FALSE(map.At(0, radius / 4));
    }
  }
}

TEST(Curves, AWholeEllipseIsTheSameFromAllSides) {
  for (int width = 1; width <= kSide; ++width) {
    for (int height = 1; height <= kSide; height += 3) {
      PixelMap map(width, height);
      const auto points = EllipseArc({0, 0, width - 1, height - 1}, {.arcTo = 0});
      PaintDrawing(map, {WithVertices(Kind::Polyline, points)}, {}, 0);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          ASSERT_EQ(map.At(x, y), map.At(width - 1 - x, y)) << width << ' ' << height;
          ASSERT_EQ(map.At(x, y), map.At(x, height - 1 - y)) << width << ' ' << height;
        }
      }
    }
  }
}

TEST(Curves, AnArcLiesOnTheTerminalsEllipse) {
  for (const Box box : {Box{3, 3, 61, 61}, {0, 20, 62, 36}, {10, 0, 20, 62}, {5, 5, 9, 9}}) {
    const double rx = (box.Width() - 1) / 2.0;
    const double ry = (box.Height() - 1) / 2.0;
    const PixelMap map = Painted(EllipseArc(box, {.arcFrom = 270, .arcTo = 270}));
    const DrawingObject whole =
        Boxed(Kind::Ellipse, {box.right, box.top}, {box.left, box.bottom}, false);
    PixelMap ellipse(kSide, kSide);
    PaintDrawing(ellipse, {whole}, {}, 0);
    const auto near = [](const PixelMap& other, int x, int y) {
      for (int i = 0; i < 9; ++i) {
        if (other.At(x + i % 3 - 1, y + i / 3 - 1)) return true;
      }
      return false;
    };
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        if (map.At(x, y)) {
          EXPECT_TRUE(near(ellipse, x, y)) << rx << ' ' << ry << ' ' << x << ' ' << y;
        }
        if (ellipse.At(x, y)) {
          EXPECT_TRUE(near(map, x, y)) << rx << ' ' << ry << ' ' << x << ' ' << y;
        }
      }
    }
  }
}

TEST(Curves, AnglesCountAgainstTheClockAndASectorHasItsMiddle) {
  const Box box{0, 0, 40, 20};
  const std::vector<Point> quarter = EllipseArc(box, {.arcFrom = 0, .arcTo = 90});
  EXPECT_EQ(quarter.front(), (Point{40, 10}));
  EXPECT_EQ(quarter.back(), (Point{20, 20}));
  const std::vector<Point> rest = EllipseArc(box, {.arcFrom = 90, .arcTo = 360, .sector = true});
  EXPECT_EQ(rest.front(), (Point{20, 10}));
  EXPECT_EQ(rest[1], (Point{20, 20}));
  EXPECT_EQ(rest[rest.size() - 2], (Point{40, 10}));
  EXPECT_EQ(rest.back(), rest.front());
}

TEST(Curves, WhateverTheBoxFilesAndCommandsCarryItUnchanged) {
  RandomDrawings random(7);
  Drawing drawing;
  for (int i = 0; i < 200; ++i) {
    const int left = random.Number(0, 60);
    const int bottom = random.Number(0, 60);
    const Box box{left, bottom, random.Number(left, 63), random.Number(bottom, 63)};
    const CurveStyle style{.radius = random.Number(0, 99),
                           .arcFrom = random.Number(0, 360),
                           .arcTo = random.Number(0, 360),
                           .sector = random.Number(0, 1) == 1};
    const std::vector<Point> points =
        i % 2 == 0 ? RoundedRectangle(box, style.radius) : EllipseArc(box, style);
    ASSERT_GE(points.size(), 2U);
    drawing.push_back(WithVertices(Kind::Polyline, points));
    const Box drawn = BoundsOf(drawing.back());
    EXPECT_EQ(United(drawn, box), box);
    if (i % 2 == 0) {
      EXPECT_EQ(drawn, box);
    }
  }
  EXPECT_EQ(ReadWmf(WriteWmf(drawing, kSide, kSide).bytes, kSide, kSide, {}).drawing, drawing);
  TerminalTraits traits;
  traits.displayHeight = kSide;
  const std::string commands = CreatePic(drawing, traits).text;
  EXPECT_EQ(CreatePic(ReadPic(commands, kSide, {}).drawing, traits).text, commands);
}

}  // namespace
}  // namespace kelvo
