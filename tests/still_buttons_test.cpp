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

}  // namespace
}  // namespace kelvo
