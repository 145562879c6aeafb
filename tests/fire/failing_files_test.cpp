#include <QAction>
#include <QSpinBox>

#include "graphics/wmf.h"
#include "inventory/journal.h"
#include "tests/drawing_samples.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/fire/each_fails.h"
#include "tests/fire/fire_count.h"

// Everything that the program writes, with each call of the system failing once. What the operator
// is told is held to what lies on the disc: no word, and it is there; a word, and what was there
// before is whole.

namespace kelvo {
namespace {

TEST_F(FailingFilesTest, ARecordIsStoredOrItIsSaidThatItIsNot) {
  StartOn(Tab::Macros);
  std::string before;
  std::string text;
  int turn = 0;
  Click("cmdToolbar_6");
  EachFails(
      "save",
      [&] {
        before = StoredText("Satz");
        text = "text " + std::to_string(++turn);
      },
      [&] {
        Type("txtMakro", text);
        person.inputs = {"Satz"};
        person.answers = {true};
        Click("cmdToolbar_8");
      },
      [&](bool said) {
        EXPECT_EQ(StoredText("Satz"), said ? before : text);
        EXPECT_EQ(Chosen("cboMakro").starts_with("* "), said) << Chosen("cboMakro");
        EXPECT_EQ(Editor("txtMakro"), text);
      });
  EXPECT_EQ(StoredText("Satz"), text);
  EachFails(
      "delete",
      [&] {
        if (StoredText("Weg").empty()) {
          Sql("insert into Makro (typ, Bezeichnung, wert) values ('Makro', 'Weg', 'x')");
        }
        Show(Tab::Status);
        Show(Tab::Macros);
        Choose("cboMakro", "Weg");
      },
      [&] {
        person.answers = {true};
        Click("cmdToolbar_12");
      },
      [&](bool said) {
        EXPECT_EQ(StoredText("Weg"), said ? "x" : "");
        EXPECT_EQ(Chosen("cboMakro") == "Weg", said);
      });
  std::cout << faults << " calls failed while records were stored, " << told << " said\n";
}

TEST_F(FailingFilesTest, AFileIsReplacedAsAWholeOrStaysAndThatIsSaid) {
  StartOn(Tab::Drawing);
  const std::string drawing = folder.Path("drawing.wmf");
  std::ofstream(drawing, std::ios::binary)
      << WriteWmf({Boxed(Kind::Rectangle, {20, 100}, {5, 90}, false)}, 240, 128).bytes;
  person.file = drawing;
  Click("cmdToolbar_7");
  EachFailsAtFile("drawing", "other.wmf", [this] { Click("cmdToolbar_8"); });
  EachFailsAtFile("text", "text.txt", [this] { Click("cmdToolbar_2"); });
  EachFailsAtFile("export", "halle.kelvo", [this] {
    Trigger("mnuDateiExportieren");
    Click("cmdExportDatei");
  });
  Trigger("mnuAnsichtDatenverkehr");
  EachFailsAtFile("capture", "verkehr.txt", [this] { Click("cmdVerkehrSpeichern"); });
  EachFailsAtFile("search", "suche.txt", [this] {
    Show(Tab::Terminals);
    Find<QPushButton>("cmdDovuExport").setEnabled(true);
    Click("cmdDovuExport");
  });
  std::cout << faults << " calls failed while files were saved, " << told << " said\n";
}

// What cannot be recorded is said, once, and sent all the same.
TEST_F(FailingFilesTest, WhatIsSentIsRecordedOrItIsSaidThatItIsNot) {
  testing_world::SimulatedLine line(loop, port);
  line.bus.Add({.address = 0}, fonts)->PowerOn(loop.Now());
  StartOn(Tab::Macros);
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(0);
  Click("cmdDovuAktivieren");
  std::string text;
  bool saidBefore = false;
  EachFails(
      "journal", [&] { text = "macro " + std::to_string(faults); },
      [&] {
        Type("txtMakro", text);
        Type("txtMakroNr", "7");
        Click("cmdSetMakro");
      },
      [&](bool said) {
        saidBefore = saidBefore || said;
        EXPECT_NE(port.written.find(text), std::string::npos);
        const std::string journal = ReadFile(folder.Path(kJournalFile));
        EXPECT_TRUE(saidBefore || journal.find(text) != std::string::npos) << journal;
      });
  EXPECT_NE(ReadFile(folder.Path(kJournalFile)).find(text), std::string::npos);
  std::cout << faults << " calls failed while writes were recorded, " << told << " said\n";
}

TEST_F(FailingFilesTest, StartAndEndHarmNothing) {
  const int every = testing_world::LongFire() ? 1 : 2;
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('Makro', 'Satz', 'stored')");
  int starts = 0;
  for (int call = 1; call < kMostCalls * every; call += every) {
    Forget();
    std::string refused;
    {
      const FailingSystem failing(folder.Path(), call, ENOSPC);
      try {
        Start();
        Show(Tab::Macros);
        Choose("cboMakro", "Satz");
        Type("txtMakro", "draft " + std::to_string(call));
        window->EndNow();
      } catch (const std::exception& error) {
        refused = error.what();
      }
    }
    window.reset();
    if (FailingSystem::Failed().empty()) break;
    SCOPED_TRACE(FailingSystem::Failed());
    ++starts;
    if (!refused.empty()) ExpectGerman(refused);
    for (const auto& message : person.messages) ExpectGerman(message.text);
    EXPECT_EQ(StoredText("Satz"), "stored");
    // The next start is offered what was kept.
    person.answers = {true, true};
    Start();
    Show(Tab::Macros);
    person.answers = {};
    person.decisions = {Decision::Discard};
    window->close();
    window.reset();
  }
  std::cout << starts << " starts and ends with a call that failed\n";
}

}  // namespace
}  // namespace kelvo
