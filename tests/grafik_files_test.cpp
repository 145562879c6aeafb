#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QSlider>
#include <QSpinBox>
#include <filesystem>

#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

TEST_F(Grafik, CopiesToTheClipboardAndBack) {
  DrawBoxes();
  Do("mnuGrafikAusschneiden");
  EXPECT_EQ(Objects().size(), 2U);
  EXPECT_EQ(QApplication::clipboard()->mimeData()->imageData().value<QImage>().size(),
            QSize(40, 10));
  Do("mnuGrafikEinfuegen");
  Do("mnuGrafikEinfuegen");
  ASSERT_EQ(Objects().size(), 4U);
  EXPECT_EQ(BoundsOf(Objects()[2]), (Box{100, 20, 139, 29})) << "where it was";
  EXPECT_EQ(BoundsOf(Objects()[3]), (Box{104, 16, 143, 25}));

  QApplication::clipboard()->setText(QStringLiteral("eins\n\t„zwei“ – 3…  \n"));
  Do("mnuGrafikEinfuegen");
  ASSERT_EQ(Objects().size(), 6U);
  EXPECT_EQ(Objects()[5].text, "    \"zwei\" - 3...");
  QApplication::clipboard()->setText(QStringLiteral("100 €"));
  Do("mnuGrafikEinfuegen");
  EXPECT_EQ(Objects().size(), 6U);
  EXPECT_NE(person.messages.at(0).hint.find("€"), std::string::npos);
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
  ASSERT_FALSE(WriteFile(path.toStdString(), "no picture"));
  Do("mnuGrafikBild");
  EXPECT_EQ(person.messages.size(), 1U);
  EXPECT_EQ(Objects().size(), 1U);
}

TEST_F(Grafik, APictureAsLargeAsTheDisplayCoversIt) {
  QImage image(480, 256, QImage::Format_RGB32);
  image.fill(Qt::black);
  QApplication::clipboard()->setImage(image);
  AnswerPictureDialog("cmdBildEinfuegen", [](PictureDialog& dialog) {
    auto* width = dialog.findChild<QSpinBox*>(QStringLiteral("txtBildBreite"));
    QTest::keyClicks(width, QStringLiteral("240"));  // in the place of what stood there
    EXPECT_EQ(width->value(), 240);
  });
  Do("mnuGrafikEinfuegen");
  EXPECT_EQ(BoundsOf(Objects().at(0)), (Box{0, 0, 239, 127}));
  QTest::keyClick(Find<QSlider>("ctlZoom"), Qt::Key_Escape);
  EXPECT_EQ(window->focusWidget(), Canvas());
}

TEST_F(Grafik, APictureIsPreparedAnew) {
  QImage image(100, 50, QImage::Format_RGB32);
  image.fill(Qt::white);
  for (int y = 0; y < 50; ++y) image.setPixel(99, y, 0);  // the right edge alone is black
  QApplication::clipboard()->setImage(image);
  AnswerPictureDialog("cmdBildEinfuegen");
  Do("mnuGrafikEinfuegen");
  const Box box = BoundsOf(Objects().at(0));
  Find<QSpinBox>("txtBreite")->setValue(10);
  Find<QSpinBox>("txtBreite")->setValue(100);
  EXPECT_EQ(Objects()[0].picture.At(98, 9), kWhite) << "nothing was lost on the way";
  EXPECT_EQ(Objects()[0].picture.At(99, 9), kBlack);

  const auto field = [](PictureDialog& dialog, const char* name) {
    return dialog.findChild<QSpinBox*>(QString::fromLatin1(name));
  };
  const auto change = [&](PictureDialog& dialog) {
    field(dialog, "txtRandLinks")->setValue(60);
    EXPECT_EQ(field(dialog, "txtBildBreite")->value(), 40) << "what is left keeps its size";
    EXPECT_EQ(field(dialog, "txtRandRechts")->maximum(), 39);
    dialog.findChild<QPushButton*>(QStringLiteral("cmdBildDrehen"))->click();
    EXPECT_EQ(field(dialog, "txtRandOben")->value(), 60);
    dialog.findChild<QPushButton*>(QStringLiteral("cmdBildSpiegeln"))->click();
  };
  const QPoint at = Canvas()->ToWidget({box.left + 50, box.top - 20});
  QTest::mouseDClick(Canvas(), Qt::LeftButton, {}, at);
  AnswerPictureDialog("cmdBildEinfuegen", change);
  QApplication::processEvents();
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{box.left, box.top - 39, box.left + 49, box.top}));
  EXPECT_EQ(Objects()[0].picture.At(20, 39), kBlack) << "the right edge is below now";
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(BoundsOf(Objects()[0]), box) << "one step";

  Do("mnuGrafikWiederholen");
  Key(Qt::Key_Return);
  AnswerPictureDialog("cmdBildEinfuegen", [&](PictureDialog& dialog) {
    EXPECT_EQ(field(dialog, "txtRandOben")->value(), 60);
    dialog.findChild<QPushButton*>(QStringLiteral("cmdBildZuruecksetzen"))->click();
  });
  QApplication::processEvents();
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{box.left, box.top - 49, box.left + 99, box.top}));
  EXPECT_EQ(Objects()[0].preparation, Preparation());

  Do("mnuGrafikInBild");
  EXPECT_TRUE(Objects()[0].source.Empty());
  const Drawing before = Objects();
  AnswerPictureDialog("cmdBildAbbrechen", change);
  Do("mnuGrafikBildBearbeiten");
  EXPECT_EQ(Objects(), before);
}

TEST_F(Grafik, SavesAndLoadsTheSameDrawing) {
  DrawBoxes();
  Do("mnuGrafikAlles");
  Do("mnuGrafikGruppieren");
  const std::string commands = window->CreatePic();
  person.file = folder.filePath(QStringLiteral("bild.wmf")).toStdString();
  Do("mnuGrafikSpeichern");
  EXPECT_EQ(window->windowTitle(), QStringLiteral("bild.wmf – Grafik"));
  // Once it has a name it is saved under that without a question.
  Do("mnuGrafikDuplizieren");
  EXPECT_EQ(window->windowTitle(), QStringLiteral("bild.wmf – Grafik *"));
  Do("mnuGrafikSpeichern");
  EXPECT_EQ(window->windowTitle(), QStringLiteral("bild.wmf – Grafik"));
  Do("mnuGrafikRueckgaengig");
  Do("mnuGrafikSpeichern");
  EXPECT_EQ(person.dialogs.size(), 1U);
  window->Clear();
  EXPECT_EQ(window->windowTitle(), "Grafik");
  Do("mnuGrafikLaden");
  EXPECT_EQ(window->CreatePic(), commands);
  EXPECT_TRUE(person.questions.empty());
  EXPECT_TRUE(person.messages.empty());

  std::filesystem::resize_file(*person.file, WmfLimits().fileBytes + 1);
  Do("mnuGrafikLaden");
  EXPECT_TRUE(person.LastMessage().starts_with("Die Datei ist zu groß."));
  ASSERT_FALSE(WriteFile(*person.file, "no metafile"));
  Do("mnuGrafikLaden");
  EXPECT_EQ(person.messages.size(), 2U);
  EXPECT_EQ(window->CreatePic(), commands);
  Do("mnuGrafikRueckgaengig");  // of loading, then of clearing
  EXPECT_TRUE(Objects().empty());
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(window->CreatePic(), commands);
}

TEST_F(Grafik, DrawingsGoIntoADrawingAndOutAsAPicture) {
  DrawBoxes();
  person.file = folder.filePath(QStringLiteral("teil.wmf")).toStdString();
  Do("mnuGrafikSpeichernUnter");
  Do("mnuGrafikZeichnung");
  ASSERT_EQ(Objects().size(), 6U);
  EXPECT_EQ(BoundsOf(Objects()[3]), BoundsOf(Objects()[0]));
  EXPECT_EQ(SelectedCount(Objects()), 3U);
  person.file = folder.filePath(QStringLiteral("bild.png")).toStdString();
  person.inputs = {"3"};
  Do("mnuGrafikPng");
  const QImage image(QString::fromStdString(*person.file));
  EXPECT_EQ(image.size(), QSize(720, 384));
  EXPECT_EQ(image.pixelColor(3 * 10, 3 * (127 - 10)), QColor(Qt::black));
  EXPECT_EQ(window->windowTitle(), QStringLiteral("teil.wmf – Grafik *"));
}

TEST_F(Grafik, CommandsBecomeADrawingAgain) {
  DrawBoxes();
  const std::string commands = window->CreatePic();
  const std::string path = folder.filePath(QStringLiteral("bild.txt")).toStdString();
  ASSERT_FALSE(WriteFile(path, commands + "\r\n"));
  person.file = path;
  Do("mnuGrafikZeichnung");
  EXPECT_EQ(Objects().size(), 6U);
  person.decisions = {Decision::Discard};
  Do("mnuGrafikLaden");
  EXPECT_EQ(window->CreatePic(), commands);
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Grafik")) << "saving asks for a name";

  QMimeData mime;
  mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  QDropEvent drop(QPointF(Canvas()->mapTo(window.get(), QPoint(9, 9))), Qt::CopyAction, &mime,
                  Qt::LeftButton, {});
  Do("mnuGrafikNeu");
  QApplication::sendEvent(window.get(), &drop);
  QApplication::processEvents();
  EXPECT_EQ(window->CreatePic(), commands);

  ASSERT_FALSE(WriteFile(path, "Guten Tag"));
  Do("mnuGrafikLaden");
  EXPECT_EQ(person.LastMessage(), "Der Text enthält keine Zeichenbefehle.\n" + path);
  EXPECT_EQ(window->CreatePic(), commands) << "nothing is lost";
}

TEST_F(Grafik, StoredDrawingsAndMacrosThatDrawAreOpened) {
  Do("mnuGrafikDatenbank");
  EXPECT_EQ(person.LastMessage(), "In der Datenbank ist keine Zeichnung.");
  host.stored = {{"Haus", "\x1bGP1,1;\x1bGR9,9;", true},
                 {"Piep", "\x1b?V", false},
                 {"Rahmen", "\x1b!C0;\x1bGR20,20;", false}};
  const auto open = [&](int row, const char* button) {
    QTimer::singleShot(0, qApp, [=] {
      QWidget* const dialog = QApplication::activeModalWidget();
      auto* names = dialog->findChild<QListWidget*>(QStringLiteral("lstGespeichert"));
      EXPECT_EQ(names->count(), 2);
      EXPECT_EQ(names->item(1)->text(), QStringLiteral("Rahmen (Makro)"));
      names->setCurrentRow(row);
      dialog->findChild<QPushButton*>(QString::fromLatin1(button))->click();
    });
    Do("mnuGrafikDatenbank");
  };
  open(1, "cmdGespeichertAbbrechen");
  EXPECT_TRUE(Objects().empty());
  open(1, "cmdGespeichertOeffnen");
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{0, 107, 20, 127}));
  EXPECT_EQ(person.LastMessage(), "Nicht übernommen wurden: 1 x Cursor ein/aus (ab Zeichen 1)");
  open(0, "cmdGespeichertOeffnen");
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{1, 118, 9, 126}));
}

TEST_F(Grafik, VertexShapesAreAnnouncedAndCanBecomePolylines) {
  const Drawing shapes = {GroupOf({WithVertices(Kind::Vertices, {{0, 0}, {9, 0}, {9, 9}})})};
  person.file = folder.filePath(QStringLiteral("vieleck.wmf")).toStdString();
  ASSERT_FALSE(WriteFile(*person.file, WriteWmf(shapes, 240, 128).bytes));
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
  person.answers = {false};
  window->OfferDraft();
  EXPECT_TRUE(Objects().empty());
  EXPECT_EQ(ReadFile(folder.filePath("entwurf-1.wmf").toStdString(), 100'000)->empty(), false)
      << "declined, but not lost";
  Start();
  window->OfferDraft();
  EXPECT_EQ(person.questions.size(), 2U);
}

// Another program's, or one that nobody has been asked about yet.
TEST_F(Grafik, ADraftThatWasNotDecidedOnIsNeitherRemovedNorOverwritten) {
  DrawBoxes();
  window->KeepDraft();
  const auto draft = ReadFile(DraftPath(), 100'000);
  Start();
  window->KeepDraft();
  person.decisions = {Decision::Discard};
  EXPECT_TRUE(window->MayEnd());
  person.isThere = false;
  window->OfferDraft();
  EXPECT_EQ(ReadFile(DraftPath(), 100'000), draft);
  EXPECT_TRUE(person.questions.empty());
  DrawBoxes();
  window->KeepDraft();
  EXPECT_EQ(ReadFile(folder.filePath("entwurf-1.wmf").toStdString(), 100'000), draft);
}

TEST_F(Grafik, WhatIsNoDraftInItsPlaceIsToldAndKept) {
  const std::string victim = folder.filePath("victim").toStdString();
  ASSERT_FALSE(WriteFile(victim, "victim"));
  ASSERT_FALSE(WriteFile(DraftPath(), "damaged"));
  for (int number = 1; number <= 2; ++number) {
    Start();
    window->OfferDraft();
    const std::string aside =
        folder.filePath(QStringLiteral("entwurf-%1.wmf").arg(number)).toStdString();
    ASSERT_EQ(person.messages.size(), static_cast<std::size_t>(number));
    EXPECT_TRUE(person.LastMessage().ends_with("sondern umbenannt:\n" + aside));
    EXPECT_TRUE(std::filesystem::exists(aside));
    std::filesystem::create_symlink(victim, DraftPath());
  }
  // Nor while it is written.
  DrawBoxes();
  window->KeepDraft();
  std::filesystem::remove(DraftPath());
  std::filesystem::create_symlink(victim, DraftPath());
  window->KeepDraft();
  EXPECT_EQ(ReadFile(victim, 100), "victim");
  EXPECT_FALSE(std::filesystem::is_symlink(DraftPath()));
}

TEST_F(Grafik, WhatIsGivenUpAtTheEndLeavesNoDraft) {
  DrawBoxes();
  window->KeepDraft();
  EXPECT_FALSE(window->MayEnd());
  EXPECT_TRUE(ReadFile(DraftPath(), 100'000));
  person.decisions = {Decision::Save, Decision::Discard};
  EXPECT_FALSE(window->MayEnd()) << "no file was chosen";
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
  // A text that is moved here stays in the other program all the same.
  QMimeData text;
  text.setText(QStringLiteral("Pumpe"));
  QDragEnterEvent textEnter(at, Qt::CopyAction, &text, Qt::LeftButton, {});
  QApplication::sendEvent(window.get(), &textEnter);
  QDropEvent moved(at, Qt::CopyAction | Qt::MoveAction, &text, Qt::LeftButton, Qt::ShiftModifier);
  moved.setDropAction(Qt::MoveAction);
  QApplication::sendEvent(window.get(), &moved);
  EXPECT_EQ(moved.dropAction(), Qt::CopyAction);
  QApplication::processEvents();
  ASSERT_EQ(Objects().size(), 2U);
  EXPECT_EQ(BoundsOf(Objects()[1]).left, 100);
  EXPECT_EQ(BoundsOf(Objects()[1]).top, 60);
}

}  // namespace
}  // namespace kelvo
