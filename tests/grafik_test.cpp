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

#include "graphics/drawing_page.h"
#include "graphics/picture_dialog.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

class Grafik : public testing::Test {
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
    desk_.Do("toolRechteck");
    desk_.Drag({10, 10}, {29, 19});
    desk_.Drag({50, 40}, {59, 79});
    desk_.Drag({100, 20}, {139, 29});
    desk_.Do("toolAuswahl");
  }

  GrafikDesk desk_;
};

TEST_F(Grafik, DrawsWithTheMouse) {
  desk_.Do("toolRechteck");
  desk_.Drag({10, 10}, {29, 19});
  desk_.Find<QAbstractButton>("optLoeschen")->click();
  desk_.Find<QAbstractButton>("chkGefuellt")->click();
  desk_.Do("toolEllipse");
  desk_.Drag({50, 40}, {70, 60});
  ASSERT_EQ(desk_.Objects().size(), 2U);
  // The style changes the object that is selected, and holds for the next one.
  EXPECT_EQ(desk_.Objects()[0].penMode, PenErase);
  EXPECT_TRUE(desk_.Objects()[0].filled);
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{10, 10, 29, 19}));
  EXPECT_EQ(desk_.Objects()[1].penMode, PenErase);
  EXPECT_EQ(desk_.Objects()[1].kind, Kind::Ellipse);

  desk_.Do("toolLinienzug");
  desk_.Click({0, 0});
  desk_.Click({5, 5});
  desk_.Click({9, 0});
  desk_.Key(Qt::Key_Return);
  EXPECT_EQ(desk_.Objects().back().vertices, (std::vector<Point>{{0, 0}, {5, 5}, {9, 0}}));
}

TEST_F(Grafik, TextTakesTheChosenAttributes) {
  desk_.Find<QComboBox>("cboTextStyle")->setCurrentIndex(3);
  desk_.Find<QSpinBox>("txtTextZoomX")->setValue(2);
  EXPECT_EQ(desk_.Find<QLabel>("lblTextZoom")->text(), "2 x 1");
  desk_.person.inputs = {{"Größe €"}, {"Größe"}};  // no euro on the Terminal
  desk_.Do("toolText");
  desk_.Click({10, 100});
  ASSERT_EQ(desk_.Objects().size(), 1U);
  EXPECT_EQ(desk_.Objects()[0].text,
            "321000Gr\xf6\xdf"
            "e");
  EXPECT_EQ(desk_.person.beeps, 1);
  EXPECT_EQ(desk_.person.prompts,
            (std::vector<std::string>{"Bitte Text eingeben :|", "Bitte Text eingeben :|Größe €"}));
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{10, 85, 10 + 5 * 16 - 1, 100}));

  desk_.Find<QAbstractButton>("ctlFontInvers")->click();  // the selected text changes
  EXPECT_EQ(desk_.Objects()[0].text.substr(0, 6), "321010");
  EXPECT_EQ(desk_.Objects()[0].penMode, PenInverseText);
  EXPECT_EQ(desk_.window->CreatePic(),
            "\x1bGP10,27;\x1bGF3;\x1bGZ2,1;\x1bGA4;\x1bGTGr\xf6\xdf"
            "e\x04");
}

TEST_F(Grafik, KeysMoveAndUndoBringsBack) {
  DrawBoxes();
  desk_.Click({10, 12});
  desk_.Key(Qt::Key_Right);
  desk_.Key(Qt::Key_Right);
  desk_.Key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{12, 20, 31, 29}));
  desk_.Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{10, 10, 29, 19}));
  desk_.Do("mnuGrafikWiederholen");
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{12, 20, 31, 29}));
}

TEST_F(Grafik, TypedNumbersPlaceAndSize) {
  DrawBoxes();
  EXPECT_EQ(desk_.Find<QSpinBox>("txtPosX")->value(), 100);  // the last one drawn is selected
  EXPECT_EQ(desk_.Find<QSpinBox>("txtBreite")->value(), 40);
  desk_.Find<QSpinBox>("txtPosX")->setValue(5);
  desk_.Find<QSpinBox>("txtHoehe")->setValue(2);
  EXPECT_EQ(BoundsOf(desk_.Objects()[2]), (Box{5, 20, 44, 21}));
  desk_.Click({200, 100});
  EXPECT_FALSE(desk_.Find<QSpinBox>("txtPosX")->isEnabled());
}

TEST_F(Grafik, MenusActOnTheSelection) {
  DrawBoxes();
  desk_.Do("mnuGrafikAlles");
  desk_.Do("mnuGrafikUnten");
  for (const DrawingObject& object : desk_.Objects()) EXPECT_EQ(BoundsOf(object).bottom, 10);
  desk_.Do("mnuGrafikGruppieren");
  ASSERT_EQ(desk_.Objects().size(), 1U);
  desk_.Do("mnuGrafikDuplizieren");
  ASSERT_EQ(desk_.Objects().size(), 2U);
  EXPECT_EQ(BoundsOf(desk_.Objects()[1]).left, 14);
  desk_.Do("mnuGrafikHinten");
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]).left, 14);
  desk_.Do("mnuGrafikAufloesen");
  EXPECT_EQ(desk_.Objects().size(), 4U);
  desk_.Do("mnuGrafikLoeschen");
  EXPECT_EQ(desk_.Objects().size(), 1U);
  EXPECT_FALSE(desk_.Find<QAction>("mnuGrafikLoeschen")->isEnabled());
  for (int i = 0; i < 6; ++i) desk_.Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(BoundsOf(desk_.Objects()[1]), (Box{50, 40, 59, 79}));
}

TEST_F(Grafik, RubberBandAndGridWork) {
  DrawBoxes();
  desk_.Drag({0, 0}, {70, 90});
  EXPECT_EQ(SelectedCount(desk_.Objects()), 2U);
  desk_.Do("mnuGrafikRaster");
  desk_.Drag({20, 10}, {23, 10});  // both move by what brings the left one to the grid
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]).left, 16);
  EXPECT_EQ(BoundsOf(desk_.Objects()[1]).left, 56);
}

TEST_F(Grafik, CopiesToTheClipboardAndBack) {
  DrawBoxes();
  desk_.Do("mnuGrafikAusschneiden");
  EXPECT_EQ(desk_.Objects().size(), 2U);
  EXPECT_EQ(QApplication::clipboard()->mimeData()->imageData().value<QImage>().size(),
            QSize(40, 10));
  desk_.Do("mnuGrafikEinfuegen");
  desk_.Do("mnuGrafikEinfuegen");
  ASSERT_EQ(desk_.Objects().size(), 4U);
  EXPECT_EQ(BoundsOf(desk_.Objects()[3]), (Box{108, 12, 147, 21}));

  QApplication::clipboard()->setText(QStringLiteral("eins\nzwei\n"));
  desk_.Do("mnuGrafikEinfuegen");
  ASSERT_EQ(desk_.Objects().size(), 6U);
  EXPECT_EQ(desk_.Objects()[5].text, "011000zwei");
}

TEST_F(Grafik, PicturesAreScaledAndMadeBlackAndWhite) {
  QImage image(480, 120, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QApplication::clipboard()->setImage(image);
  AnswerPictureDialog("cmdBildAbbrechen");
  desk_.Do("mnuGrafikEinfuegen");
  EXPECT_TRUE(desk_.Objects().empty());

  AnswerPictureDialog("cmdBildEinfuegen", [](PictureDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QSpinBox*>(QStringLiteral("txtBildBreite"))->value(), 240);
    dialog.findChild<QSpinBox*>(QStringLiteral("txtBildBreite"))->setValue(80);
    EXPECT_EQ(dialog.findChild<QSpinBox*>(QStringLiteral("txtBildHoehe"))->value(), 20);
    dialog.findChild<QSlider*>(QStringLiteral("ctlSchwelle"))->setValue(200);
  });
  desk_.Do("mnuGrafikEinfuegen");
  ASSERT_EQ(desk_.Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]).Width(), 80);
  EXPECT_EQ(desk_.Objects()[0].picture.At(5, 5), Black);  // grey 160 is below 200

  const QString path = desk_.folder.filePath(QStringLiteral("kaputt.png"));
  desk_.person.file = path.toStdString();
  ASSERT_TRUE(WriteFile(path.toStdString(), "no picture"));
  desk_.Do("mnuGrafikBild");
  EXPECT_EQ(desk_.person.messages.size(), 1U);
  EXPECT_EQ(desk_.Objects().size(), 1U);
}

TEST_F(Grafik, SavesAndLoadsTheSameDrawing) {
  DrawBoxes();
  desk_.Do("mnuGrafikAlles");
  desk_.Do("mnuGrafikGruppieren");
  const std::string commands = desk_.window->CreatePic();
  desk_.person.file = desk_.folder.filePath(QStringLiteral("bild.wmf")).toStdString();
  desk_.Do("mnuGrafikSpeichern");
  EXPECT_EQ(desk_.window->windowTitle(), "Grafik");
  desk_.window->Clear();
  desk_.Do("mnuGrafikLaden");
  EXPECT_EQ(desk_.window->CreatePic(), commands);
  EXPECT_TRUE(desk_.person.questions.empty());
  EXPECT_TRUE(desk_.person.messages.empty());

  ASSERT_TRUE(WriteFile(*desk_.person.file, "no metafile"));
  desk_.Do("mnuGrafikLaden");
  EXPECT_EQ(desk_.person.messages.size(), 1U);
  EXPECT_EQ(desk_.window->CreatePic(), commands);
  desk_.Do("mnuGrafikRueckgaengig");  // of loading, then of clearing
  EXPECT_TRUE(desk_.Objects().empty());
  desk_.Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(desk_.window->CreatePic(), commands);
}

TEST_F(Grafik, VertexShapesAreAnnouncedAndCanBecomePolylines) {
  const Drawing shapes = {GroupOf({WithVertices(Kind::Vertices, {{0, 0}, {9, 0}, {9, 9}})})};
  desk_.person.file = desk_.folder.filePath(QStringLiteral("vieleck.wmf")).toStdString();
  ASSERT_TRUE(WriteFile(*desk_.person.file, WriteWmf(shapes, 240, 128).bytes));
  desk_.Do("mnuGrafikLaden");
  EXPECT_EQ(desk_.person.messages.size(), 1U);
  EXPECT_EQ(desk_.Find<QLabel>("lblHinweis")->text(), "Nicht gesendete Vielecke: 1");
  EXPECT_EQ(desk_.window->CreatePic(), "");
  desk_.Do("mnuGrafikAlles");
  desk_.Do("mnuGrafikUmwandeln");
  EXPECT_EQ(desk_.window->CreatePic(), "\x1bGP 0, 127;\x1bGL 9, 127;\x1bGL 9, 118;\x1bGL 0, 127;");
  EXPECT_EQ(desk_.Find<QLabel>("lblHinweis")->text(), "");
}

TEST_F(Grafik, AsksBeforeAnUnsavedDrawingIsLost) {
  EXPECT_TRUE(desk_.window->MayDiscard());
  DrawBoxes();
  EXPECT_EQ(desk_.window->windowTitle(), "Grafik *");
  EXPECT_FALSE(desk_.window->MayDiscard());
  EXPECT_EQ(desk_.person.lastQuestion.icon, Icon::Exclamation);  // Return means No
  desk_.Do("mnuGrafikLaden");
  EXPECT_EQ(desk_.person.questions.size(), 2U);
  EXPECT_EQ(desk_.Objects().size(), 3U);
  for (int i = 0; i < 3; ++i) desk_.Do("mnuGrafikRueckgaengig");
  EXPECT_TRUE(desk_.window->MayDiscard());  // nothing is left that was not there before
  EXPECT_EQ(desk_.person.questions.size(), 2U);
}

TEST_F(Grafik, ADraftSurvivesACrash) {
  EXPECT_FALSE(desk_.Find<QTimer>("tmrEntwurf")->isActive());
  DrawBoxes();
  EXPECT_TRUE(desk_.Find<QTimer>("tmrEntwurf")->isActive());  // its tick keeps the draft
  desk_.window->KeepDraft();
  const Drawing before = desk_.Objects();
  desk_.Start();  // without a farewell
  desk_.person.answers = {true};
  desk_.window->OfferDraft();
  EXPECT_EQ(desk_.Objects().size(), before.size());
  EXPECT_EQ(desk_.window->windowTitle(), "Grafik *");

  desk_.Start();
  desk_.window->OfferDraft();
  EXPECT_TRUE(desk_.Objects().empty());
  desk_.Start();
  desk_.window->OfferDraft();
  EXPECT_EQ(desk_.person.questions.size(), 2U);  // a refused draft is gone
}

TEST_F(Grafik, WhatIsGivenUpAtTheEndLeavesNoDraft) {
  DrawBoxes();
  desk_.window->KeepDraft();
  EXPECT_FALSE(desk_.window->MayEnd());
  EXPECT_TRUE(ReadFile(desk_.DraftPath(), 100'000));
  desk_.person.answers = {true};
  EXPECT_TRUE(desk_.window->MayEnd());
  EXPECT_FALSE(ReadFile(desk_.DraftPath(), 100'000));
}

TEST_F(Grafik, PicturesDropWhereTheyAreLetGo) {
  const QString path = desk_.folder.filePath(QStringLiteral("bild.png"));
  QImage image(20, 10, QImage::Format_RGB32);
  image.fill(Qt::black);
  ASSERT_TRUE(image.save(path));
  QMimeData mime;
  mime.setUrls({QUrl::fromLocalFile(path)});
  const QPoint at = desk_.Canvas()->mapTo(desk_.window.get(), desk_.Canvas()->ToWidget({100, 60}));
  QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
  QApplication::sendEvent(desk_.window.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, {});
  QApplication::sendEvent(desk_.window.get(), &drop);
  AnswerPictureDialog("cmdBildEinfuegen");
  QApplication::processEvents();
  ASSERT_EQ(desk_.Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(desk_.Objects()[0]), (Box{90, 55, 109, 64}));
}

TEST_F(Grafik, ChangesGoOutBundled) {
  DrawBoxes();
  desk_.timer.Tick();
  EXPECT_EQ(desk_.host.sends, 0);
  desk_.window->SetAutomaticSend(true);
  desk_.timer.Tick();
  desk_.timer.Tick();
  EXPECT_EQ(desk_.host.sends, 1);
  desk_.Key(Qt::Key_Left);
  desk_.Key(Qt::Key_Left);
  desk_.host.open = false;
  desk_.timer.Tick();
  EXPECT_EQ(desk_.host.sends, 1);
  desk_.host.open = true;
  desk_.timer.Tick();
  EXPECT_EQ(desk_.host.sends, 2);
  desk_.Click({200, 100});  // a change of the selection alone
  desk_.timer.Tick();
  EXPECT_EQ(desk_.host.sends, 2);
  desk_.window->SetAutomaticSend(false);
  EXPECT_FALSE(desk_.timer.Enabled());
}

TEST_F(Grafik, ZoomsUpToTheLimitAndKeepsThePixelUnderThePointer) {
  auto* slider = desk_.Find<QSlider>("ctlZoom");
  EXPECT_EQ(slider->maximum(), 32700 / 240);
  slider->setValue(20);
  const DrawingCanvas* canvas = desk_.Canvas();
  auto* bar = desk_.window->findChild<QScrollArea*>()->horizontalScrollBar();
  bar->setValue(1000);
  const QPoint at = canvas->ToWidget({100, 64});
  const int onScreen = at.x() - bar->value();
  QWheelEvent wheel(at, canvas->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(desk_.Canvas(), &wheel);
  EXPECT_EQ(canvas->Zoom(), 21);
  EXPECT_NEAR(canvas->ToWidget({100, 64}).x() - bar->value(), onScreen, 21);

  slider->setValue(136);
  desk_.window->SetDisplaySize(640, 480);
  EXPECT_EQ(canvas->Zoom(), 32700 / 640);
  EXPECT_TRUE(desk_.Objects().empty());
  desk_.window->SetDisplaySize(128, 64);  // compared as text
  EXPECT_EQ(slider->maximum(), 32700 / 64);
}

TEST_F(Grafik, TheWindowFollowsTheZoomWhenWanted) {
  desk_.Find<QSlider>("ctlZoom")->setValue(3);
  desk_.window->resize(700, 560);
  const QSize before = desk_.window->size();
  desk_.host.follow = true;
  desk_.Do("mnuGrafikKleiner");
  EXPECT_EQ(before.width() - desk_.window->width(), 240 + 12);
  desk_.host.follow = false;
  desk_.Do("mnuGrafikGroesser");
  EXPECT_EQ(before.width() - desk_.window->width(), 240 + 12);
}

TEST_F(Grafik, ShowsWhatTheTerminalWillShow) {
  desk_.Find<QSlider>("ctlZoom")->setValue(1);
  desk_.Do("toolRechteck");
  desk_.Drag({10, 10}, {29, 19});
  desk_.Key(Qt::Key_Escape);
  desk_.Do("toolAuswahl");
  desk_.Click({200, 100});
  const QImage shown = desk_.Canvas()->grab().toImage();
  const auto pixel = [&](Point p) { return shown.pixelColor(desk_.Canvas()->ToWidget(p)); };
  EXPECT_EQ(pixel({10, 10}), QColor(Qt::black));
  EXPECT_EQ(pixel({29, 19}), QColor(Qt::black));
  EXPECT_EQ(pixel({15, 15}), QColor(Qt::white));
  EXPECT_EQ(pixel({9, 10}), QColor(Qt::white));
}

TEST_F(Grafik, ThePageShowsTheDrawingAndLeadsOn) {
  DrawingPage page(*desk_.window, desk_.host, desk_.person);
  page.resize(600, 400);
  const QImage before = page.grab().toImage();
  DrawBoxes();
  EXPECT_NE(page.grab().toImage(), before);
  EXPECT_EQ(page.findChild<QLabel*>(QStringLiteral("lblZeichnungKosten"))->text(),
            desk_.Find<QLabel>("lblKosten")->text());
  desk_.window->close();
  for (const char* name : {"cmdGrafik", "cmdGrafikSenden", "cmdGrafikMakro", "cmdGrafikText"}) {
    page.findChild<QPushButton*>(QString::fromLatin1(name))->click();
  }
  EXPECT_TRUE(desk_.window->isVisible());
  EXPECT_EQ(desk_.Objects().size(), 3U);
  EXPECT_EQ(desk_.host.sends + desk_.host.makros + desk_.host.texts, 3);
}

TEST_F(Grafik, ShowsItsCostsWithoutAskingTheTerminal) {
  DrawBoxes();
  const std::size_t bytes = desk_.window->CreatePic().size();
  EXPECT_TRUE(desk_.Find<QLabel>("lblKosten")
                  ->text()
                  .startsWith(QStringLiteral("%1 Zeichen").arg(bytes + 3)));
  EXPECT_EQ(desk_.host.queries, 0);
}

}  // namespace
}  // namespace kelvo
