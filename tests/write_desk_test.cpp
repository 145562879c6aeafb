#include <QClipboard>
#include <QSpinBox>
#include <QTableView>
#include <QTreeWidget>
#include <fstream>

#include "graphics/wmf.h"
#include "keyboards/at_list.h"
#include "tests/drawing_samples.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/window_fixture.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

using sim::Eeprom;
using testing_world::milliseconds;

/// The program, and Terminals on its line.
class WriteDeskTest : public WindowTest {
 protected:
  void BeginOn(Tab tab) {
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values "
        "(3, 'Tor', 1, 1), (7, 'Pult', 1, 1), (9, 'alt', 0, 0)");
    port.characterTime = testing_world::nanoseconds(520'833);
    for (const int address : {3, 7, 9}) {
      line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
    }
    StartOn(tab);
  }
  void Select(int address) {
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(address);
    Click("cmdDovuAktivieren");
    Forget();
  }
  std::string Macro(std::size_t terminal, int number) {
    return line.bus.At(terminal)
        .Memory()
        .Read(Eeprom::Kind::Macro, static_cast<unsigned char>(number))
        .value_or("-");
  }
  std::string State(int row) {
    const QTreeWidgetItem& item = *Find<QTreeWidget>("ctlSchreibenListe").topLevelItem(row);
    return (item.checkState(0) == Qt::Checked ? "*" : "") + item.text(3).toStdString();
  }

  /// What the comparison says of something; "-" where it has no row.
  std::string Compared(const char* what) {
    QApplication::processEvents();
    const QAbstractItemModel& table = *Find<QTableView>("ctlVergleich").model();
    for (int i = 0; i < table.rowCount(); ++i) {
      if (table.index(i, 1).data() != what) continue;
      return table.index(i, 5).data().toString().toStdString();
    }
    return "-";
  }

  // The rows that the filter leaves, with the titles above them.
  void CopiedAndSavedIsWhatIsShown(const QAbstractItemModel& table) {
    for (const bool differing : {false, true}) {
      Find<QCheckBox>("chkVergleichUnterschiede").setChecked(differing);
      Click("cmdVergleichKopieren");
      const QString copied = QApplication::clipboard()->text();
      EXPECT_TRUE(copied.startsWith(QStringLiteral("Terminal\tWas\tGelesen\t")));
      EXPECT_EQ(copied.count(u'\n'), table.rowCount() + 1);
      for (int row = 0; row < table.rowCount(); ++row) {
        EXPECT_TRUE(copied.contains(table.index(row, 5).data().toString() + u'\n')) << row;
      }
      person.file = folder.Path("vergleich.txt");
      Click("cmdVergleichSpeichern");
      EXPECT_EQ(kelvo::ReadFile(*person.file, 100'000), copied.toStdString());
      EXPECT_TRUE(Text("lblVergleich")
                      .starts_with("Der Vergleich ist gespeichert: " + *person.file + ". "));
    }
    person.file = folder.Path("missing/vergleich.txt");
    Click("cmdVergleichSpeichern");
    EXPECT_NE(person.LastMessage().find("kann nicht geschrieben werden"), std::string::npos);
    person.file.reset();
  }

  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(WriteDeskTest, MacroIsProvenToTheOneThatIsSelected) {
  BeginOn(Tab::Macros);
  Type("txtMakroNr", "5");
  Click("cmdSetMakroGeprueft");
  EXPECT_EQ(person.LastMessage(), "Welches Terminal hört, ist nicht bekannt.");
  EXPECT_EQ(Written(), "");
  Select(255);
  Click("cmdSetMakroGeprueft");
  EXPECT_EQ(person.LastMessage(), "Gewählt sind alle Terminals zugleich (255).");
  Select(7);
  Find<QPlainTextEdit>("txtMakro").setPlainText(QStringLiteral("Hallo"));
  const auto messages = person.messages.size();
  Click("cmdSetMakroGeprueft");
  EXPECT_EQ(Written(), "←E?F←!A7;←?A←C!" + std::string("←") + "EWM5,Hallo♥←C?");
  EXPECT_EQ(Macro(1, 5), "Hallo");
  EXPECT_TRUE(Text("lblMakroGeprueft").ends_with("Makro 5 an Adresse 7: empfangen und bestätigt"));
  EXPECT_NE(Text("lblAktivitaet").find("Makro 5 an Adresse 7: empfangen und bestätigt"),
            std::string::npos);
  EXPECT_EQ(person.messages.size(), messages);
  line.bus.At(1).SetFault(sim::Fault::Nak);
  Click("cmdSetMakroGeprueft");
  EXPECT_EQ(person.LastMessage(),
            "nicht bestätigt: das Terminal hat es abgelehnt (NAK) (Makro 5 an Adresse 7)");
}

TEST_F(WriteDeskTest, ATableThatNobodySentIsMissedByTheAddressThatWasAsked) {
  BeginOn(Tab::MatrixKeyboard);
  Trigger("mnuAnsichtVergleich");
  EXPECT_TRUE(Text("lblVergleich").starts_with("Nichts gelesen, kein Unterschied bekannt."));
  const auto asked = [this](int address) {
    Select(address);
    Click("cmdMatrixRead");
    return Text("lblMatrixGelesen").substr(5);
  };
  EXPECT_EQ(asked(0), " von Adresse 0: keine Antwort");
  EXPECT_NE(person.messages.back().hint.find("Terminal mit der Adresse 0 "), std::string::npos);
  EXPECT_EQ(asked(254), " von unbekannter Adresse: keine Antwort");
}

// The same macro, keyboard tables and all: what each page writes with a proof is what its usual
// button writes.
TEST_F(WriteDeskTest, EachPageWritesTheSameAsItsUsualButton) {
  BeginOn(Tab::MatrixKeyboard);
  Select(3);
  const auto records = [this] { return line.bus.At(0).Memory().Records(); };
  Find<QCheckBox>("chkTastZeile_0").setChecked(true);
  Find<QCheckBox>("chkTastSpalte_0").setChecked(true);
  Type("txtTastMatrix_0", "A");
  Type("txtTastTabNr", "4");
  auto& list = *Find<QTableView>("ctlATTabListe").model();
  list.setData(list.index(0, AtList::OldCode), 65);
  list.setData(list.index(0, AtList::NewCode), 66);
  struct Pair {
    Tab tab;
    const char* usual;
    const char* proven;
  };
  for (const Pair& pair : {Pair{Tab::MatrixKeyboard, "cmdSetMatrixTab", "cmdSetMatrixTabGeprueft"},
                           Pair{Tab::AtKeyboard, "cmdSetATTab", "cmdSetATTabGeprueft"},
                           Pair{Tab::Eeprom, "cmdSetConfig", "cmdSetConfigGeprueft"}}) {
    Show(pair.tab);
    line.bus.At(0).Memory().Erase();
    Click(pair.usual);
    const auto usual = records();
    EXPECT_EQ(usual.size(), 1U) << pair.usual;
    line.bus.At(0).Memory().Erase();
    Click(pair.proven);
    EXPECT_EQ(records(), usual) << pair.proven;
  }
  EXPECT_TRUE(person.messages.empty()) << person.LastMessage();
  Show(Tab::MatrixKeyboard);
  Type("txtTastTabNr", "256");
  Forget();
  Click("cmdSetMatrixTabGeprueft");
  EXPECT_EQ(Written(), "");
}

// Its record is the drawing's file.
TEST_F(WriteDeskTest, BitmapIsProvenAndCarriesTheNameOfTheDrawing) {
  BeginOn(Tab::Drawing);
  const Picture picture(16, 16, std::vector<Colour>(256, kBlack));
  person.file = folder.Path("logo.wmf");
  std::ofstream(*person.file, std::ios::binary)
      << WriteWmf({PictureAt({10, 100}, picture)}, 240, 128).bytes;
  Click("cmdGrafikLaden");
  Click("cmdGrafikBildGeprueft");
  EXPECT_TRUE(person.LastMessage().starts_with("Welches Terminal hört, ist nicht bekannt."));
  Select(7);
  person.inputs = {std::string("4")};
  Click("cmdGrafikBildGeprueft");
  EXPECT_TRUE(Written().starts_with("←E?F←!A7;←?A←C!←EWB4,")) << Written();
  EXPECT_TRUE(Written().ends_with("←C?")) << Written();
  EXPECT_TRUE(line.bus.At(1).Memory().Read(Eeprom::Kind::Bitmap, 4));
  Show(Tab::Eeprom);
  QApplication::processEvents();
  const QAbstractItemModel& held = *Find<QTableView>("ctlBestand").model();
  ASSERT_EQ(held.rowCount(), 1);
  EXPECT_EQ(held.index(0, 2).data(), QStringLiteral("logo.wmf"));
  EXPECT_EQ(held.index(0, 5).data(), QStringLiteral("geprüft"));
  person.inputs = {std::string("5")};
  Click("cmdToolbar_1");
  QApplication::processEvents();
  EXPECT_EQ(held.index(1, 2).data(), QStringLiteral("logo.wmf"));
  EXPECT_EQ(held.index(1, 5).data(), QStringLiteral("bestätigt"));
}

TEST_F(WriteDeskTest, DialogWritesToTheTickedAndRepeatsOnlyWhatFailed) {
  BeginOn(Tab::Macros);
  Select(9);
  Type("txtMakroNr", "5");
  Find<QPlainTextEdit>("txtMakro").setPlainText(QStringLiteral("Hallo"));
  Forget();
  Click("cmdSetMakroAktive");
  EXPECT_EQ(Written(), "");
  line.bus.At(1).SetFault(sim::Fault::Silent);
  Click("cmdSchreiben");
  EXPECT_EQ(State(0), "empfangen und bestätigt");
  EXPECT_EQ(State(1), "*nicht geschrieben: unter Adresse 7 antwortet niemand");
  EXPECT_EQ(State(2), "");
  EXPECT_TRUE(
      Text("lblSchreibenErgebnis")
          .starts_with("1 geprüft, 0 bestätigt ohne Prüfsumme, 1 fehlgeschlagen. Angekreuzt ist "
                       "noch, was fehlt; „Schreiben“ wiederholt nur das. Gewählt ist wieder die "
                       "Adresse 9. ("))
      << Text("lblSchreibenErgebnis");
  line.bus.At(1).SetFault(sim::Fault::None);
  Forget();
  Click("cmdSchreiben");
  EXPECT_EQ(Written(), "←!A7;←?A←E?F←C!←EWM5,Hallo♥←C?←!A9;");
  EXPECT_EQ(Macro(0, 5) + Macro(1, 5) + Macro(2, 5), "HalloHallo-");
  Forget();
  Click("cmdSchreiben");
  EXPECT_EQ(Written(), "");
  EXPECT_EQ(Text("lblSchreibenErgebnis"), "Nichts angekreuzt; es wurde nichts gesendet.");
  // Closed in the middle it ends behind the one whose turn it is.
  Click("cmdSchreibenAlle");
  loop.After(milliseconds(30), [this] { Find("frmSchreiben").close(); });
  Click("cmdSchreiben");
  EXPECT_FALSE(Find("frmSchreiben").isVisible());
  EXPECT_EQ(State(0), "empfangen und bestätigt");
  EXPECT_EQ(State(2), "*offen");
  EXPECT_TRUE(port.written.ends_with("\x1b!A9;"));
}

TEST_F(WriteDeskTest, OfTwoRecordsWithOneNumberOnlyOneIsWritten) {
  Sql("delete from Makro where Bezeichnung <> 'Rahmen'");
  Sql("insert into Makro (typ, nr_im_display, Bezeichnung, wert) select typ, nr_im_display, "
      "'Kasten', 'anders' from Makro");
  BeginOn(Tab::Macros);
  Select(7);
  Trigger("mnuAnsichtVergleich");
  Click("cmdVergleichSchreiben");
  EXPECT_EQ(State(0), "unbekannt; geht nicht zusammen mit Makro 2 „Kasten“");
  auto& list = *Find<QTreeWidget>("ctlSchreibenListe").topLevelItem(0);
  Click("cmdSchreibenAlle");
  EXPECT_TRUE(State(0).starts_with("*unbekannt"));
  EXPECT_TRUE(State(1).starts_with("unbekannt"));
  EXPECT_TRUE(Text("lblSchreibenErgebnis").starts_with("Nicht angekreuzt: 1. "));
  Find<QTreeWidget>("ctlSchreibenListe").topLevelItem(1)->setCheckState(0, Qt::Checked);
  EXPECT_EQ(list.checkState(0), Qt::Unchecked);
  EXPECT_EQ(Text("lblSchreibenErgebnis"),
            "Makro 2 „Rahmen“ ist nicht mehr angekreuzt: Es hat denselben Platz im Terminal wie "
            "Makro 2 „Kasten“.");
  Click("cmdSchreibenKeins");
  EXPECT_EQ(Text("lblSchreibenErgebnis"), "") << "that was of other ticks";
  Find<QTreeWidget>("ctlSchreibenListe").topLevelItem(1)->setCheckState(0, Qt::Checked);
  Click("cmdSchreiben");
  EXPECT_NE(Text("lblSchreibenErgebnis"), "");
  Click("cmdSchreibenAlle");
  EXPECT_TRUE(Text("lblSchreibenErgebnis").starts_with("Nicht angekreuzt: 1. "));
  Click("cmdSchreibenKeins");
  EXPECT_EQ(Macro(1, 2), "anders");
  EXPECT_EQ(State(0), "unbekannt; geht nicht zusammen mit Makro 2 „Kasten“");
}

// Nothing is asked before "Lesen", and what the database has anew is written only where it stays
// ticked.
TEST_F(WriteDeskTest, ComparisonShowsWhatChangedAndWritesIt) {
  BeginOn(Tab::Macros);
  Select(7);
  Type("txtMakroNr", "5");
  Click("cmdSetMakroGeprueft");
  Find<QPlainTextEdit>("txtMakro").setPlainText(QStringLiteral("neuer Text"));
  Forget();
  person.inputs = {std::string("Begrüßung")};
  person.answers = {true};
  Click("cmdToolbar_8");
  Trigger("mnuAnsichtVergleich");
  EXPECT_EQ(Written(), "");
  auto& table = *Find<QTableView>("ctlVergleich").model();
  const auto row = [this](const char* what) { return Compared(what); };
  EXPECT_EQ(row("Makro 5"), "≠ geändert");
  EXPECT_EQ(row("Version"), "hier nicht gelesen");
  EXPECT_TRUE(Text("lblVergleich")
                  .starts_with("1 Unterschied. „Geändertes schreiben …“ bietet an: 1 geänderten "
                               "Satz (angekreuzt), 2 "
                               "vielleicht fehlende Sätze. „gleich“"))
      << Text("lblVergleich");
  Find<QCheckBox>("chkVergleichUnterschiede").setChecked(true);
  EXPECT_EQ(row("Version"), "-");
  EXPECT_EQ(row("Makro 5"), "≠ geändert");
  Click("cmdVergleichSchreiben");
  EXPECT_EQ(Written(), "");
  Click("cmdSchreiben");
  EXPECT_EQ(State(0), "empfangen und bestätigt");
  EXPECT_EQ(State(1), "unbekannt") << "offered, and not ticked";
  EXPECT_EQ(Macro(1, 5), "neuer Text");
  EXPECT_EQ(line.bus.At(1).Memory().Records().size(), 1U);
  Find<QCheckBox>("chkVergleichUnterschiede").setChecked(false);
  EXPECT_EQ(row("Makro 5"), "= gleich");
  Forget();
  Click("cmdVergleichLesen");
  EXPECT_TRUE(Written().starts_with("←!A7;←?A←?V←F??←E?F")) << Written();
  EXPECT_TRUE(Written().ends_with("←!A7;"));
  EXPECT_EQ(row("Version"), "");
  line.bus.At(1).SetFault(sim::Fault::Silent);
  Find("cmdVergleichLesen").setFocus();
  Click("cmdVergleichLesen");
  EXPECT_EQ(Find("frmVergleich").focusWidget(), &Find("cmdVergleichLesen"));
  EXPECT_TRUE(row("Version").starts_with("keine Antwort (")) << row("Version");
  EXPECT_TRUE(
      Text("lblVergleich").starts_with("Kein Terminal gelesen, 1 ohne Antwort (Pult, Adresse 7)."));
  line.bus.At(1).SetFault(sim::Fault::None);
  CopiedAndSavedIsWhatIsShown(table);
  // Closed in the middle, the reading ends.
  loop.After(milliseconds(200), [this] { Find("frmVergleich").close(); });
  Click("cmdVergleichLesen");
  EXPECT_FALSE(Find("frmVergleich").isVisible());
  Find("cmdVergleichSchliessen").setFocus();
  Trigger("mnuAnsichtVergleich");
  EXPECT_EQ(Find("frmVergleich").focusWidget(), &Find("ctlVergleich"));
  EXPECT_TRUE(Find<QPushButton>("cmdVergleichLesen").isDefault()) << "whatever was pressed last";
  loop.After(milliseconds(200), [this] {
    Find("frmVergleich").close();
    Trigger("mnuAnsichtVergleich");
  });
  Click("cmdVergleichLesen");
  EXPECT_TRUE(Find("frmVergleich").isVisible()) << "wanted again";
  bool stoppable = false;
  loop.After(testing_world::milliseconds(50), [&] {
    stoppable = Find("cmdVergleichAbbrechen").isEnabled();
    port.Lose();
  });
  Click("cmdVergleichLesen");
  EXPECT_TRUE(stoppable);
  EXPECT_FALSE(Find("cmdVergleichAbbrechen").isEnabled());
  EXPECT_TRUE(Text("lblVergleich")
                  .starts_with("Kein Terminal ganz gelesen, 1 nur zum Teil (Pult, Adresse 7); die "
                               "Verbindung ging dabei verloren."))
      << Text("lblVergleich");
}

TEST_F(WriteDeskTest, OfAnEmptyListNobodyIsRead) {
  Sql("delete from DOVU");
  StartOn(Tab::Macros);
  Trigger("mnuAnsichtVergleich");
  Forget();
  Click("cmdVergleichLesen");
  EXPECT_EQ(Written(), "");
  EXPECT_TRUE(Text("lblVergleich").starts_with("Es gibt nichts zu lesen: "));
}

TEST_F(WriteDeskTest, AnOpenComparisonFollowsWhatHappensBehindIt) {
  BeginOn(Tab::Macros);
  Select(7);
  Type("txtMakroNr", "5");
  Trigger("mnuAnsichtVergleich");
  EXPECT_EQ(Compared("Makro 5"), "-");
  Click("cmdSetMakro");
  EXPECT_EQ(Compared("Makro 5"), "= gleich");
  Find<QPlainTextEdit>("txtMakro").setPlainText(QStringLiteral("neuer Text"));
  person.inputs = {std::string("Begrüßung")};
  person.answers = {true};
  Click("cmdToolbar_8");
  EXPECT_EQ(Compared("Makro 5"), "≠ geändert");
  Show(Tab::Eeprom);
  person.answers = {true, false};
  Click("cmdClearEEprom");
  EXPECT_NE(Compared("Makro 5"), "≠ geändert");
  EXPECT_EQ(Text("lblVergleich").find("geänderte"), std::string::npos) << Text("lblVergleich");
}

}  // namespace
}  // namespace kelvo
