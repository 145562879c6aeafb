#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <map>

#include "keyboards/at_list.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

/// No button may come to stand where another one was, just when somebody clicks there.
class StillButtonsTest : public WindowTest {
 protected:
  void Begin() {
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values "
        "(3, 'Tor am Ende der langen Halle', 1, 1)");
    port.characterTime = testing_world::nanoseconds(520'833);
    for (const int address : {3, 7}) line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
    Start();
    Select(3);
  }
  void Select(int address) {
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(address);
    Click("cmdDovuAktivieren");
    Settle();
  }
  static void Settle() {
    for (int i = 0; i < 4; ++i) QApplication::processEvents();
  }
  std::map<QString, QRect> Buttons() {
    Settle();
    std::map<QString, QRect> places;
    for (const QPushButton* const button : Root().findChildren<QPushButton*>()) {
      if (!button->isVisible()) continue;
      places[button->objectName()] = {button->mapTo(&Root(), QPoint()), button->size()};
    }
    return places;
  }
  /// What is done on the page moves none of the buttons that are there now.
  template <typename Do>
  void ExpectStill(const char* what, Do&& act) {
    const auto before = Buttons();
    act();
    for (const auto& [name, place] : Buttons()) {
      const auto was = before.find(name);
      if (was == before.end()) continue;
      EXPECT_EQ(place.topLeft(), was->second.topLeft()) << what << " " << name.toStdString();
    }
    EXPECT_EQ(Buttons().size(), before.size()) << what;
  }

  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(StillButtonsTest, ResultsWarningsAndHintsMoveNone) {
  Begin();
  Show(Tab::MatrixKeyboard);
  Find<QCheckBox>("chkTastZeile_0").setChecked(true);
  Find<QCheckBox>("chkTastSpalte_0").setChecked(true);
  Type("txtTastMatrix_0", "A");
  Type("txtTastTabNr", "4");
  ExpectStill("Matrix geprüft", [this] { Click("cmdSetMatrixTabGeprueft"); });
  EXPECT_FALSE(Text("lblMatrixTabGeprueft").empty());
  ExpectStill("Matrix gelesen", [this] { Click("cmdMatrixRead"); });
  EXPECT_EQ(Text("lblTastTabBelegt"), "") << "there lies what is shown";
  ExpectStill("Matrix belegt", [this] { Type("txtTastMatrix_0", "B"); });
  EXPECT_FALSE(Text("lblTastTabBelegt").empty());
  ExpectStill("Matrix misslungen", [this] {
    line.bus.At(0).SetFault(sim::Fault::Silent);
    Click("cmdSetMatrixTabGeprueft");
    line.bus.At(0).SetFault(sim::Fault::None);
  });
  Show(Tab::AtKeyboard);
  auto& list = *Find<QTableView>("ctlATTabListe").model();
  list.setData(list.index(0, AtList::OldCode), 65);
  list.setData(list.index(0, AtList::NewCode), 66);
  ExpectStill("AT belegt", [this] { Type("txtATTastNr", "4"); });
  EXPECT_FALSE(Text("lblATTastBelegt").empty());
  ExpectStill("AT geprüft", [this] { Click("cmdSetATTabGeprueft"); });
  ExpectStill("AT gelesen", [this] { Click("cmdATRead"); });
  ExpectStill("AT ungeordnet", [&list] {
    list.setData(list.index(1, AtList::OldCode), 60);
    list.setData(list.index(1, AtList::NewCode), 61);
  });
  EXPECT_TRUE(Find("lblATHinweis").isVisible());
  Show(Tab::Eeprom);
  ExpectStill("Konfiguration geprüft", [this] { Click("cmdSetConfigGeprueft"); });
  Show(Tab::Macros);
  Type("txtMakroNr", "5");
  ExpectStill("Makro geprüft", [this] { Click("cmdSetMakroGeprueft"); });
  ExpectStill("Makro belegt", [this] { Find<QPlainTextEdit>("txtMakro").setPlainText("anders"); });
  ExpectStill("Makro ohne Nummer", [this] { Click("cmdPlayMakro"); });
  EXPECT_FALSE(Text("lblMakroHinweis").empty());
}

TEST_F(StillButtonsTest, ResultGoesWhenItHoldsNoLonger) {
  Begin();
  Show(Tab::Macros);
  Type("txtMakroNr", "5");
  Type("txtMakroNrDisplay", "5");
  const auto write = [this] {
    Click("cmdSetMakroGeprueft");
    Settle();
    return !Text("lblMakroGeprueft").empty();
  };
  const auto gone = [this] {
    Settle();
    return Text("lblMakroGeprueft").empty();
  };
  ASSERT_TRUE(write());
  Click("cmdSetAutostartMakro");
  EXPECT_FALSE(gone()) << "another number";
  Click("cmdClearMakro");
  EXPECT_TRUE(gone()) << "deleted";
  ASSERT_TRUE(write());
  Click("cmdSetMakro");
  EXPECT_TRUE(gone()) << "written otherwise";
  ASSERT_TRUE(write());
  person.answers = {true, false};
  Click("cmdClearEEprom");
  EXPECT_TRUE(gone()) << "everything erased";
  ASSERT_TRUE(write());
  Select(7);
  EXPECT_TRUE(gone()) << "another Terminal";
}

TEST_F(StillButtonsTest, WhatWasReadNamesItsTerminalAndIsTakenBackWithUnsavedEdits) {
  Sql("insert into Makro (typ, lfdnr, Bezeichnung, nr_im_display, eingang, ausgang, wert) values "
      "('MatrixTab', 0, 'Feld', 3, 1, 128, char(27) || 'EWK3,80,31,FF,FF,FF,FF,FF,FF,FF;')");
  Begin();
  Show(Tab::MatrixKeyboard);
  Click("cmdSetMatrixTab");
  Click("cmdMatrixRead");
  EXPECT_EQ(Text("lblMatrixGelesen").substr(5), " von Adresse 3 gelesen: Tabelle 3");
  Select(7);
  EXPECT_EQ(Text("lblMatrixGelesen").substr(5), " von Adresse 3 gelesen: Tabelle 3");
  Type("txtTastMatrix_0", "B");
  Click("cmdMatrixUebernehmen");
  EXPECT_EQ(Text("txtTastMatrix_0"), "1");
  Trigger("mnuBearbeitenRueckgaengig");
  EXPECT_EQ(Text("txtTastMatrix_0"), "B");
  EXPECT_EQ(Chosen("cboTastTabBez"), "* Feld");
  Click("cmdMatrixUebernehmen");
  Choose("cboTastTabBez", Entries("cboTastTabBez").back().c_str());
  Trigger("mnuBearbeitenRueckgaengig");
  EXPECT_EQ(Chosen("cboTastTabBez"), "* Feld");
  EXPECT_EQ(Text("txtTastMatrix_0"), "B");
}

}  // namespace
}  // namespace kelvo
