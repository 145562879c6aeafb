#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QWheelEvent>

#include "base/wire_text.h"
#include "graphics/drawing_page.h"
#include "graphics/picture_dialog.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

class Grafik : public testing::Test, protected GrafikDesk {
 protected:
  // Presses a button of the picture dialog as soon as it is open.
  void AnswerPictureDialog(const char* button, std::function<void(PictureDialog&)> before = {}) {
    QTimer::singleShot(0, qApp, [=] {
      auto* dialog = qobject_cast<PictureDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      if (before) before(*dialog);
      dialog->findChild<QPushButton*>(QString::fromLatin1(button))->click();
    });
  }
  void DrawBoxes() {
    Do("toolRechteck");
    Drag({10, 10}, {29, 19});
    Drag({50, 40}, {59, 79});
    Drag({100, 20}, {139, 29});
    Do("toolAuswahl");
  }
};

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

TEST_F(Grafik, TextTakesTheChosenAttributes) {
  Find<QComboBox>("cboTextStyle")->setCurrentIndex(3);
  Find<QSpinBox>("txtTextZoomX")->setValue(2);
  EXPECT_EQ(Find<QLabel>("lblTextZoom")->text(), "2 x 1");
  person.inputs = {{"Größe €"}, {"Größe"}};  // no euro on the Terminal
  Do("toolText");
  Click({10, 100});
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(Objects()[0].text, *WireText("Größe"));
  EXPECT_EQ(Objects()[0].style, (TextAttributes{3, 2, 1}));
  EXPECT_EQ(person.beeps, 1);
  EXPECT_EQ(person.prompts,
            (std::vector<std::string>{"Bitte Text eingeben :|", "Bitte Text eingeben :|Größe €"}));
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{10, 85, 10 + 5 * 16 - 1, 100}));

  Find<QAbstractButton>("ctlFontInvers")->click();  // the selected text changes
  EXPECT_EQ(Objects()[0].penMode, PenMode::InverseText);
  EXPECT_EQ(window->CreatePic(),
            "\x1bGP10,27;\x1bGF3;\x1bGZ2,1;\x1bGA4;\x1bGT" + *WireText("Größe") + "\x04");
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

TEST_F(Grafik, RubberBandAndGridWork) {
  DrawBoxes();
  Drag({0, 0}, {70, 90});
  EXPECT_EQ(SelectedCount(Objects()), 2U);
  Do("mnuGrafikRaster");
  Drag({20, 10}, {23, 10});  // both move by what brings the left one to the grid
  EXPECT_EQ(BoundsOf(Objects()[0]).left, 16);
  EXPECT_EQ(BoundsOf(Objects()[1]).left, 56);
}

TEST_F(Grafik, CopiesToTheClipboardAndBack) {
  DrawBoxes();
  Do("mnuGrafikAusschneiden");
  EXPECT_EQ(Objects().size(), 2U);
  EXPECT_EQ(QApplication::clipboard()->mimeData()->imageData().value<QImage>().size(),
            QSize(40, 10));
  Do("mnuGrafikEinfuegen");
  Do("mnuGrafikEinfuegen");
  ASSERT_EQ(Objects().size(), 4U);
  EXPECT_EQ(BoundsOf(Objects()[3]), (Box{108, 12, 147, 21}));

  QApplication::clipboard()->setText(QStringLiteral("eins\nzwei\n"));
  Do("mnuGrafikEinfuegen");
  ASSERT_EQ(Objects().size(), 6U);
  EXPECT_EQ(Objects()[5].text, "zwei");
}

TEST_F(Grafik, PicturesAreScaledAndMadeBlackAndWhite) {
  QImage image(480, 120, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QApplication::clipboard()->setImage(image);
  AnswerPictureDialog("cmdBildAbbrechen");
  Do("mnuGrafikEinfuegen");
  EXPECT_TRUE(Objects().empty());

  AnswerPictureDialog("cmdBildEinfuegen", [](PictureDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QSpinBox*>(QStringLiteral("txtBildBreite"))->value(), 240);
    dialog.findChild<QSpinBox*>(QStringLiteral("txtBildBreite"))->setValue(80);
    EXPECT_EQ(dialog.findChild<QSpinBox*>(QStringLiteral("txtBildHoehe"))->value(), 20);
    dialog.findChild<QSlider*>(QStringLiteral("ctlSchwelle"))->setValue(200);
  });
  Do("mnuGrafikEinfuegen");
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(Objects()[0]).Width(), 80);
  EXPECT_EQ(Objects()[0].picture.At(5, 5), kBlack);  // grey 160 is below 200

  const QString path = folder.filePath(QStringLiteral("kaputt.png"));
  person.file = path.toStdString();
  ASSERT_TRUE(WriteFile(path.toStdString(), "no picture"));
  Do("mnuGrafikBild");
  EXPECT_EQ(person.messages.size(), 1U);
  EXPECT_EQ(Objects().size(), 1U);
}

TEST_F(Grafik, SavesAndLoadsTheSameDrawing) {
  DrawBoxes();
  Do("mnuGrafikAlles");
  Do("mnuGrafikGruppieren");
  const std::string commands = window->CreatePic();
  person.file = folder.filePath(QStringLiteral("bild.wmf")).toStdString();
  Do("mnuGrafikSpeichern");
  EXPECT_EQ(window->windowTitle(), "Grafik");
  window->Clear();
  Do("mnuGrafikLaden");
  EXPECT_EQ(window->CreatePic(), commands);
  EXPECT_TRUE(person.questions.empty());
  EXPECT_TRUE(person.messages.empty());

  ASSERT_TRUE(WriteFile(*person.file, "no metafile"));
  Do("mnuGrafikLaden");
  EXPECT_EQ(person.messages.size(), 1U);
  EXPECT_EQ(window->CreatePic(), commands);
  Do("mnuGrafikRueckgaengig");  // of loading, then of clearing
  EXPECT_TRUE(Objects().empty());
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(window->CreatePic(), commands);
}

TEST_F(Grafik, VertexShapesAreAnnouncedAndCanBecomePolylines) {
  const Drawing shapes = {GroupOf({WithVertices(Kind::Vertices, {{0, 0}, {9, 0}, {9, 9}})})};
  person.file = folder.filePath(QStringLiteral("vieleck.wmf")).toStdString();
  ASSERT_TRUE(WriteFile(*person.file, WriteWmf(shapes, 240, 128).bytes));
  Do("mnuGrafikLaden");
  EXPECT_EQ(person.messages.size(), 1U);
  EXPECT_EQ(Find<QLabel>("lblHinweis")->text(), "Nicht gesendete Vielecke: 1");
  EXPECT_EQ(window->CreatePic(), "");
  Do("mnuGrafikAlles");
  Do("mnuGrafikUmwandeln");
  EXPECT_EQ(window->CreatePic(), "\x1bGP 0, 127;\x1bGL 9, 127;\x1bGL 9, 118;\x1bGL 0, 127;");
  EXPECT_EQ(Find<QLabel>("lblHinweis")->text(), "");
}

TEST_F(Grafik, AsksBeforeAnUnsavedDrawingIsLost) {
  EXPECT_TRUE(window->MayDiscard());
  DrawBoxes();
  EXPECT_EQ(window->windowTitle(), "Grafik *");
  EXPECT_FALSE(window->MayDiscard());
  EXPECT_EQ(person.lastQuestion.icon, Icon::Exclamation);  // Return means No
  Do("mnuGrafikLaden");
  EXPECT_EQ(person.questions.size(), 2U);
  EXPECT_EQ(Objects().size(), 3U);
  for (int i = 0; i < 3; ++i) Do("mnuGrafikRueckgaengig");
  EXPECT_TRUE(window->MayDiscard());  // nothing is left that was not there before
  EXPECT_EQ(person.questions.size(), 2U);
}

TEST_F(Grafik, ADraftSurvivesACrash) {
  EXPECT_FALSE(Find<QTimer>("tmrEntwurf")->isActive());
  DrawBoxes();
  EXPECT_TRUE(Find<QTimer>("tmrEntwurf")->isActive());  // its tick keeps the draft
  window->KeepDraft();
  const Drawing before = Objects();
  Start();  // without a farewell
  person.answers = {true};
  window->OfferDraft();
  EXPECT_EQ(Objects().size(), before.size());
  EXPECT_EQ(window->windowTitle(), "Grafik *");

  Start();
  window->OfferDraft();
  EXPECT_TRUE(Objects().empty());
  Start();
  window->OfferDraft();
  EXPECT_EQ(person.questions.size(), 2U);  // a refused draft is gone
}

TEST_F(Grafik, WhatIsGivenUpAtTheEndLeavesNoDraft) {
  DrawBoxes();
  window->KeepDraft();
  EXPECT_FALSE(window->MayEnd());
  EXPECT_TRUE(ReadFile(DraftPath(), 100'000));
  person.answers = {true};
  EXPECT_TRUE(window->MayEnd());
  EXPECT_FALSE(ReadFile(DraftPath(), 100'000));
}

TEST_F(Grafik, PicturesDropWhereTheyAreLetGo) {
  const QString path = folder.filePath(QStringLiteral("bild.png"));
  QImage image(20, 10, QImage::Format_RGB32);
  image.fill(Qt::black);
  ASSERT_TRUE(image.save(path));
  QMimeData mime;
  mime.setUrls({QUrl::fromLocalFile(path)});
  const QPoint at = Canvas()->mapTo(window.get(), Canvas()->ToWidget({100, 60}));
  QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
  QApplication::sendEvent(window.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
  QApplication::sendEvent(window.get(), &drop);
  AnswerPictureDialog("cmdBildEinfuegen");
  QApplication::processEvents();
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{90, 55, 109, 64}));
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
