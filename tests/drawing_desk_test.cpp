#include <fstream>

#include <QKeyEvent>

#include "graphics/create_pic.h"
#include "graphics/wmf.h"
#include "shell/drawing_desk.h"
#include "tests/drawing_samples.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;
using testing_world::ReadFile;

// The drawing's page in the main window, the toolbar's buttons on it, and the drawing send.
class DrawingDeskTest : public WindowTest {
 protected:
  DrawingDeskTest() {
    Sql("update Optionen set FirstRun = 0");
    drawing = {Boxed(Kind::Rectangle, {20, 100}, {5, 90}, true),
               WithVertices(Kind::Line, {{1, 2}, {30, 40}})};
    TerminalTraits traits;
    traits.displayHeight = 128;
    commands = CreatePic(drawing, traits).text;
  }
  void Load() {
    person.file = folder.Path("drawing.wmf");
    std::ofstream(*person.file, std::ios::binary) << WriteWmf(drawing, 240, 128).bytes;
    Click("cmdToolbar_7");
    Forget();
  }

  Drawing drawing;
  std::string commands;
};

TEST_F(DrawingDeskTest, SendClearsTheDisplayAndWritesTheDrawingInOnePiece) {
  Start();
  Load();
  ASSERT_FALSE(commands.empty());
  Click("cmdGrafikSenden");
  EXPECT_EQ(port.writes, (std::vector<std::string>{"\x1bGC", commands}));
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(DrawingDeskTest, CommandsGoIntoATextFileAndIntoARecord) {
  Start();
  Load();
  person.file = folder.Path("drawing.txt");
  Click("cmdToolbar_2");
  EXPECT_EQ(ReadFile(*person.file), commands + "\r\n");
  person.file = folder.Path("no/folder/drawing.txt");
  Click("cmdToolbar_2");
  EXPECT_NE(person.LastMessage().find(" / SaveasText"), std::string::npos);

  person.inputs = {"Bild 1"};
  Trigger("mnuDateiSaveAsMakro");
  EXPECT_EQ(person.prompts.back(), "Bezeichnung für dieses Makro :|(neuer Name)");
  EXPECT_EQ(Stored("Makro", "typ", 3) + Stored("Makro", "nr_im_display", 3), "Grafik-1");
  EXPECT_EQ(WireText(Stored("Makro", "wert", 3)), commands);

  Database database(folder.Path("kelvo.mdb"));
  const std::vector<GraphicsHost::StoredText> stored = StoredTexts(database);
  ASSERT_EQ(stored.size(), 4U);
  EXPECT_EQ(stored[0].name + stored[0].commands, "Bild 1" + commands);
  EXPECT_EQ(stored[1].name, "Begrüßung");
  EXPECT_TRUE(stored[0].isDrawing && !stored[1].isDrawing);
}

TEST_F(DrawingDeskTest, SymbolsAreRecordsThatNobodyTakesForMacros) {
  Database database(folder.Path("kelvo.mdb"));
  SymbolRecords symbols(database);
  SymbolRecords others(database);
  symbols.Store("Tor", commands);
  symbols.Store("Alarm 'A'", "\x1bGP1,1;");
  symbols.Store("Tor", "\x1bGP2,2;");
  const auto names = [&] {
    std::string all;
    for (const auto& symbol : others.All()) all += symbol.name + "=" + symbol.commands + "|";
    return all;
  };
  EXPECT_EQ(names(), "Alarm 'A'=\x1bGP1,1;|Tor=\x1bGP2,2;|");
  EXPECT_EQ(StoredTexts(database).size(), 3U);
  others.Rename("Tor", "Alarm 'A'");
  EXPECT_EQ(names(), "Alarm 'A'=\x1bGP2,2;|");
  EXPECT_THROW(symbols.Rename("Tor", "Tür"), StoreConflict);
  symbols.Delete("Alarm 'A'");
  symbols.Delete("Alarm 'A'");
  EXPECT_EQ(names(), "");
}

TEST_F(DrawingDeskTest, WhatCannotBeTranslatedReplacesNothing) {
  drawing = {Boxed(Kind::Ellipse, {20000, 0}, {-20000, 0})};
  Start();
  Load();
  person.file = folder.Path("drawing.txt");
  std::ofstream(*person.file) << "old";
  for (const char* button : {"cmdToolbar_2", "cmdToolbar_11"}) {
    Forget();
    Click(button);
    EXPECT_EQ(person.LastMessage(), "Überlauf / CreatePic");
    EXPECT_TRUE(person.prompts.empty());
  }
  EXPECT_EQ(ReadFile(*person.file), "old");
}

// Whichever page is in front, but never more of it than the line takes.
TEST_F(DrawingDeskTest, ChangesGoOutByThemselvesOneDrawingAfterTheOther) {
  Start();
  Trigger("mnuOptionenSofortSenden");
  Load();
  Forget();
  loop.RunFor(milliseconds(2000));
  EXPECT_EQ(port.written, "\x1bGC" + commands);
  Forget();
  Show(Tab::Macros);
  Trigger("mnuDateiNeu");  // a record, not the drawing
  loop.RunFor(milliseconds(2000));
  EXPECT_EQ(Written(), "");
  Grafik().findChild<QAction*>(QStringLiteral("mnuGrafikAlles"))->trigger();
  const auto nudge = [] {
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(Grafik().findChild<QWidget*>(QStringLiteral("Display")), &right);
  };
  port.characterTime = milliseconds(100);  // the drawing takes seconds
  for (int i = 0; i < 20; ++i) {
    nudge();
    loop.RunFor(milliseconds(500));
    EXPECT_LE(port.writes.size() / 2, 1U + static_cast<unsigned>(i) / 4) << i;
  }
  EXPECT_LE(port.OutBufferCount(), port.writes[port.writes.size() - 1].size() + 4);
  loop.RunFor(std::chrono::minutes(1));
  EXPECT_EQ(port.writes.back(), Grafik().CreatePic()) << "the newest, in the end";
  Trigger("mnuOptionenSofortSenden");
  nudge();
  Forget();
  loop.RunFor(std::chrono::minutes(1));
  EXPECT_EQ(Written(), "");
}

TEST_F(DrawingDeskTest, ALongSendShowsItsProgressAndCanBeStopped) {
  Start();
  Load();
  port.characterTime = milliseconds(100);
  Click("cmdToolbar_10");
  EXPECT_TRUE(Find("ctlSendeFortschritt").isVisible());
  EXPECT_EQ(Grafik().findChild<QLabel*>(QStringLiteral("lblSenden"))->text(), QString())
      << "sent from the page";
  Click("cmdSendenAbbrechen");
  EXPECT_EQ(port.OutBufferCount(), 0U);
}

TEST_F(DrawingDeskTest, ResolutionThatIsSetIsTheEditorsTooAndTheDrawingGoes) {
  Start();
  Load();
  terminal.Answer("\033EWC", "\x06");
  Type("txtDisplayX", "320");
  Type("txtDisplayY", "240");
  Click("cmdSetRes");
  Forget();
  Click("cmdToolbar_10");
  EXPECT_EQ(Written(), "←GC");
}

TEST_F(DrawingDeskTest, UnsavedDrawingIsAskedAboutWhenTheProgramEnds) {
  Start();
  Load();
  for (const char* action : {"mnuGrafikAlles", "mnuGrafikDuplizieren"}) {
    Grafik().findChild<QAction*>(QString::fromUtf8(action))->trigger();
  }
  window->close();
  EXPECT_EQ(person.questions, std::vector<std::string>{"Die Zeichnung ist nicht gespeichert."});
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(port.IsOpen());
  person.decisions = {Decision::Discard};
  window->close();
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace kelvo
