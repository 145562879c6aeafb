#include <QComboBox>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QWheelEvent>

#include "base/wire_text.h"
#include "graphics/drawing_page.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

TEST_F(Grafik, DrawsWithTheMouse) {
  Do("toolRechteck");
  Drag({10, 10}, {29, 19});
  Find<QAbstractButton>("optLoeschen")->click();
  Find<QAbstractButton>("chkGefuellt")->click();
  Do("toolEllipse");
  Drag({50, 40}, {70, 60});
  ASSERT_EQ(Objects().size(), 2U);
  // The style changes the object that is selected, and holds for the next one.
  EXPECT_EQ(Objects()[0].penMode, PenMode::Erase);
  EXPECT_TRUE(Objects()[0].filled);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{10, 10, 29, 19}));
  EXPECT_EQ(Objects()[1].penMode, PenMode::Erase);
  EXPECT_EQ(Objects()[1].kind, Kind::Ellipse);

  Do("toolLinienzug");
  Click({0, 0});
  Click({5, 5});
  Click({9, 0});
  Key(Qt::Key_Return);
  EXPECT_EQ(Objects().back().vertices, (std::vector<Point>{{0, 0}, {5, 5}, {9, 0}}));
}

TEST_F(Grafik, WhatHasAStyleOfItsOwnLeavesTheNextObjectsAlone) {
  DrawBoxes();
  Do("toolFuellen");
  Click({20, 15});
  Do("toolRadierer");
  Drag({5, 5}, {70, 60});
  EXPECT_TRUE(Find<QAbstractButton>("optZeichnen")->isChecked());
  EXPECT_FALSE(Find<QAbstractButton>("chkGefuellt")->isChecked());
  Do("toolRechteck");
  Drag({150, 60}, {170, 80});
  EXPECT_EQ(Objects()[4].penMode, PenMode::Erase);
  EXPECT_EQ(Objects()[5].penMode, PenMode::Draw);
  EXPECT_FALSE(Objects()[5].filled);
}

TEST_F(Grafik, EachControlChangesItsOwnAttributeAloneInGroupsToo) {
  const auto text = [&](Point at, int font, int zoom) {
    return MakeText(at, {.font = font, .zoomX = zoom}, "T", TestFonts());
  };
  const Drawing drawing = {text({10, 100}, 0, 1), GroupOf({text({50, 100}, 3, 2)}),
                           Boxed(Kind::Rectangle, {90, 50}, {80, 40}, true)};
  person.file = folder.filePath(QStringLiteral("texte.wmf")).toStdString();
  ASSERT_FALSE(WriteFile(*person.file, WriteWmf(drawing, 240, 128).bytes));
  Do("mnuGrafikLaden");
  Do("mnuGrafikAlles");
  auto& fonts = *Find<QComboBox>("cboTextStyle");
  auto& bold = *Find<QCheckBox>("ctlFontBold");
  EXPECT_EQ(fonts.currentIndex(), -1);
  EXPECT_EQ(Find<QSpinBox>("txtTextZoomX")->text(), "–");
  Click({200, 20});  // with nothing selected it is as for the next object
  EXPECT_EQ(Find<QSpinBox>("txtTextZoomX")->text(), "1");
  Do("mnuGrafikAlles");
  EXPECT_EQ(Find<QSpinBox>("txtTextZoomY")->text(), "1");
  bold.click();
  const auto styles = [&] {
    return std::pair(*Objects()[0].style, *Objects()[1].members[0].style);
  };
  EXPECT_EQ(styles(), std::pair(TextAttributes({.font = 0, .zoomX = 1, .bold = true}),
                                TextAttributes({.font = 3, .zoomX = 2, .bold = true})));
  EXPECT_EQ(fonts.currentIndex(), -1);
  fonts.setCurrentIndex(5);
  Find<QSpinBox>("txtTextZoomX")->setValue(4);
  EXPECT_EQ(styles().first, TextAttributes({.font = 5, .zoomX = 4, .bold = true}));
  EXPECT_EQ(styles().first, styles().second);
  // Shown as mixed, and what is shown is chosen for all.
  Click({200, 20});
  Click({12, 98});
  bold.click();
  Do("mnuGrafikAlles");
  EXPECT_EQ(bold.checkState(), Qt::PartiallyChecked);
  Click({200, 20});
  EXPECT_NE(bold.checkState(), Qt::PartiallyChecked);
  Do("mnuGrafikAlles");
  bold.click();
  EXPECT_TRUE(styles().first.bold && styles().second.bold);
  Find<QAbstractButton>("optZeichnen")->click();
  EXPECT_EQ(Objects()[2].penMode, PenMode::Draw);
}

TEST_F(Grafik, KeysMoveAndUndoBringsBack) {
  DrawBoxes();
  Click({10, 12});
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  Key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{12, 20, 31, 29}));
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{10, 10, 29, 19}));
  Do("mnuGrafikWiederholen");
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{12, 20, 31, 29}));
}

TEST_F(Grafik, TypedNumbersPlaceAndSize) {
  DrawBoxes();
  EXPECT_EQ(Find<QSpinBox>("txtPosX")->value(), 100);  // the last one drawn is selected
  EXPECT_EQ(Find<QSpinBox>("txtBreite")->value(), 40);
  Find<QSpinBox>("txtPosX")->setValue(5);
  Find<QSpinBox>("txtHoehe")->setValue(2);
  EXPECT_EQ(BoundsOf(Objects()[2]), (Box{5, 20, 44, 21}));
  Click({200, 100});
  EXPECT_FALSE(Find<QSpinBox>("txtPosX")->isEnabled());
}

TEST_F(Grafik, MenusActOnTheSelection) {
  DrawBoxes();
  Do("mnuGrafikAlles");
  Do("mnuGrafikUnten");
  for (const DrawingObject& object : Objects()) EXPECT_EQ(BoundsOf(object).bottom, 10);
  const std::pair<const char*, int Box::*> edges[] = {{"mnuGrafikOben", &Box::top},
                                                      {"mnuGrafikRechts", &Box::right},
                                                      {"mnuGrafikLinks", &Box::left}};
  for (const auto& [align, edge] : edges) {
    const int before = BoundsOf(Objects()).*edge;
    Do(align);
    for (const DrawingObject& object : Objects())
      EXPECT_EQ(BoundsOf(object).*edge, before) << align;
    Do("mnuGrafikRueckgaengig");
  }
  Do("mnuGrafikGruppieren");
  ASSERT_EQ(Objects().size(), 1U);
  Do("mnuGrafikDuplizieren");
  ASSERT_EQ(Objects().size(), 2U);
  EXPECT_EQ(BoundsOf(Objects()[1]).left, 14);
  Do("mnuGrafikHinten");
  EXPECT_EQ(BoundsOf(Objects()[0]).left, 14);
  Do("mnuGrafikAufloesen");
  EXPECT_EQ(Objects().size(), 4U);
  Do("mnuGrafikLoeschen");
  EXPECT_EQ(Objects().size(), 1U);
  EXPECT_FALSE(Find<QAction>("mnuGrafikLoeschen")->isEnabled());
  for (int i = 0; i < 6; ++i) Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(BoundsOf(Objects()[1]), (Box{50, 40, 59, 79}));
}

// A tool keeps what it has begun by its place in the drawing, which every command may change.
TEST_F(Grafik, UndoInADragTakesBackTheDragAlone) {
  DrawBoxes();
  const Drawing drawn = Objects();
  for (const char* tool : {"toolAuswahl", "toolRechteck", "toolStift", "toolRundrechteck"}) {
    Do(tool);
    Press({120, 25});
    MoveTo({160, 60});
    Do("mnuGrafikRueckgaengig");
    MoveTo({170, 60});
    Let({170, 60});
    EXPECT_EQ(Objects(), drawn) << tool;
  }
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(Objects().size(), 2U);
}

TEST_F(Grafik, AnyChangeOfTheDrawingEndsWhatAToolIsDoing) {
  const char* const commands[] = {
      "mnuGrafikLoeschen",    "mnuGrafikAlles",      "mnuGrafikRueckgaengig",
      "mnuGrafikWiederholen", "mnuGrafikGruppieren", "mnuGrafikAusschneiden",
      "mnuGrafikDuplizieren", "mnuGrafikHinten",     "mnuGrafikEinfuegen",
      "mnuGrafikUnten",       "mnuGrafikAufloesen"};
  const char* const tools[] = {"toolAuswahl",   "toolLinie", "toolRechteck",     "toolEllipse",
                               "toolLinienzug", "toolText",  "toolRundrechteck", "toolBogen"};
  const Drawing drawing = {Boxed(Kind::Rectangle, {30, 30}, {10, 10}, true),
                           WithVertices(Kind::Polyline, {{50, 50}, {90, 50}, {90, 90}}),
                           GroupOf({WithVertices(Kind::Line, {{100, 10}, {120, 30}})})};
  person.file = folder.filePath(QStringLiteral("viel.wmf")).toStdString();
  ASSERT_FALSE(WriteFile(*person.file, WriteWmf(drawing, 240, 128).bytes));
  for (const char* tool : tools) {
    for (const char* command : commands) {
      for (const Point from : {Point{20, 20}, {90, 90}, {50, 50}, {110, 20}, {200, 100}}) {
        for (int moment = 0; moment < 3; ++moment) {
          SCOPED_TRACE(std::string(tool) + " " + command + " " + std::to_string(moment));
          person.decisions = {Decision::Discard};
          Do("mnuGrafikLaden");
          Do("toolAuswahl");
          Click(from);
          Do(tool);
          Press(from, moment == 2 ? Qt::ControlModifier : Qt::NoModifier);
          if (moment > 0) MoveTo({from.x + 5, from.y + 5});
          const Drawing before = Objects();
          Do(command);
          const Drawing after = Objects();
          MoveTo({from.x + 9, from.y + 3});
          Let({from.x + 9, from.y + 3});
          if (!(after == before)) {
            EXPECT_EQ(Objects(), after);
          }
        }
      }
    }
  }
}

TEST_F(Grafik, RubberBandAndGridWork) {
  DrawBoxes();
  Drag({0, 0}, {70, 90});
  EXPECT_EQ(SelectedCount(Objects()), 2U);
  Do("mnuGrafikRaster");
  Drag({20, 10}, {23, 10});  // both move by what brings the left one to the grid
  EXPECT_EQ(BoundsOf(Objects()[0]).left, 16);
  EXPECT_EQ(BoundsOf(Objects()[1]).left, 56);
}

TEST_F(Grafik, HandsFindWhatTheyExpect) {
  DrawBoxes();
  // Tab walks the objects and goes on behind the last one.
  Click({220, 100});
  for (const std::size_t expected : {0U, 1U, 2U}) {
    Key(Qt::Key_Tab);
    EXPECT_TRUE(Objects()[expected].selected);
    EXPECT_EQ(SelectedCount(Objects()), 1U);
  }
  Key(Qt::Key_Tab);
  EXPECT_FALSE(Canvas()->hasFocus());
  // A number that was typed gives the focus back.
  auto& x = *Find<QSpinBox>("txtPosX");
  x.setFocus();
  QTest::keyClick(&x, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_TRUE(Canvas()->hasFocus());
  // Esc gives it back, too, and what is half typed up; undo means the drawing behind a step.
  Click({12, 10});
  const Drawing placed = Objects();
  x.setFocus();
  QTest::keyClick(&x, Qt::Key_Up);
  EXPECT_NE(Objects(), placed);
  QTest::keyClick(&x, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Objects(), placed);
  QTest::keyClick(&x, Qt::Key_7);
  QTest::keyClick(&x, Qt::Key_Escape);
  EXPECT_TRUE(Canvas()->hasFocus());
  EXPECT_EQ(Objects(), placed);
  // Inside a polyline a step back is its last point; another tool ends it well.
  Do("toolLinienzug");
  for (const Point p : {Point{10, 90}, {50, 90}, {50, 120}, {90, 120}}) Click(p);
  EXPECT_TRUE(Find<QAction>("mnuGrafikRueckgaengig")->isEnabled());
  Do("mnuGrafikRueckgaengig");
  Key(Qt::Key_Backspace);
  Do("toolStift");
  ASSERT_EQ(Objects().size(), 4U);
  EXPECT_EQ(Objects()[3].vertices, (std::vector<Point>{{10, 90}, {50, 90}}));
  // Escape puts the tool down, then nothing is selected.
  Click({5, 5});
  EXPECT_EQ(Objects()[4].vertices, (std::vector<Point>{{5, 5}, {5, 5}}));
  Key(Qt::Key_Escape);
  EXPECT_TRUE(Find<QAction>("toolAuswahl")->isChecked());
  EXPECT_EQ(SelectedCount(Objects()), 0U);
  Click({5, 5});
  EXPECT_EQ(SelectedCount(Objects()), 1U);
  Key(Qt::Key_Escape);
  EXPECT_EQ(SelectedCount(Objects()), 0U);
  // The middle button moves the view and nothing else.
  Find<QSlider>("ctlZoom")->setValue(12);
  auto* bar = window->findChild<QScrollArea*>()->horizontalScrollBar();
  bar->setValue(200);
  const Drawing before = Objects();
  const QPoint from = Canvas()->ToWidget({30, 60});
  const auto middle = [&](QEvent::Type type, QPoint at) {
    QMouseEvent event(type, at, Canvas()->mapToGlobal(from) + (at - from), Qt::MiddleButton,
                      Qt::MiddleButton, {});
    QApplication::sendEvent(Canvas(), &event);
  };
  middle(QEvent::MouseButtonPress, from);
  middle(QEvent::MouseMove, from - QPoint(40, 0));
  middle(QEvent::MouseButtonRelease, from - QPoint(40, 0));
  EXPECT_EQ(bar->value(), 240);
  EXPECT_EQ(Objects(), before);
}

TEST_F(Grafik, ChangesGoOutBundled) {
  const auto sendsAfterATick = [this] {
    loop.RunFor(testing_world::milliseconds(500));
    return host.sends;
  };
  DrawBoxes();
  EXPECT_EQ(sendsAfterATick(), 0);
  window->SetAutomaticSend(true);
  EXPECT_EQ(sendsAfterATick(), 1);
  EXPECT_EQ(sendsAfterATick(), 1);
  Key(Qt::Key_Left);
  Key(Qt::Key_Left);
  host.open = false;
  EXPECT_EQ(sendsAfterATick(), 1);
  host.open = true;
  EXPECT_EQ(sendsAfterATick(), 2);
  Click({200, 100});  // a change of the selection alone
  EXPECT_EQ(sendsAfterATick(), 2);
  window->SetAutomaticSend(false);
  EXPECT_FALSE(timer.Enabled());
}

TEST_F(Grafik, ZoomsUpToTheLimitAndKeepsThePixelUnderThePointer) {
  auto* slider = Find<QSlider>("ctlZoom");
  EXPECT_EQ(slider->maximum(), 32700 / 240);
  slider->setValue(20);
  const DrawingCanvas* canvas = Canvas();
  auto* bar = window->findChild<QScrollArea*>()->horizontalScrollBar();
  bar->setValue(1000);
  const QPoint at = canvas->ToWidget({100, 64});
  const int onScreen = at.x() - bar->value();
  QWheelEvent wheel(at, canvas->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(Canvas(), &wheel);
  EXPECT_EQ(canvas->Zoom(), 21);
  EXPECT_NEAR(canvas->ToWidget({100, 64}).x() - bar->value(), onScreen, 21);

  slider->setValue(136);
  window->SetDisplaySize(640, 480);
  EXPECT_EQ(canvas->Zoom(), 32700 / 640);
  EXPECT_TRUE(Objects().empty());
  window->SetDisplaySize(128, 64);  // compared as text
  EXPECT_EQ(slider->maximum(), 32700 / 64);
}

TEST_F(Grafik, TheWindowFollowsTheZoomWhenWanted) {
  Find<QSlider>("ctlZoom")->setValue(3);
  window->resize(700, 560);
  const QSize before = window->size();
  host.follow = true;
  Do("mnuGrafikKleiner");
  EXPECT_EQ(before.width() - window->width(), 240 + 12);
  host.follow = false;
  Do("mnuGrafikGroesser");
  EXPECT_EQ(before.width() - window->width(), 240 + 12);
}

TEST_F(Grafik, ShowsWhatTheTerminalWillShow) {
  Find<QSlider>("ctlZoom")->setValue(1);
  Do("toolRechteck");
  Drag({10, 10}, {29, 19});
  Key(Qt::Key_Escape);
  Do("toolAuswahl");
  Click({200, 100});
  const QImage shown = Canvas()->grab().toImage();
  const auto pixel = [&](Point p) { return shown.pixelColor(Canvas()->ToWidget(p)); };
  EXPECT_EQ(pixel({10, 10}), QColor(Qt::black));
  EXPECT_EQ(pixel({29, 19}), QColor(Qt::black));
  EXPECT_EQ(pixel({15, 15}), QColor(Qt::white));
  EXPECT_EQ(pixel({9, 10}), QColor(Qt::white));
}

TEST_F(Grafik, ThePageShowsTheDrawingAndLeadsOn) {
  DrawingPage page(*window, host, person);
  page.resize(600, 400);
  const QImage before = page.grab().toImage();
  DrawBoxes();
  EXPECT_NE(page.grab().toImage(), before);
  const QString costs = QStringLiteral("%1 Zeichen").arg(window->CreatePic().size() + 3);
  EXPECT_TRUE(Find<QLabel>("lblKosten")->text().startsWith(costs));
  EXPECT_EQ(page.findChild<QLabel*>(QStringLiteral("lblZeichnungKosten"))->text(),
            Find<QLabel>("lblKosten")->text());
  EXPECT_EQ(host.queries, 0);
  window->close();
  for (const char* name : {"cmdGrafik", "cmdGrafikSenden", "cmdGrafikMakro", "cmdGrafikText"}) {
    page.findChild<QPushButton*>(QString::fromLatin1(name))->click();
  }
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(Objects().size(), 3U);
  EXPECT_EQ(host.sends + host.makros + host.texts, 3);
}

}  // namespace
}  // namespace kelvo
