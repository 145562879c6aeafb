#include "graphics/tool.h"

#include <gtest/gtest.h>

#include <tuple>

#include "graphics/editing.h"
#include "graphics/history.h"
#include "graphics/painter.h"
#include "tests/drawing_samples.h"

namespace kelvo {
namespace {

// An editor without a window: the drawing, what is shown of it, and an operator who types `answer`.
class Desk : public ToolSurface {
 public:
  const Drawing& Current() const override { return drawing; }
  void Show(Drawing preview) override { shown = std::move(preview); }
  void GiveUp() override { shown.reset(); }
  void Commit(Drawing next) override {
    history.Record(drawing, next);
    drawing = std::move(next);
    shown.reset();
  }
  void Select(Drawing next) override { Commit(std::move(next)); }
  void EnterGroup(std::size_t) override {}
  bool LeaveGroup() override { return false; }
  bool InGroup() const override { return false; }
  void PickPoint(std::optional<std::size_t> point) override { picked = point; }
  std::optional<std::size_t> PickedPoint() const override { return picked; }
  void ShowRubberBand(std::optional<Box> box) override { band = box; }
  ObjectStyle Style() const override { return style; }
  int GridStep() const override { return grid; }
  std::optional<double> SnapReach() const override { return snapReach; }
  Box Display() const override { return {0, 0, 239, 127}; }
  void ShowSnapPlaces(const SnapPlaces& places) override { held = places; }
  double Tolerance() const override { return tolerance; }
  const DeviceFonts& Fonts() const override { return fonts; }
  PixelMap Pixels() const override {
    PixelMap pixels(64, 64);
    PaintDrawing(pixels, drawing, fonts, 1);
    return pixels;
  }
  void TypeText(Drawing next, std::size_t index, Point at) override {
    asked = next[index].text;
    caretAt = at;
    SetText(next[index], answer, fonts);
    Commit(std::move(next));
  }

  void ChangePicture() override { ++picturesChanged; }

  Desk& Take(ToolKind kind) {
    tool = MakeTool(kind, *this);
    return *this;
  }
  Desk& Drag(Point from, Point to, bool shift = false, bool control = false) {
    tool->Press({from, shift, control});
    tool->Drag({to, shift, control});
    tool->Release({to, shift, control});
    return *this;
  }
  Desk& Click(Point at, bool control = false) {
    tool->Press({at, false, control});
    tool->Release({at, false, control});
    return *this;
  }

  Drawing drawing;
  History history;
  std::optional<Drawing> shown;
  std::optional<Box> band;
  std::optional<std::size_t> picked;
  ObjectStyle style;
  int grid = 1;
  std::optional<double> snapReach;
  SnapPlaces held;
  double tolerance = 1;
  DeviceFonts fonts;
  std::string asked;
  int picturesChanged = 0;
  Point caretAt;
  std::string answer;
  std::unique_ptr<Tool> tool;
};

// At whatever zoom: what is drawn is hit.
TEST(Tools, EveryPixelOfALineIsHit) {
  const Drawing drawing = {WithVertices(Kind::Polyline, {{3, 5}, {40, 17}, {31, 60}})};
  PixelMap pixels(64, 64);
  PaintDrawing(pixels, drawing, {}, 0);
  int black = 0;
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) {
      if (!pixels.At(x, y)) continue;
      ++black;
      for (const double tolerance : {5.0, 1.0, 0.3, 0.0}) {
        EXPECT_TRUE(ObjectAt(drawing, {x, 63 - y}, tolerance)) << x << ' ' << y << ' ' << tolerance;
      }
    }
  }
  EXPECT_GT(black, 60);
  EXPECT_FALSE(ObjectAt(drawing, {20, 40}, 5));
}

TEST(Tools, SmallAndHollowSelectionsMoveWhereTheyAreHeldInside) {
  Desk desk;
  desk.tolerance = 1.67;  // zoom 3
  desk.drawing = {Boxed(Kind::Rectangle, {13, 13}, {10, 10}, true),
                  Boxed(Kind::Rectangle, {60, 60}, {30, 30}, false)};
  desk.Take(ToolKind::Select).Click({11, 11});
  for (const Point held : {Point{10, 10}, {13, 13}, {11, 12}}) {
    const Box before = BoundsOf(desk.drawing[0]);
    desk.Drag(held, {held.x + 1, held.y});
    EXPECT_EQ(BoundsOf(desk.drawing[0]), (Box{before.left + 1, 10, before.right + 1, 13}));
    desk.Drag({held.x + 1, held.y}, held);
  }
  desk.Drag({15, 15}, {22, 22});  // its grip is outside, and takes the edges along
  EXPECT_EQ(BoundsOf(desk.drawing[0]), (Box{10, 10, 20, 20}));
  desk.Click({30, 45}).Drag({45, 45}, {50, 45});
  EXPECT_EQ(BoundsOf(desk.drawing[1]), (Box{35, 30, 65, 60}));
  desk.Click({45, 45});
  EXPECT_FALSE(AnySelected(desk.drawing));
}

TEST(Tools, DraggingDrawsShapesInTheChosenStyle) {
  Desk desk;
  desk.style.penMode = PenMode::Erase;
  desk.style.filled = true;
  desk.grid = 5;
  desk.Take(ToolKind::Rectangle).Drag({11, 9}, {1, 21});
  desk.Take(ToolKind::Ellipse).Drag({0, 0}, {10, 5}, true);
  desk.Take(ToolKind::Line).Drag({0, 0}, {20, 5}, true);
  Drawing expected = {Erasing(Boxed(Kind::Rectangle, {10, 20}, {0, 10}, true)),
                      Erasing(Boxed(Kind::Ellipse, {10, 10}, {0, 0}, true)),
                      Erasing(WithVertices(Kind::Line, {{0, 0}, {20, 0}}))};
  expected.back().selected = true;
  EXPECT_EQ(desk.drawing, expected);
  desk.Click({50, 50});  // no way, no object
  EXPECT_EQ(desk.drawing.size(), 3U);
}

TEST(Tools, GivingUpLeavesTheDrawingAlone) {
  Desk desk;
  for (const ToolKind kind : {ToolKind::Rectangle, ToolKind::Polyline, ToolKind::Select}) {
    desk.Take(kind);
    desk.tool->Press({{1, 1}, false, false});
    desk.tool->Drag({{9, 9}, false, false});
    desk.tool->Cancel();
    desk.tool->Release({{9, 9}, false, false});
    EXPECT_FALSE(desk.shown);
    EXPECT_FALSE(desk.band);
  }
  EXPECT_TRUE(desk.drawing.empty());
  EXPECT_FALSE(desk.history.CanUndo());
}

TEST(Tools, ClicksMakeAPolyline) {
  Desk desk;
  desk.Take(ToolKind::Polyline).Click({0, 0}).Click({5, 5});
  desk.tool->Hover({{9, 0}, false, false});
  ASSERT_TRUE(desk.shown);
  EXPECT_EQ(desk.shown->back().vertices.size(), 3U);
  EXPECT_TRUE(desk.drawing.empty());
  desk.Click({9, 1});
  desk.tool->DoubleClick({{9, 1}, false, false});
  ASSERT_EQ(desk.drawing.size(), 1U);
  EXPECT_EQ(desk.drawing[0].vertices, (std::vector<Point>{{0, 0}, {5, 5}, {9, 1}}));
  desk.Click({1, 1});
  desk.tool->Finish();  // one point is nothing
  EXPECT_EQ(desk.drawing.size(), 1U);
}

TEST(Tools, ADoubleClickPutsAPointIntoEveryKindOfLine) {
  Desk desk;
  desk.drawing = {WithVertices(Kind::Line, {{0, 0}, {20, 0}}),
                  WithVertices(Kind::Vertices, {{30, 0}, {60, 0}, {60, 30}})};
  desk.Take(ToolKind::Select);
  for (const Point at : {Point{7, 1}, {45, 15}}) {
    desk.Click(at);
    desk.tool->DoubleClick({at});
  }
  EXPECT_EQ(desk.drawing[0].kind, Kind::Polyline);
  EXPECT_EQ(desk.drawing[0].vertices, (std::vector<Point>{{0, 0}, {7, 0}, {20, 0}}));
  EXPECT_EQ(desk.drawing[1].vertices, (std::vector<Point>{{30, 0}, {60, 0}, {60, 30}, {45, 15}}));
}

class SelectToolTest : public testing::Test {
 protected:
  void SetUp() override {
    desk_.drawing = {Boxed(Kind::Rectangle, {10, 10}, {0, 0}, true),
                     Boxed(Kind::Rectangle, {30, 10}, {20, 0}, true)};
    desk_.Take(ToolKind::Select);
  }
  std::string Selection() const {
    std::string selection;
    for (const DrawingObject& object : desk_.drawing) selection += object.selected ? '1' : '0';
    return selection;
  }
  Desk desk_;
};

TEST_F(SelectToolTest, ClicksAndRubberBandsSelect) {
  EXPECT_EQ((desk_.Click({5, 5}), Selection()), "10");
  EXPECT_EQ((desk_.Click({25, 5}), Selection()), "01");
  EXPECT_EQ((desk_.Click({5, 5}, true), Selection()), "11");
  EXPECT_EQ((desk_.Click({5, 5}, true), Selection()), "01");
  EXPECT_EQ((desk_.Click({50, 50}), Selection()), "00");
  EXPECT_EQ((desk_.Drag({-5, -5}, {15, 15}), Selection()), "10");
  EXPECT_EQ((desk_.Drag({40, 40}, {-5, -5}), Selection()), "11");
  EXPECT_FALSE(desk_.history.CanUndo());
}

TEST_F(SelectToolTest, AltReachesWhatLiesBelow) {
  desk_.drawing.push_back(Boxed(Kind::Rectangle, {12, 12}, {-2, -2}, true));
  desk_.drawing.push_back(Boxed(Kind::Ellipse, {40, 40}, {2, 2}, true));
  const ToolEvent at{{8, 8}, false, false, true};
  const auto click = [&] {
    desk_.tool->Press(at);
    desk_.tool->Release(at);
    return Selection();
  };
  EXPECT_EQ((desk_.Click({8, 8}), Selection()), "0001");
  EXPECT_EQ(click(), "0010");
  EXPECT_EQ(click(), "1000");
  // Dragged it moves, though two lie on it; the next click goes round.
  desk_.tool->Press(at);
  desk_.tool->Drag({{9, 8}, false, false, true});
  desk_.tool->Release({{9, 8}, false, false, true});
  EXPECT_EQ(Selection(), "1000");
  EXPECT_EQ(BoundsOf(desk_.drawing[0]), (Box{1, 0, 11, 10}));
  EXPECT_EQ(click(), "0001");
  desk_.Click({100, 100});
  EXPECT_EQ(click(), "0001") << "the uppermost first";
}

TEST_F(SelectToolTest, DraggingMovesTheSelectionAsOneStep) {
  desk_.Click({5, 5}).Click({25, 5}, true);
  desk_.tool->Press({{5, 5}, false, false});
  for (int x = 6; x < 20; ++x) desk_.tool->Drag({{x, 7}, false, false});
  EXPECT_EQ(BoundsOf(desk_.drawing[0]).left, 0);
  ASSERT_TRUE(desk_.shown);
  EXPECT_EQ(BoundsOf((*desk_.shown)[1]).left, 34);
  desk_.tool->Release({{8, 7}, false, false});
  EXPECT_EQ(BoundsOf(desk_.drawing[1]), (Box{23, 2, 33, 12}));
  desk_.history.Undo(desk_.drawing);
  EXPECT_EQ(BoundsOf(desk_.drawing[0]).left, 0);
  EXPECT_FALSE(desk_.history.CanUndo());
}

TEST_F(SelectToolTest, ShiftKeepsTheRowAndTheGridCatchesTheCorner) {
  desk_.grid = 8;
  desk_.Click({5, 5}).Drag({5, 5}, {14, 7}, true);
  EXPECT_EQ(BoundsOf(desk_.drawing[0]), (Box{8, 0, 18, 10}));
}

TEST_F(SelectToolTest, EscapeGivesUpTheDragFirstAndThenTheSelection) {
  desk_.Click({5, 5});
  desk_.tool->Press({{5, 5}, false, false});
  desk_.tool->Drag({{9, 9}, false, false});
  desk_.tool->Escape();
  EXPECT_FALSE(desk_.shown);
  EXPECT_EQ(Selection(), "10");
  desk_.tool->Escape();
  EXPECT_EQ(Selection(), "00");
}

TEST_F(SelectToolTest, GripsResize) {
  desk_.Click({5, 5}).Drag({10, 10}, {15, 12});
  EXPECT_EQ(BoundsOf(desk_.drawing[0]), (Box{0, 0, 15, 12}));
}

TEST(Tools, AFillGoesUpToWhatIsDrawn) {
  Desk desk;
  desk.drawing = {Boxed(Kind::Ellipse, {40, 40}, {20, 20})};
  desk.Take(ToolKind::Fill).Click({30, 30});
  ASSERT_EQ(desk.drawing.size(), 2U);
  EXPECT_EQ(BoundsOf(desk.drawing[1]), (Box{21, 21, 39, 39}));
  EXPECT_FALSE(desk.drawing[1].selected);
  desk.Click({30, 30});
  EXPECT_EQ(desk.drawing.size(), 2U) << "nothing is left to fill";
  desk.style.penMode = PenMode::Erase;
  desk.Click({30, 30});
  ASSERT_EQ(desk.drawing.size(), 3U);
  EXPECT_EQ(BoundsOf(desk.drawing[2]), (Box{20, 20, 40, 40})) << "the outline, too, is black";
  EXPECT_TRUE(desk.Pixels() == PixelMap(64, 64));
}

TEST(Tools, EdgesAndMiddlesSnapToThoseOfOthers) {
  Desk desk;
  desk.drawing = {Boxed(Kind::Rectangle, {60, 60}, {20, 20}, true),
                  Boxed(Kind::Rectangle, {109, 109}, {100, 100}, true)};
  desk.snapReach = 2;
  const auto moved = [&](Point to, bool control = false) {
    desk.Click({105, 105});
    desk.tool->Press({{105, 105}, false, false});
    desk.tool->Drag({to, false, control});
    const SnapPlaces held = desk.held;
    desk.tool->Release({to, false, control});
    EXPECT_EQ(desk.held, SnapPlaces());
    const Box box = BoundsOf(desk.drawing[1]);
    desk.history.Undo(desk.drawing);
    return std::tuple(box.left, box.bottom, held.x, held.y);
  };
  const auto expected = [](int left, int bottom, std::optional<int> x, std::optional<int> y) {
    return std::tuple(left, bottom, x, y);
  };
  desk.Take(ToolKind::Select);
  // To the left edge, and above by what is too far; suspended; the right edge to the left one; the
  // middle to the display's, between two pixels; middle to middle as nearly as can be.
  EXPECT_EQ(moved({27, 77}), expected(20, 72, 40, std::nullopt));
  EXPECT_EQ(moved({27, 77}, true), expected(22, 72, std::nullopt, std::nullopt));
  EXPECT_EQ(moved({17, 77}), expected(11, 72, 40, std::nullopt));
  EXPECT_EQ(moved({121, 90}), expected(115, 85, 239, std::nullopt));
  EXPECT_EQ(moved({140, 46}), expected(135, 40, std::nullopt, 80));
  // What is drawn and resized, along the axes that it moves on.
  desk.Take(ToolKind::Line).Drag({61, 58}, {118, 90});
  EXPECT_EQ(desk.drawing.back().vertices, (std::vector<Point>{{60, 60}, {119, 90}}));
  desk.Take(ToolKind::Select).Click({105, 105}).Drag({100, 105}, {62, 59});
  EXPECT_EQ(BoundsOf(desk.drawing[1]), (Box{60, 100, 109, 109}));
}

TEST(Tools, TextIsTypedWhereItIsClickedAndChangedWhereItStands) {
  Desk desk;
  desk.style.text.inverse = true;
  desk.answer = "Hallo";
  desk.Take(ToolKind::Text).Click({3, 9});
  ASSERT_EQ(desk.drawing.size(), 1U);
  EXPECT_EQ(desk.drawing[0].text, "Hallo");
  EXPECT_EQ(desk.drawing[0].penMode, PenMode::InverseText);
  EXPECT_EQ(BoundsOf(desk.drawing[0]), (Box{3, 9, 7, 9}));  // cells of one pixel without fonts
  desk.answer = "Du";
  desk.Click({4, 9});
  EXPECT_EQ(desk.asked, "Hallo");
  EXPECT_EQ(desk.caretAt, (Point{4, 9}));
  EXPECT_EQ(desk.drawing[0].text, "Du");
  EXPECT_EQ(desk.drawing[0].style, desk.style.text);
  desk.answer = "Sie";
  desk.Take(ToolKind::Select).tool->DoubleClick({{4, 9}, false, false});
  EXPECT_EQ(desk.asked, "Du");
  EXPECT_TRUE(desk.tool->Open());
  EXPECT_EQ(desk.asked, "Sie");
  EXPECT_EQ(desk.caretAt, (Point{6, 9}));
}

}  // namespace
}  // namespace kelvo
