#include <QClipboard>
#include <QScrollBar>
#include <QSpinBox>
#include <QTableView>

#include "link/commands.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class InventoryViewTest : public WindowTest {
 protected:
  InventoryViewTest() {
    port.characterTime = testing_world::nanoseconds(520'833);
    Sql("update Optionen set FirstRun = 0");
    Sql("delete from Makro");
    Sql("insert into Makro (typ, lfdnr, Bezeichnung, nr_im_display, wert) values "
        "('Makro', 0, 'Gruß', 7, 'Hallo'), ('Makro', 1, 'Logo', 8, 'Bild')");
    Sql("insert into DOVU values (5, 'Halle', 1, 1)");
    line.bus.Add({.address = 5}, fonts)->PowerOn(loop.Now());
  }
  void WriteShown(const char* record) {
    Show(Tab::Macros);
    Choose("cboMakro", record);
    Click("cmdSetMakro");
  }
  void Select(int address) {
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(address);
    Click("cmdDovuAktivieren");
  }
  // What is told when the line has come to rest.
  static void Tell() {
    QApplication::processEvents();
    QApplication::processEvents();
  }
  // "Makro 7 Gruß gleich"
  std::vector<std::string> Rows() {
    Show(Tab::Eeprom);
    Tell();
    const QAbstractItemModel& model = *Find<QTableView>("ctlBestand").model();
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QString text;
      for (const int column : {0, 1, 2, 5, 6}) {
        text += model.index(row, column).data().toString() + (column == 6 ? "" : " ");
      }
      rows.push_back(text.toStdString());
    }
    return rows;
  }
  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(InventoryViewTest, ShowsWhatWasWrittenAgainstTheDatabaseAndLeadsToTheRecord) {
  Start();
  Select(5);
  EXPECT_EQ(Rows(), std::vector<std::string>{});
  WriteShown("Gruß");
  WriteShown("Logo");
  EXPECT_EQ(Rows(), (std::vector<std::string>{"Makro 7 Gruß bestätigt gleich",
                                              "Makro 8 Logo bestätigt gleich"}));
  EXPECT_EQ(Chosen("cboBestandTerminal"), "wer zuhört: 5 – Halle, simulator.tty");
  window->resize(1280, 800);
  QApplication::processEvents();
  const auto& table = Find<QTableView>("ctlBestand");
  const int before = table.columnWidth(5);
  EXPECT_EQ(table.horizontalScrollBar()->maximum(), 0);
  Click("cmdSetMakroGeprueft");
  EXPECT_EQ(Rows().back(), "Makro 8 Logo geprüft gleich");
  EXPECT_EQ(table.horizontalScrollBar()->maximum(), 0);
  WriteShown("Logo");
  Rows();
  EXPECT_EQ(table.columnWidth(5), before) << "it has shrunk again";
  Find<QTableView>("ctlBestand").selectRow(1);
  Click("cmdBestandKopieren");
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Makro\t8\tLogo\t4\t"));
  Click("cmdBestandSatz");
  EXPECT_EQ(Editor("txtMakro"), "Bild");
  const QAbstractItemModel& texts = *Find<QTableView>("tblMakros").model();
  EXPECT_EQ(texts.index(0, 2).data().toString().toStdString(), "gleich");
  Sql("update Makro set wert = 'Anders' where Bezeichnung = 'Gruß'");
  Sql("delete from Makro where Bezeichnung = 'Logo'");
  Show(Tab::Text);
  EXPECT_EQ(Rows(), (std::vector<std::string>{"Makro 7 Gruß bestätigt geändert",
                                              "Makro 8 Logo bestätigt nicht in der Datenbank"}));
  Select(6);
  EXPECT_EQ(Rows(), std::vector<std::string>{});
  Find<QComboBox>("cboBestandTerminal").setCurrentIndex(1);
  Find<QComboBox>("cboBestandTerminal").activated(1);
  EXPECT_EQ(Rows().size(), 2u) << "the chosen one stays";
}

TEST_F(InventoryViewTest, TheFootCountsWhatThereIsAndSaysWhoListens) {
  Start();
  Select(5);
  WriteShown("Gruß");
  Rows();
  EXPECT_TRUE(Text("lblBestand")
                  .starts_with("1 Eintrag von hier geschrieben, zusammen 5 Zeichen. Was vorher "
                               "dort lag, weiß kelvo nicht."));
  person.answers = {true, false};
  Click("cmdClearEEprom");
  Tell();
  EXPECT_TRUE(Text("lblBestand").starts_with("Seit dem Löschen ("));
  EXPECT_NE(Text("lblBestand").find(") wurde von hier nichts geschrieben; sonst liegt dort nichts"),
            std::string::npos);
  EXPECT_EQ(Text("lblFreeBytes"), "8192");
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("gelesen "));
  Select(9);
  Click("cmdSetConfig");
  Tell();
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("zuletzt gelesen "));
  EXPECT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Chosen("cboBestandTerminal"), "wer zuhört: 9, simulator.tty, antwortet nicht");
  EXPECT_TRUE(Text("lblBestand")
                  .starts_with("9, simulator.tty antwortet nicht; hier steht, was zuletzt dorthin "
                               "geschrieben wurde. 1 Eintrag, ungewiss."));
  EXPECT_TRUE(Text("lblFreeBytesStand").ends_with(" bei Adresse 5"));
  EXPECT_TRUE(Text("lblMakroFrei").ends_with(" bei Adresse 5"));
  Click("cmdGetFreeBytes");
  Tell();
  EXPECT_EQ(Text("lblFreeBytesStand"), "keine Antwort");
  Select(254);
  EXPECT_EQ(Rows().size(), 0u);
  EXPECT_EQ(Text("lblFreeBytesStand"), "keine Antwort bei Adresse 9");
  EXPECT_EQ(Chosen("cboBestandTerminal"), "wer zuhört: keines gewählt");
  EXPECT_EQ(Text("lblBestand"),
            "Niemand hört zu; was geschrieben wurde, steht bei den Terminals der Auswahl.");
  Select(5);
  WriteShown("Gruß");
  Tell();
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("gelesen "));
  EXPECT_TRUE(Text("lblFreeBytesStand").ends_with(", seither geschrieben"));
  EXPECT_EQ(Text("lblMakroFrei"),
            Text("lblFreeBytes") + " Byte, zuletzt " + Text("lblFreeBytesStand"));
  port.Lose();
  EXPECT_EQ(Rows(), std::vector<std::string>{});
  EXPECT_EQ(Chosen("cboBestandTerminal"), "wer zuhört: niemand, getrennt");
  Find<QComboBox>("cboBestandTerminal").setCurrentIndex(1);
  Find<QComboBox>("cboBestandTerminal").activated(1);
  EXPECT_EQ(Rows(), std::vector<std::string>{"Makro 7 Gruß bestätigt wie zuletzt geschrieben"});
}

TEST_F(InventoryViewTest, TheFreeBytesStandOnEachPageWhoeverHasReadThem) {
  Start();
  Select(5);
  Show(Tab::Eeprom);
  Trigger("mnuAnsichtVergleich");
  Click("cmdVergleichLesen");
  Tell();
  EXPECT_EQ(Text("lblFreeBytes"), "8192");
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("gelesen "));
  EXPECT_TRUE(Text("lblMakroFrei").starts_with("8192 Byte, zuletzt gelesen "));
  Select(6);
  Tell();
  EXPECT_TRUE(Text("lblFreeBytesStand").ends_with(" bei Adresse 5"));
  // It is known still when the program is started anew, and so is whose it is.
  window.reset();
  Start();
  Show(Tab::Eeprom);
  EXPECT_EQ(Text("lblFreeBytes"), "8192");
  EXPECT_TRUE(Text("lblFreeBytesStand").ends_with(" bei Adresse 5")) << Text("lblFreeBytesStand");
  Select(5);
  Tell();
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("gelesen "));
  EXPECT_TRUE(Text("lblMakroFrei").starts_with("8192 Byte, zuletzt gelesen "));
}

// Who tells the address behind it is no other.
TEST_F(InventoryViewTest, TheFreeBytesOfOneWithoutAnAddressAreItsOwnWhenItTellsIt) {
  Start();
  Click("cmdGetFreeBytes");
  Click("cmdVerbindungPruefen");
  Tell();
  EXPECT_TRUE(Text("lblFreeBytesStand").starts_with("gelesen ")) << Text("lblFreeBytesStand");
  EXPECT_EQ(Text("lblHoerer"), "Halle, Adresse 5");
}

TEST_F(InventoryViewTest, ANumberThatIsTakenIsMarkedWhereItIsTyped) {
  Sql("insert into Makro (typ, lfdnr, Bezeichnung, nr_im_display, eingang, ausgang, wert) values "
      "('MatrixTab', 0, 'Feld', 3, 1, 128, char(27) || 'EWK3,80,31,FF,FF,FF,FF,FF,FF,FF;')");
  Start();
  Select(5);
  WriteShown("Gruß");
  Tell();
  EXPECT_EQ(Text("lblMakroBelegt"), "") << "its own number";
  Choose("cboMakro", "Logo");
  EXPECT_EQ(Text("lblMakroBelegt"), "");
  Type("txtMakroNr", "7");
  EXPECT_EQ(Text("lblMakroBelegt"), "⚠ Nummer 7: belegt mit Makro „Gruß“.");
  Show(Tab::MatrixKeyboard);
  Click("cmdSetMatrixTab");
  Show(Tab::AtKeyboard);
  Type("txtATTastNr", "3");
  EXPECT_EQ(Text("lblATTastBelegt"), "⚠ Nummer 3: belegt mit Matrix-Tabelle „Feld“.");
  Show(Tab::Macros);
  Click("cmdSetAutostartMakro");
  Choose("cboMakro", "Gruß");
  Tell();
  EXPECT_EQ(Text("lblMakroBelegt"), "⚠ Autostart, Nummer 0: belegt mit Makro „Logo“.");
  Show(Tab::AtKeyboard);
  Select(6);
  Tell();
  EXPECT_EQ(Text("lblATTastBelegt"), "");
}

TEST_F(InventoryViewTest, AnotherTerminalInItsPlaceIsNoticedByItsFreeBytes) {
  Start();
  Select(5);
  WriteShown("Gruß");
  Rows();
  Click("cmdGetFreeBytes");
  EXPECT_FALSE(Find("lblBestandWarnung").isVisible());
  const QPoint button = Find("cmdBestandText").mapTo(&Root(), QPoint());
  line.bus.At(0).Memory().Write(sim::Eeprom::Kind::Macro, 9, std::string(50, 'x'));
  Click("cmdGetFreeBytes");
  EXPECT_EQ(Rows(), std::vector<std::string>{"Makro 7 Gruß bestätigt unbekannt"});
  EXPECT_TRUE(Find("lblBestandWarnung").isVisible());
  EXPECT_EQ(Find("cmdBestandText").mapTo(&Root(), QPoint()), button) << "no button moves";
  EXPECT_NE(Text("lblBestandWarnung").find("8129 Byte frei"), std::string::npos);
  WriteShown("Gruß");
  EXPECT_EQ(Rows(), std::vector<std::string>{"Makro 7 Gruß bestätigt gleich"});
}

TEST_F(InventoryViewTest, WhatAnEraseCountsIsTakenByNoPageInFront) {
  Start();
  Select(5);
  line.bus.At(0).SetFault(sim::Fault::Slow);
  Show(Tab::Interfaces);
  person.answers = {true, false};
  Click("cmdClearEEprom");
  EXPECT_EQ(person.LastMessage(), "");
  EXPECT_EQ(Editor("txtReceiveCom2"), "");
  EXPECT_EQ(person.questions.size(), 2u) << "the erase, and the configuration after it";
}

TEST_F(InventoryViewTest, WhatCameOfAnEraseIsTheLastWordOfIt) {
  Start();
  Select(5);
  Show(Tab::Eeprom);
  line.bus.At(0).SetFault(sim::Fault::Slow);
  person.answers = {true, false};
  loop.After(testing_world::milliseconds(300), [this] { Click("cmdGetFreeBytes"); });
  Click("cmdClearEEprom");
  EXPECT_EQ(person.notices, std::vector<std::string>{
                                "Das EEPROM wird gelöscht. Solange wird nichts anderes gesendet."});
  EXPECT_TRUE(Text("lblAktivitaet").starts_with("✓ EEPROM")) << Text("lblAktivitaet");
  line.bus.At(0).SetFault(sim::Fault::Nak);
  person.answers = {true, false};
  Click("cmdClearEEprom");
  EXPECT_EQ(person.LastMessage(), "kein ACK nach löschen / cmdClearEEprom");
  EXPECT_NE(person.messages.back().hint.find("abgelehnt (NAK)"), std::string::npos);
  EXPECT_TRUE(Text("lblAktivitaet").ends_with("abgelehnt (NAK)")) << Text("lblAktivitaet");
  EXPECT_TRUE(Text("lblAntwort").starts_with("✓ hat ")) << Text("lblAntwort");
}

TEST_F(InventoryViewTest, WhatCannotBeRecordedIsSaidOnceAndSentAllTheSame) {
  std::filesystem::create_directory(folder.Path("bestand.txt"));
  Start();
  Select(5);
  WriteShown("Gruß");
  WriteShown("Logo");
  EXPECT_EQ(person.notices.size(), 1u);
  EXPECT_TRUE(person.messages.empty());
  EXPECT_EQ(Rows()[0], "Makro 7  nicht aufgezeichnet unbekannt");
}

}  // namespace
}  // namespace kelvo
