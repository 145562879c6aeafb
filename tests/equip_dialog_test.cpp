#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "bus/terminals_dialog.h"
#include "bus/tick_list.h"
#include "inventory_page/equip_dialog.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

class EquipDialogTest : public PageTest {
 protected:
  EquipDialogTest() {
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values "
        "(5, 'Pult', 1, 1), (6, 'Tor', 1, 1)");
    port.characterTime = testing_world::nanoseconds(520'833);
    for (const int address : {5, 6}) {
      line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
    }
    Note(
        "\x1b"
        "EWM7,eins\x03",
        "Begrüßung");
    Note(
        "\x1b"
        "EWM0,zwei\x03",
        {});
    Begin();
  }
  void Note(const std::string& command, const std::string& name) {
    const Item item = *ItemOf(command);
    journal.Add({{},
                 {"/dev/line", 5},
                 Event::Acknowledged,
                 {ItemChange::Kind::Written, item.key},
                 name,
                 command});
  }
  /// The program starts, and the dialog is opened.
  void Begin() {
    Put(new EquipDialog({exchange, loop, person, state, journal, Records("DOVU"),
                         Records("Optionen"), [] { return std::vector<StoredRecord>(); },
                         [] { return std::string("/dev/line"); }, [this] { return selected; },
                         folder.Path("kelvo.ausstattung")}))
        .Open();
  }
  /// When the first macro has arrived.
  void AtFirstMacro(std::function<void()> action) {
    const auto hear = port.onCharacter;
    port.onCharacter = [this, hear, action](char character) {
      hear(character);
      if (character == '\x03' && ++macros == 1) action();
    };
  }
  std::string Plan() {
    return Find<QPlainTextEdit>("txtAusstattenPlan").toPlainText().toStdString();
  }
  std::string Report() {
    return Find<QPlainTextEdit>("txtAusstattenBericht").toPlainText().toStdString();
  }
  std::optional<std::string> Macro(std::size_t terminal, unsigned char number) {
    return line.bus.At(terminal).Memory().Read(sim::Eeprom::Kind::Macro, number);
  }

  WriteJournal journal;
  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
  std::optional<int> selected = 6;
  int macros = 0;
};

TEST_F(EquipDialogTest, ShowsThePlanReadsAndWritesOnlyAfterAQuestion) {
  EXPECT_NE(Plan().find("Makro 7 „Begrüßung“, Makro 0."), std::string::npos) << Plan();
  EXPECT_NE(Plan().find("Tor, Adresse 6"), std::string::npos);
  EXPECT_TRUE(port.written.empty());
  Click("cmdAusstattenLesen");
  EXPECT_NE(Plan().find("frei sind 8192 Byte (gelesen)"), std::string::npos) << Plan();

  Find<QCheckBox>("chkAusstattenLoeschen").setChecked(true);
  port.written.clear();
  Click("cmdAusstatten");
  EXPECT_TRUE(person.proposesNo);
  EXPECT_TRUE(port.written.empty());

  person.answers = {true};
  Click("cmdAusstatten");
  EXPECT_EQ(Macro(1, 7), "eins");
  EXPECT_EQ(Macro(1, 0), "zwei");
  EXPECT_EQ(Macro(0, 7), std::nullopt);
  EXPECT_NE(Report().find("2 von 2 geschrieben, davon 2 geprüft"), std::string::npos) << Report();
  EXPECT_FALSE(std::filesystem::exists(folder.Path("kelvo.ausstattung")));
}

TEST_F(EquipDialogTest, TheSourceIsNoTargetUnlessTicked) {
  selected = 5;
  Begin();
  auto& targets = Find<TickList>("ctlAusstattenZiele");
  EXPECT_FALSE(targets.Ticked(0));
  EXPECT_FALSE(Find("cmdAusstatten").isEnabled());
  targets.Tick(0, true);
  Click("cmdAusstatten");
  EXPECT_TRUE(person.proposesNo);
  EXPECT_TRUE(port.written.empty());
  const auto* item = Find<TickList>("ctlAusstattenPosten").topLevelItem(0);
  EXPECT_EQ(item->text(3).toStdString(), "gleich dem zuletzt von hier Geschriebenen");
}

TEST_F(EquipDialogTest, WhatIsLeftOverIsOfferedAtTheNextOpening) {
  AtFirstMacro([this] { port.Lose(); });
  person.answers = {true};
  Click("cmdAusstatten");
  EXPECT_NE(Text("lblAusstattenStand").find("Verbindung ging verloren"), std::string::npos);
  EXPECT_EQ(Macro(1, 0), std::nullopt);

  port.Open();
  Begin();
  EXPECT_FALSE(Find("cmdAusstatten").isVisible());
  person.answers = {false};
  Click("cmdAusstattenVerwerfen");
  EXPECT_TRUE(Find("cmdAusstattenVerwerfen").isVisible());
  Click("cmdAusstattenFortsetzen");
  EXPECT_EQ(Macro(1, 0), "zwei");
  EXPECT_EQ(Text("lblAusstattenStand"), "Alles ist geschrieben. Gewählt ist jetzt die Adresse 6.");
}

TEST_F(EquipDialogTest, ATerminalThatRefusesSaysSoInItsOwnLine) {
  line.bus.At(1).SetFault(sim::Fault::Nak);
  person.answers = {true};
  Click("cmdAusstatten");
  const QTreeWidgetItem& row = *Find<QTreeWidget>("ctlAusstattenLauf").topLevelItem(0);
  EXPECT_EQ(row.text(1).toStdString(),
            "0 von 2 geschrieben, 2 fehlgeschlagen, zuerst: nicht bestätigt: das Terminal hat es "
            "abgelehnt (NAK)");
  EXPECT_EQ(row.foreground(1).color(), TerminalsDialog::FailedColour());
}

TEST_F(EquipDialogTest, EscapeStopsFirstAndThenCloses) {
  AtFirstMacro([this] { Click("cmdAusstattenSchliessen"); });
  person.answers = {true};
  Click("cmdAusstatten");
  EXPECT_FALSE(shown->isVisible());
  EXPECT_EQ(Macro(1, 0), std::nullopt);
}

TEST_F(EquipDialogTest, AnInventoryIsSavedAndLoadedFromAFile) {
  person.file = folder.Path("pult.txt");
  Click("cmdAusstattenSichern");
  EXPECT_EQ(Find<QLabel>("lblAusstattenGesichert").text().toStdString(),
            "Der Bestand ist gesichert: " + *person.file);
  Click("cmdAusstattenLaden");
  EXPECT_EQ(Find<QComboBox>("cboAusstattenQuelle").currentText(), "Datei pult.txt");
  EXPECT_EQ(Find<TickList>("ctlAusstattenPosten").Rows(), 2);
  person.answers = {true};
  Click("cmdAusstatten");
  EXPECT_NE(Report().find("Quelle: Datei pult.txt (Bestand von"), std::string::npos) << Report();
}

TEST_F(EquipDialogTest, ASecondRunBeginsItsBarAtNothing) {
  for (int run = 0; run < 2; ++run) {
    std::optional<int> first;
    const auto hear = port.onCharacter;
    port.onCharacter = [&](char character) {
      const auto& bar = Find<QProgressBar>("ctlAusstattenFortschritt");
      if (!first && bar.isVisibleTo(bar.parentWidget())) first = bar.value();
      hear(character);
    };
    person.answers = {true};
    Click("cmdAusstatten");
    port.onCharacter = hear;
    EXPECT_EQ(first, 0) << run;
    auto& dialog = dynamic_cast<EquipDialog&>(Root());
    dialog.reject();
    dialog.Open();
  }
}

TEST_F(EquipDialogTest, AFileThatIsNoneIsRefused) {
  person.file = folder.Path("pult.txt");
  std::ofstream(*person.file) << "kelvo-bestand 1";
  Click("cmdAusstattenLaden");
  EXPECT_EQ(person.LastMessage(), "Die Datei enthält keinen Bestand oder ist beschädigt.");
}

}  // namespace
}  // namespace kelvo
