#include <QProgressBar>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>

#include "bus/tick_list.h"
#include "graphics/wmf.h"
#include "inventory/equip_log.h"
#include "inventory/readings.h"
#include "tests/drawing_samples.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/fire/each_fails.h"
#include "tests/fire/scenes.h"

// What the dialogs write, and what is kept while they are at work.

namespace kelvo {
namespace {

class FailingDialogsTest : public FailingFilesTest {
 protected:
  FailingDialogsTest() {
    port.characterTime = testing_world::nanoseconds(520'833);
    PrepareScenes(folder.Path());
    for (const int address : {5, 6}) line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
  }
  void Rest() {
    while (Find<QProgressBar>("ctlDatenblattFortschritt").isVisible()) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
  }
  std::ptrdiff_t Lines(const char* name) const {
    const std::string text = ReadFile(folder.Path(name));
    return std::count(text.begin(), text.end(), '\n');
  }
  std::string Held(std::size_t terminal) {
    return line.bus.At(terminal).Memory().Read(sim::Eeprom::Kind::Macro, 7).value_or("");
  }
  void Figure(const char* what) const {
    std::cout << faults << " calls failed while " << what << ", " << told << " said\n";
  }
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(FailingDialogsTest, WhatADialogSavesIsThereAsAWholeOrItIsSaid) {
  StartOn(Tab::Macros);
  Trigger("mnuAnsichtVergleich");
  EachFailsAtFile("comparison", "vergleich.txt", [this] { Click("cmdVergleichSpeichern"); });
  Trigger("mnuAusstatten");
  EachFailsAtFile("contents", "bestand-pult.txt", [this] { Click("cmdAusstattenSichern"); });
  person.answers = {true};
  Find<TickList>("ctlAusstattenZiele").TickAll(true);
  Click("cmdAusstatten");
  EachFailsAtFile("report", "bericht.txt", [this] { Click("cmdAusstattenBericht"); });
  Trigger("mnuDateiDatenblatt");
  Rest();
  EachFailsAtFile("sheet", "blatt.pdf", [this] {
    Click("cmdDatenblattPdf");
    Rest();
  });
  Figure("dialogs saved");
}

TEST_F(FailingDialogsTest, WhatWasReadIsKeptOrItIsSaidThatItIsNot) {
  StartOn(Tab::Eeprom);
  Trigger("mnuAnsichtVergleich");
  Click("cmdVergleichLesen");
  const std::ptrdiff_t whole = Lines(kReadingsFile);
  std::ptrdiff_t before = 0;
  shows = "lblVergleich";
  step = testing_world::LongFire() ? 1 : 9;
  mark = "konnten nicht aufbewahrt werden";
  EachFails(
      "readings", [&] { before = Lines(kReadingsFile); }, [&] { Click("cmdVergleichLesen"); },
      [&](bool said) { EXPECT_TRUE(said || Lines(kReadingsFile) - before == whole); });
  EXPECT_GT(faults, 0);
  Figure("replies were kept");
}

// Nothing is sent that could not be gone on with.
TEST_F(FailingDialogsTest, AnEquippingIsLoggedOrHeldAndGivenUpOnlyWhenThatIsSafe) {
  StartOn(Tab::Eeprom);
  shows = "lblAusstattenStand";
  mark = "kann nicht aufgezeichnet werden";
  step = testing_world::LongFire() ? 1 : 5;
  const std::string log = folder.Path("kelvo.ausstattung");
  const auto begin = [&] {
    Find<QDialog>("frmAusstatten").reject();
    if (std::filesystem::exists(log)) {
      person.answers = {true};
      Click("cmdAusstattenVerwerfen");
    }
    Find<QLabel>("lblAusstattenStand").clear();
    for (std::size_t i = 0; i < 2; ++i) {
      line.bus.At(i).Memory().Delete(sim::Eeprom::Kind::Macro, 7);
    }
    Trigger("mnuAusstatten");
    Find<TickList>("ctlAusstattenZiele").TickAll(true);
    Forget();
    person.answers = {true};
  };
  bool journalSaid = false;
  EachFails(
      "equipping", begin, [&] { Click("cmdAusstatten"); },
      [&](bool said) {
        journalSaid = journalSaid || !person.notices.empty();
        const bool whole = Held(0) == "Hallo" && Held(1) == "Hallo";
        const bool held = std::filesystem::exists(log);
        EXPECT_TRUE(whole || said || held);
        if (Text("lblAusstattenStand").find(mark) == std::string::npos && whole) {
          EXPECT_FALSE(EquipLog::Open(log) && !EquipLog::Open(log)->Progress().Done());
        }
      });
  EXPECT_TRUE(journalSaid);
  shows.clear();
  EachFails(
      "giving up",
      [&] {
        begin();
        const FailingSystem failing(folder.Path(), 9, ENOSPC);
        Click("cmdAusstatten");
        person.answers = {true};
        Forget();
      },
      [&] { Click("cmdAusstattenVerwerfen"); },
      [&](bool said) { EXPECT_EQ(std::filesystem::exists(log), said); });
  Figure("Terminals were equipped");
}

TEST_F(FailingDialogsTest, ADraftIsKeptByTheTimerOrTheWindowSaysThatItIsNot) {
  StartOn(Tab::Drawing);
  person.file = folder.Path("drawing.wmf");
  std::ofstream(*person.file, std::ios::binary)
      << WriteWmf({Boxed(Kind::Rectangle, {20, 100}, {5, 90}, false)}, 240, 128).bytes;
  Click("cmdToolbar_7");
  auto& timer = *Grafik().findChild<QTimer*>(QStringLiteral("tmrEntwurf"));
  const std::string draft = folder.Path("kelvo.entwurf");
  std::string before;
  EachFails(
      "draft",
      [&] {
        before = ReadFile(draft);
        Grafik().statusBar()->clearMessage();
        for (const char* entry : {"mnuGrafikAlles", "mnuGrafikDuplizieren"}) {
          Grafik().findChild<QAction*>(QString::fromUtf8(entry))->trigger();
        }
      },
      [&] {
        timer.start(0);
        while (timer.isActive()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
      },
      [&](bool /*said*/) {
        const bool said = Grafik().statusBar()->currentMessage().contains("nicht gesichert");
        EXPECT_EQ(ReadFile(draft) == before, said);
        told += said ? 1 : 0;
      });
  EXPECT_GT(faults, 0);
  Figure("a draft was kept");
}

}  // namespace
}  // namespace kelvo
