#include "graphics/editing.h"

#include <gtest/gtest.h>

#include "graphics/costs.h"
#include "graphics/dither.h"
#include "graphics/grips.h"
#include "graphics/history.h"
#include "graphics/painter.h"
#include "graphics/transforms.h"
#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

DrawingObject BoxAt(int left, int bottom, int width, int height) {
  return Boxed(Kind::Rectangle, {left + width - 1, bottom + height - 1}, {left, bottom});
}

DrawingObject Chosen(DrawingObject object) {
  object.selected = true;
  return object;
}

std::vector<int> Lefts(const Drawing& drawing) {
  std::vector<int> lefts;
  for (const DrawingObject& object : drawing) lefts.push_back(BoundsOf(object).left);
  return lefts;
}

TEST(Editing, OrderKeepsTheSelectedOnesAmongThemselves) {
  const Drawing start = {BoxAt(0, 0, 1, 1), Chosen(BoxAt(1, 0, 1, 1)), Chosen(BoxAt(2, 0, 1, 1)),
                         BoxAt(3, 0, 1, 1), BoxAt(4, 0, 1, 1)};
  const std::pair<Order, std::vector<int>> rows[] = {{Order::ToFront, {0, 3, 4, 1, 2}},
                                                     {Order::Forward, {0, 3, 1, 2, 4}},
                                                     {Order::Backward, {1, 2, 0, 3, 4}},
                                                     {Order::ToBack, {1, 2, 0, 3, 4}}};
  for (const auto& [order, lefts] : rows) {
    Drawing drawing = start;
    ReorderSelected(drawing, order);
    EXPECT_EQ(Lefts(drawing), lefts);
  }
}

TEST(Editing, GroupsTakeThePlaceOfTheirUppermostMember) {
  Drawing drawing = {Chosen(BoxAt(0, 0, 1, 1)), BoxAt(1, 0, 1, 1), Chosen(BoxAt(2, 0, 1, 1)),
                     BoxAt(3, 0, 1, 1)};
  const Drawing before = drawing;
  GroupSelected(drawing);
  ASSERT_EQ(drawing.size(), 3U);
  EXPECT_EQ(Lefts(drawing), (std::vector<int>{1, 0, 3}));
  EXPECT_EQ(Lefts(drawing[1].members), (std::vector<int>{0, 2}));
  EXPECT_TRUE(drawing[1].selected);
  EXPECT_FALSE(drawing[1].members[0].selected);
  UngroupSelected(drawing);
  EXPECT_EQ(drawing, (Drawing{before[1], before[0], before[2], before[3]}));

  Drawing single = {Chosen(BoxAt(0, 0, 1, 1))};
  GroupSelected(single);
  EXPECT_EQ(single[0].kind, Kind::Rectangle);
}

TEST(Editing, AlignsAndDistributes) {
  const Box display{0, 0, 99, 49};
  const std::tuple<Alignment, int, int> rows[] = {
      {Alignment::Left, 10, 10},  {Alignment::Right, 36, 10}, {Alignment::CentreX, 23, 10},
      {Alignment::Bottom, 30, 4}, {Alignment::Top, 30, 10},   {Alignment::CentreY, 30, 7},
  };
  for (const auto& [alignment, left, bottom] : rows) {
    Drawing drawing = {Chosen(BoxAt(10, 4, 30, 10)), Chosen(BoxAt(30, 10, 4, 4)),
                       BoxAt(0, 0, 1, 1)};
    AlignSelected(drawing, alignment, display);
    EXPECT_EQ(BoundsOf(drawing[1]), BoundsOf(BoxAt(left, bottom, 4, 4)));
    EXPECT_EQ(BoundsOf(drawing[2]), BoundsOf(BoxAt(0, 0, 1, 1)));
  }
  Drawing single = {Chosen(BoxAt(10, 4, 20, 10))};
  AlignSelected(single, Alignment::Right, display);
  EXPECT_EQ(BoundsOf(single[0]).right, 99);

  Drawing row = {Chosen(BoxAt(0, 0, 10, 1)), Chosen(BoxAt(90, 0, 10, 1)),
                 Chosen(BoxAt(11, 0, 4, 1)), Chosen(BoxAt(12, 0, 6, 1))};
  DistributeSelected(row, Axis::X);  // 70 pixels of room, three gaps
  EXPECT_EQ(Lefts(row), (std::vector<int>{0, 90, 33, 61}));
}

TEST(Editing, StretchingTextTakesTheNearestZoom) {
  const DeviceFonts fonts;  // without fonts every cell is one pixel
  DrawingObject text = Boxed(Kind::Text, {11, 9}, {10, 9});
  text.style.emplace();
  text.text = "ab";
  Drawing drawing = {Chosen(text)};
  StretchSelected(drawing, {10, 9, 11, 9}, {10, 5, 14, 9}, fonts);
  EXPECT_EQ(drawing[0].style, (TextAttributes{0, 3, 5}));
  EXPECT_EQ(BoundsOf(drawing[0]), (Box{10, 5, 15, 9}));
}

TEST(Editing, FindsWhatLiesUnderThePointer) {
  const DrawingObject line = WithVertices(Kind::Line, {{0, 0}, {20, 10}});
  const Drawing drawing = {Boxed(Kind::Rectangle, {40, 40}, {0, 0}, true),
                           Boxed(Kind::Rectangle, {30, 30}, {5, 5}),
                           Boxed(Kind::Ellipse, {70, 20}, {50, 0}), GroupOf({line})};
  const std::tuple<Point, int, std::optional<std::size_t>> rows[] = {
      {{10, 5}, 0, 3},  {{10, 7}, 1, 0},   {{10, 7}, 2, 3},  {{30, 12}, 0, 1}, {{20, 20}, 0, 0},
      {{60, 20}, 0, 2}, {{60, 10}, 0, {}}, {{60, 19}, 1, 2}, {{90, 90}, 3, {}}};
  for (const auto& [p, tolerance, index] : rows) {
    EXPECT_EQ(ObjectAt(drawing, p, tolerance), index) << p.x << " " << p.y << " " << tolerance;
  }
}

TEST(Editing, SnapsToTheNearestGridPoint) {
  EXPECT_EQ(Snapped({7, 12}, 8), (Point{8, 16}));
  EXPECT_EQ(Snapped({-3, -5}, 8), (Point{0, -8}));
  EXPECT_EQ(Snapped({7, 12}, 1), (Point{7, 12}));
}

TEST(Grips, ResizeTheBoxOrMoveThePoint) {
  const DeviceFonts fonts;
  const Drawing box = {Chosen(BoxAt(10, 10, 11, 11)), BoxAt(0, 0, 2, 2)};
  EXPECT_EQ(GripsOf(box, 1).size(), 8U);
  const auto corner = GripAt(box, {21, 20}, 1);
  ASSERT_TRUE(corner.has_value());
  EXPECT_EQ(BoundsOf(DragGrip(box, *corner, {30, 15}, false, fonts)[0]), (Box{10, 10, 30, 15}));
  EXPECT_EQ(BoundsOf(DragGrip(box, *corner, {5, 15}, false, fonts)[0]), (Box{5, 10, 10, 15}));
  EXPECT_EQ(BoundsOf(DragGrip(box, *corner, {30, 15}, true, fonts)[0]), (Box{10, 10, 30, 30}));
  EXPECT_FALSE(GripAt(box, {0, 0}, 1));

  const Drawing dot = {Chosen(BoxAt(10, 10, 1, 1))};  // all grips in one place: the last one grows
  EXPECT_EQ(BoundsOf(DragGrip(dot, *GripAt(dot, {11, 11}, 1), {14, 12}, false, fonts)[0]),
            (Box{10, 10, 14, 12}));

  const Drawing path = {Chosen(WithVertices(Kind::Polyline, {{0, 0}, {5, 5}, {9, 0}}))};
  const auto vertex = GripAt(path, {5, 5}, 0);
  ASSERT_TRUE(vertex.has_value());
  EXPECT_EQ(DragGrip(path, *vertex, {6, 8}, false, fonts)[0].vertices[1], (Point{6, 8}));
}

// Random edits, undone and redone in any order, lead through the same drawings.
TEST(History, UndoAndRedoExchangeValues) {
  RandomDrawings random(5);
  History history;
  Drawing drawing;
  std::vector<Drawing> past = {drawing};
  std::vector<std::size_t> revisions = {history.Revision()};
  for (int i = 0; i < 200; ++i) {
    Drawing next = drawing;
    Paste(next, random.Next(), random.Number(0, 5), 0);
    for (DrawingObject& object : next) object.selected = random.Number(0, 3) == 0;
    if (random.Number(0, 1) == 0) DeleteSelected(next);
    if (random.Number(0, 1) == 0) MoveSelected(next, 1, 1);
    history.Record(drawing, next);
    drawing = next;
    SelectAll(next, false);
    if (history.Revision() == revisions.back()) continue;
    past.push_back(next);
    revisions.push_back(history.Revision());
  }
  std::size_t at = past.size() - 1;
  for (int i = 0; i < 500; ++i) {
    const bool back = random.Number(0, 2) != 0;
    EXPECT_EQ(history.CanUndo(), at > 0);
    EXPECT_EQ(history.CanRedo(), at + 1 < past.size());
    if (back && at > 0) {
      history.Undo(drawing);
      --at;
    } else if (!back && at + 1 < past.size()) {
      history.Redo(drawing);
      ++at;
    }
    SelectAll(drawing, false);
    ASSERT_EQ(drawing, past[at]);
    ASSERT_EQ(history.Revision(), revisions[at]);
  }
}

TEST(History, StepsWithTheSameKeyMergeAndSelectionIsNoStep) {
  History history;
  const Drawing start = {BoxAt(0, 0, 4, 4), BoxAt(9, 9, 4, 4)};
  Drawing drawing = start;
  drawing[0].selected = true;
  history.Record(start, drawing);
  EXPECT_FALSE(history.CanUndo());
  for (int i = 0; i < 3; ++i) {
    Drawing next = drawing;
    MoveSelected(next, 1, 0);
    history.Record(drawing, next, "move");
    drawing = next;
  }
  Drawing next = drawing;
  MoveSelected(next, 0, 1);
  history.Record(drawing, next, "align");
  drawing = next;
  history.Undo(drawing);
  EXPECT_EQ(BoundsOf(drawing[0]).left, 3);
  history.Undo(drawing);
  EXPECT_FALSE(history.CanUndo());
  EXPECT_EQ(BoundsOf(drawing[0]), BoundsOf(start[0]));
  history.Redo(drawing);
  EXPECT_EQ(BoundsOf(drawing[0]).left, 3);
}

TEST(Costs, CountCommandsSecondsAndBytes) {
  TerminalTraits traits;
  traits.displayHeight = 64;
  const DrawingCosts nothing = CostsOf({}, traits, 9600);
  EXPECT_EQ(nothing.wireBytes, 3U);
  EXPECT_EQ(nothing.macroBytes, 0U);
  EXPECT_EQ(nothing.bitmapBytes, std::nullopt);
  const DrawingCosts costs = CostsOf({BoxAt(-5, 0, 15, 4)}, traits, 9600);
  EXPECT_EQ(costs.macroBytes, std::string("^GP 9, 60;^GR-5, 63;").size());
  EXPECT_EQ(costs.wireBytes, costs.macroBytes + 3);
  EXPECT_DOUBLE_EQ(costs.seconds, static_cast<double>(costs.wireBytes) / 960);
  EXPECT_EQ(costs.bitmapBytes, std::nullopt) << "no picture, nothing to store";
  DrawingObject picture = PictureAt({0, 0}, Picture(1, 1, {kBlack}));
  SetCorners(picture, {0, 0, 9, 3});
  EXPECT_EQ(CostsOf({BoxAt(0, 0, 90, 40), GroupOf({picture})}, traits, 9600).bitmapBytes, 2U * 4U);
}

PixelMap Painted(const Drawing& drawing) {
  PixelMap pixels(64, 64);
  PaintDrawing(pixels, drawing, {}, 0x800000, Unsent::Drawn);
  return pixels;
}

TEST(Transforms, TwoFlipsAndFourTurnsChangeNothing) {
  Drawing start = {Boxed(Kind::Rectangle, {30, 20}, {10, 10}, true),
                   GroupOf({WithVertices(Kind::Polyline, {{40, 10}, {50, 30}, {12, 35}})}),
                   Boxed(Kind::Ellipse, {60, 40}, {41, 31}, false),
                   PictureAt({15, 60}, Picture(3, 2, {1, 2, 3, 4, 5, 6}))};
  SelectAll(start, true);
  for (const Axis axis : {Axis::X, Axis::Y}) {
    Drawing flipped = start;
    FlipSelected(flipped, axis);
    EXPECT_NE(flipped, start);
    FlipSelected(flipped, axis);
    EXPECT_EQ(flipped, start);
  }
  Drawing turned = start;
  for (int i = 0; i < 4; ++i) {
    TurnSelected(turned);
    EXPECT_EQ(turned == start, i == 3) << i;
  }
  Drawing icon = {PictureAt({0, 1}, Picture(3, 2, {1, 2, 3, 4, 5, 6}))};
  SelectAll(icon, true);
  TurnSelected(icon);  // clockwise
  EXPECT_EQ(icon[0].picture, Picture(2, 3, {4, 1, 5, 2, 6, 3}));
  InvertSelected(icon);
  EXPECT_EQ(icon[0].picture.At(0, 0), kWhite - 4);
}

TEST(Transforms, APictureOfTheSelectionShowsWhatTheCanvasShows) {
  RandomDrawings drawings(5);
  int made = 0;
  for (int i = 0; i < 200; ++i) {
    Drawing drawing = drawings.Next();
    SelectAll(drawing, true);
    const PixelMap before = Painted(drawing);
    Drawing pictures = drawing;
    MakePicturesOfShapes(pictures, {64, 64, {}, 0x800000});
    PixelMap sent(64, 64);
    PaintDrawing(sent, pictures, {}, 0x800000);
    ASSERT_TRUE(sent == before) << i << AsText(before) << AsText(sent);
    MakePictureOfSelected(drawing, {64, 64, {}, 0x800000});
    if (drawing.size() != 1 || drawing[0].kind != Kind::Picture) continue;
    ++made;
    EXPECT_TRUE(Painted(drawing) == before) << i << AsText(before) << AsText(Painted(drawing));
  }
  EXPECT_GT(made, 50);
  // A filled shape that is never sent becomes one that is.
  Drawing polygon = {WithVertices(Kind::Vertices, {{0, 0}, {10, 0}, {10, 10}, {0, 10}})};
  polygon[0].filled = polygon[0].selected = true;
  MakePictureOfSelected(polygon, {64, 64, {}, 0x800000});
  ASSERT_EQ(polygon.size(), 1U);
  EXPECT_EQ(BoundsOf(polygon[0]), (Box{0, 0, 10, 10}));
  EXPECT_EQ(polygon[0].picture.At(5, 5), kBlack);
}

int BlackPixels(const Picture& picture) {
  int count = 0;
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) {
      const Colour colour = picture.At(x, y);
      EXPECT_TRUE(colour == kBlack || colour == kWhite);
      count += colour == kBlack ? 1 : 0;
    }
  }
  return count;
}

TEST(Dither, KeepsTheBrightnessOfGreys) {
  for (const int grey : {0, 64, 128, 192, 255}) {
    const Picture even(64, 64, std::vector<Colour>(64 * 64, static_cast<Colour>(grey) * 0x010101U));
    const int expected = 64 * 64 * (255 - grey) / 255;
    for (const Dithering dithering : {Dithering::Diffusion, Dithering::Ordered}) {
      // Whatever the threshold for colour values is: the delivered one is pure blue of half
      // strength.
      for (const Colour threshold : {0x808080U, 0x800000U, 0U}) {
        const int black = BlackPixels(MadeMonochrome(even, dithering, threshold));
        EXPECT_NEAR(black, expected, 64 * 64 / 100) << grey;
      }
      int before = 0;
      for (int middle = 0; middle <= 256; ++middle) {
        const int black = BlackPixels(MadeMonochrome(even, dithering, 0x800000, middle));
        EXPECT_GE(black, before - 64) << grey << ' ' << middle;
        before = black;
      }
    }
    EXPECT_EQ(BlackPixels(MadeMonochrome(even, Dithering::Threshold, 0x808080)),
              grey < 128 ? 64 * 64 : 0);
  }
  EXPECT_EQ(MadeGrey(Picture(1, 1, {0x0000ff})).At(0, 0), 0x4c4c4cU);  // red
}

}  // namespace
}  // namespace kelvo
