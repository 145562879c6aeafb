#include "graphics/tool.h"

#include <gtest/gtest.h>

#include "graphics/editing.h"
#include "graphics/history.h"
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
  void ShowRubberBand(std::optional<Box> box) override { band = box; }
  ObjectStyle Style() const override { return style; }
  int GridStep() const override { return grid; }
  int Tolerance() const override { return 1; }
  const DeviceFonts& Fonts() const override { return fonts; }
  std::optional<std::string> AskText(
      const std::string& proposed, const std::function<void(const std::string&)>& typed) override {
    asked = proposed;
    typed("typed");
    shownWhileAsked = shown;
    return answer;
  }

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
  ObjectStyle style;
  int grid = 1;
  DeviceFonts fonts;
  std::string asked;
  std::optional<Drawing> shownWhileAsked;
  std::optional<std::string> answer;
  std::unique_ptr<Tool> tool;
};

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

TEST(Tools, TextIsAskedForAndChangedByAClick) {
  Desk desk;
  desk.style.text.inverse = true;
  desk.Take(ToolKind::Text);
  desk.Click({3, 9});  // cancelled
  ASSERT_TRUE(desk.shownWhileAsked.has_value());
  EXPECT_EQ(desk.shownWhileAsked->at(0).text, "typed");
  EXPECT_FALSE(desk.shown.has_value());
  EXPECT_TRUE(desk.drawing.empty());
  desk.answer = "Hallo";
  desk.Click({3, 9});
  ASSERT_EQ(desk.drawing.size(), 1U);
  EXPECT_EQ(desk.drawing[0].text, "Hallo");
  EXPECT_EQ(desk.drawing[0].penMode, PenMode::InverseText);
  EXPECT_EQ(BoundsOf(desk.drawing[0]), (Box{3, 9, 7, 9}));  // cells of one pixel without fonts
  desk.answer = "Du";
  desk.Click({4, 9});
  EXPECT_EQ(desk.asked, "Hallo");
  EXPECT_EQ(desk.shownWhileAsked->at(0).text, "typed");
  EXPECT_EQ(desk.drawing[0].text, "Du");
  EXPECT_EQ(desk.drawing[0].style, desk.style.text);
  desk.Take(ToolKind::Select).tool->DoubleClick({{4, 9}, false, false});
  EXPECT_EQ(desk.asked, "Du");
}

}  // namespace
}  // namespace kelvo
