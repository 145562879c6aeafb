// The editor without a mouse.

#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <set>

#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

class GrafikByKeys : public Grafik {
 protected:
  // From where the mouse was last.
  void StartAt(Point at) const {
    MoveMouse({0, 0});
    MoveMouse(at);
  }
  void MoveMouse(Point p) const {
    const QPointF at = Canvas()->ToWidget(p);
    QMouseEvent move(QEvent::MouseMove, at, Canvas()->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     {});
    QApplication::sendEvent(Canvas(), &move);
  }
  void Go(int dx, int dy, Qt::KeyboardModifiers keys = {}) const {
    Steps(dx, Qt::Key_Right, Qt::Key_Left, keys);
    Steps(dy, Qt::Key_Up, Qt::Key_Down, keys);
  }
  void Steps(int way, Qt::Key up, Qt::Key down, Qt::KeyboardModifiers keys) const {
    const Qt::Key key = way < 0 ? down : up;
    for (int i = 0; i < std::abs(way) / 10; ++i) Key(key, keys | Qt::ShiftModifier);
    for (int i = 0; i < std::abs(way) % 10; ++i) Key(key, keys);
  }
  void Enter(Qt::KeyboardModifiers keys = {}) const { Key(Qt::Key_Return, keys); }
};

TEST_F(GrafikByKeys, EveryToolDrawsAsWithTheMouse) {
  const char* const strokes[] = {"toolLinie",    "toolRechteck",     "toolEllipse", "toolStift",
                                 "toolRadierer", "toolRundrechteck", "toolBogen"};
  for (const char* tool : strokes) {
    SCOPED_TRACE(tool);
    Do(tool);
    Drag({20, 30}, {52, 41});
    const DrawingObject byMouse = Objects().back();
    StartAt({10, 30});
    Go(10, 0);
    Enter();
    Go(32, 11);
    EXPECT_EQ(Find<QSpinBox>("txtBreite")->value(), BoundsOf(byMouse).Width());
    MoveMouse({100, 100});  // a push at the mouse
    Enter();
    ASSERT_EQ(Objects().size(), 2U);
    EXPECT_EQ(Objects().back().kind, byMouse.kind);
    EXPECT_EQ(Objects().back().penMode, byMouse.penMode);
    EXPECT_EQ(BoundsOf(Objects().back()), BoundsOf(byMouse));
    EXPECT_EQ(Find<QLabel>("lblKoordinaten")->text(), "X 52  Y 41");
    // A place clicked while a shape is under way ends it there; Esc gives it up.
    Enter();
    Go(3, 0);
    Click({200, 100});
    EXPECT_EQ(BoundsOf(Objects()[2]).right, 55);
    Enter();
    Go(5, 5);
    const std::size_t before = Objects().size();
    Key(Qt::Key_Escape);
    Enter(Qt::ShiftModifier);
    Go(20, 5);
    Enter(Qt::ShiftModifier);
    ASSERT_EQ(Objects().size(), before + 1);
    const Box box = BoundsOf(Objects().back());
    if (tool == std::string_view("toolRechteck") || tool == std::string_view("toolRundrechteck")) {
      EXPECT_EQ(box.Width(), box.Height());
    }
    Do("mnuGrafikAlles");
    Do("mnuGrafikLoeschen");
  }
}

TEST_F(GrafikByKeys, ALineGrowsByEnterAndEndsWhereItIsPressedTwice) {
  const std::vector<Point> points = {{10, 10}, {13, 10}, {13, 12}};
  const auto grow = [&] {
    Do("toolLinienzug");
    StartAt({9, 10});
    Go(1, 0);
    Enter();
    Go(3, 0);
    Enter();
    MoveMouse({100, 100});  // a push at the mouse
    Go(0, 2);
    Enter();
  };
  grow();
  Key(Qt::Key_Backspace);
  Enter();  // the point that was taken back
  EXPECT_TRUE(Objects().empty());
  Enter();
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(Objects()[0].vertices, points);
  grow();
  Key(Qt::Key_Escape);
  ASSERT_EQ(Objects().size(), 2U);
  EXPECT_EQ(Objects()[1].vertices, points);
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(Objects().size(), 1U);
}

TEST_F(GrafikByKeys, ObjectsAreChosenAtTheCrossAndMovedByArrows) {
  DrawBoxes();
  Click({200, 110});
  StartAt({8, 12});
  Go(2, 0);
  EXPECT_EQ(SelectedCount(Objects()), 0U);
  Key(Qt::Key_Space);
  EXPECT_TRUE(Objects()[0].selected);
  Go(0, 2);
  EXPECT_EQ(BoundsOf(Objects()[0]).bottom, 12);
  Go(40, 38, Qt::ControlModifier);
  EXPECT_EQ(BoundsOf(Objects()[0]).bottom, 12);
  Enter(Qt::ControlModifier);
  EXPECT_EQ(SelectedCount(Objects()), 2U);
  Do("mnuGrafikGruppieren");
  Enter();  // opens the group that is selected there
  EXPECT_EQ(SelectedCount(Objects()[0].members), 0U);
  Enter();
  EXPECT_EQ(SelectedCount(Objects()[0].members), 1U);
  EXPECT_TRUE(Find<QAction>("mnuGrafikGruppeVerlassen")->isEnabled());
}

TEST_F(GrafikByKeys, TheViewFollowsTheCrossAndTheDrawingEndsIt) {
  Find<QSlider>("ctlZoom")->setValue(20);
  const auto* bar = window->findChild<QScrollArea*>()->horizontalScrollBar();
  Do("toolLinie");
  for (const Qt::Key way : {Qt::Key_Right, Qt::Key_Left}) {
    for (int i = 0; i < 30; ++i) Key(way, Qt::ShiftModifier);
    EXPECT_EQ(bar->value() > bar->maximum() / 2, way == Qt::Key_Right);
    EXPECT_EQ(Find<QLabel>("lblKoordinaten")->text().startsWith("X 245 "), way == Qt::Key_Right);
  }
  EXPECT_TRUE(Find<QLabel>("lblKoordinaten")->text().startsWith("X -6 "));
}

TEST_F(GrafikByKeys, CurvesAreDrawnAsTheirPanelSays) {
  auto& radius = *Find<QSpinBox>("txtRadius");
  auto& end = *Find<QSpinBox>("txtBogenEnde");
  EXPECT_FALSE(radius.isVisible() || end.isVisible());
  Do("toolRundrechteck");
  EXPECT_TRUE(radius.isVisible() && !end.isVisible());
  radius.setValue(0);
  Drag({10, 10}, {30, 20});
  EXPECT_EQ(Objects()[0].vertices.size(), 5U);
  radius.setValue(5);
  Drag({50, 10}, {70, 20});
  EXPECT_GT(Objects()[1].vertices.size(), 8U);
  Do("toolBogen");
  EXPECT_TRUE(!radius.isVisible() && end.isVisible());
  end.setValue(180);
  Find<QAbstractButton>("chkSektor")->click();
  Drag({100, 10}, {140, 50});
  EXPECT_EQ(BoundsOf(Objects()[2]), (Box{100, 30, 140, 50}));
  EXPECT_EQ(Objects()[2].vertices.front(), (Point{120, 30}));
  Do("toolAuswahl");
  EXPECT_FALSE(end.isVisible());
}

class GrafikPoints : public GrafikByKeys {
 protected:
  GrafikPoints() {
    Do("toolLinienzug");
    for (const Point p : {Point{10, 10}, {60, 10}, {60, 80}}) Click(p);
    Enter();
    Do("toolAuswahl");
  }
  void DoubleClick(Point at) const {
    Click(at);
    QTest::mouseDClick(Canvas(), Qt::LeftButton, {}, Canvas()->ToWidget(at));
    Let(at);
  }
  const std::vector<Point>& Path() const { return Objects()[0].vertices; }
};
using Points = std::vector<Point>;

TEST_F(GrafikPoints, ADoubleClickPutsOneInAndDeleteTakesOneOut) {
  DoubleClick({59, 40});
  EXPECT_EQ(Path(), (Points{{10, 10}, {60, 10}, {60, 40}, {60, 80}}));
  Drag({60, 40}, {90, 40});
  Key(Qt::Key_Left);  // the point that was taken hold of
  EXPECT_EQ(Path()[2], (Point{89, 40}));
  DoubleClick({60, 80});  // there is one already
  EXPECT_EQ(Path().size(), 4U);
  for (const std::size_t left : {3U, 2U}) {
    Do("mnuGrafikLoeschen");
    EXPECT_EQ(Path().size(), left);
  }
  EXPECT_FALSE(Find<QAction>("mnuGrafikPunktEntfernen")->isEnabled());
  for (int i = 0; i < 3; ++i) Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(Path().size(), 4U);
  EXPECT_EQ(Path()[2], (Point{90, 40}));
  Do("mnuGrafikLoeschen");  // no point is held now
  EXPECT_TRUE(Objects().empty());
}

TEST_F(GrafikPoints, KeysWalkMoveInsertAndRemoveThem) {
  Enter();
  Key(Qt::Key_Tab);
  Go(0, 12);
  Do("mnuGrafikPunktEinfuegen");
  EXPECT_EQ(Path(), (Points{{10, 10}, {60, 22}, {60, 51}, {60, 80}}));
  EXPECT_TRUE(Find<QLabel>("lblHinweis")->text().startsWith("Punkt 3 von 4: X 60  Y 51"));
  Key(Qt::Key_Tab);
  Do("mnuGrafikPunktEinfuegen");  // behind the last one is no way
  EXPECT_EQ(Path()[3], (Point{60, 65}));
  Key(Qt::Key_Escape);
  Go(1, 0);
  EXPECT_EQ(Path()[0], (Point{11, 10}));
  Do("mnuGrafikPunktEinfuegen");  // in the longest way
  EXPECT_EQ(Path()[1], (Point{36, 16}));
  const auto shows = [this](const char* text) {
    return Find<QLabel>("lblHinweis")->text().startsWith(QString::fromUtf8(text));
  };
  Key(Qt::Key_Backtab);
  Key(Qt::Key_Backtab);
  EXPECT_TRUE(shows("Punkt 6 von 6")) << "round again";
  Key(Qt::Key_Tab);
  EXPECT_TRUE(shows("Punkt 1 von 6"));
  Key(Qt::Key_Escape);
  Key(Qt::Key_Backtab);
  EXPECT_FALSE(Canvas()->hasFocus());
}

TEST_F(GrafikPoints, ThePointerShowsWhatAPressWouldTake) {
  const auto shapeAt = [this](Point p) {
    MoveMouse(p);
    return Canvas()->cursor().shape();
  };
  EXPECT_EQ(shapeAt({60, 80}), Qt::CrossCursor);
  EXPECT_EQ(shapeAt({30, 10}), Qt::SizeAllCursor);
  Do("toolRechteck");
  Drag({110, 10}, {160, 80});
  Do("toolAuswahl");
  EXPECT_EQ(shapeAt({160, 80}), Qt::SizeBDiagCursor);
  EXPECT_EQ(shapeAt({110, 80}), Qt::SizeFDiagCursor);
  EXPECT_EQ(shapeAt({110, 45}), Qt::SizeHorCursor);
  EXPECT_EQ(shapeAt({135, 10}), Qt::SizeVerCursor);
  EXPECT_EQ(shapeAt({130, 30}), Qt::SizeAllCursor);
  EXPECT_EQ(shapeAt({200, 100}), Qt::ArrowCursor);
  Do("toolLinie");
  EXPECT_EQ(shapeAt({60, 80}), Qt::CrossCursor);
}

TEST_F(GrafikByKeys, GripsLeaveSmallObjectsToBeSeen) {
  for (const int zoom : {1, 2, 3, 8}) {
    SCOPED_TRACE(zoom);
    Find<QSlider>("ctlZoom")->setValue(zoom);
    Do("toolRechteck");
    Find<QAbstractButton>("chkGefuellt")->setChecked(false);
    Drag({40, 40}, {44, 43});
    Do("toolAuswahl");
    const QImage shown = Canvas()->grab().toImage();
    for (const Point p : {Point{40, 40}, {42, 40}, {44, 43}, {40, 41}}) {
      EXPECT_EQ(shown.pixelColor(Canvas()->ToWidget(p)), QColor(Qt::black)) << p.x << ' ' << p.y;
    }
    Do("mnuGrafikLoeschen");
  }
}

TEST_F(GrafikByKeys, EveryToolHasAKeyOfItsOwnAndAMnemonic) {
  std::set<QString> keys;
  std::set<QChar> letters;
  const QList<QAction*> tools = Find<QMenu>("mnuGrafikWerkzeug")->actions();
  EXPECT_GE(tools.size(), 8);
  for (const QAction* tool : tools) {
    ASSERT_EQ(tool->shortcut().count(), 1);
    Key(tool->shortcut()[0].key(), tool->shortcut()[0].keyboardModifiers());
    EXPECT_TRUE(tool->isChecked()) << tool->text().toStdString();
    keys.insert(tool->shortcut().toString());
    const qsizetype mark = tool->text().indexOf(u'&');
    ASSERT_GE(mark, 0) << tool->text().toStdString();
    letters.insert(tool->text().at(mark + 1).toLower());
    EXPECT_TRUE(tool->toolTip().endsWith(u']'));
  }
  EXPECT_EQ(static_cast<qsizetype>(keys.size()), tools.size());
  EXPECT_EQ(static_cast<qsizetype>(letters.size()), tools.size());
}

}  // namespace
}  // namespace kelvo
