#include <QDockWidget>
#include <QSpinBox>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class TwinDockTest : public WindowTest {};

TEST_F(TwinDockTest, IsOffAtTheFirstStartRememberedAndSendsNothing) {
  Start();
  EXPECT_FALSE(Find<QDockWidget>("dckAnzeige").isVisible());
  const std::string before = port.written;
  Trigger("mnuAnsichtAnzeige");
  Trigger("mnuAnsichtAnzeigen");
  EXPECT_TRUE(Find<QDockWidget>("dckAnzeige").isVisible());
  EXPECT_EQ(Text("lblAnzeigeStand").substr(0, 9), "Unbekannt");
  EXPECT_EQ(port.written, before);
  window->close();
  window.reset();
  Start();
  EXPECT_TRUE(Find<QDockWidget>("dckAnzeige").isVisible());
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(12);
  Click("cmdDovuAktivieren");
  Click("cmdVerbindungPruefen");
  Trigger("mnuAnsichtAnzeige");
  Trigger("mnuAnsichtAnzeige");
  EXPECT_EQ(Text("lblHoerer"), "Adresse 12");
  EXPECT_EQ(Text("lblAnzeigeWer"), "Nachbildung: Adresse 12");
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(9);
  Click("cmdDovuAktivieren");
  terminal.Answer("?A", "?A9;");
  terminal.Answer("?V", "2.10F;");
  Click("cmdVerbindungPruefen");
  Trigger("mnuAnsichtAnzeige");
  Trigger("mnuAnsichtAnzeige");
  EXPECT_EQ(Text("lblAnzeigeWer"), "Nachbildung: Adresse 9");
  port.Lose();
  Trigger("mnuAnsichtAnzeige");
  Trigger("mnuAnsichtAnzeige");
  EXPECT_NE(Text("lblAnzeigeStand").find("die Verbindung verloren ging"), std::string::npos);
}

TEST_F(TwinDockTest, LeavesThePagesTheirWidth) {
  StartOn(Tab::Macros);
  window->resize(1024, 768);
  QApplication::processEvents();
  const int before = Find<QTabWidget>("cmdTab").width();
  Trigger("mnuAnsichtAnzeige");
  QApplication::processEvents();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").width(), before);
  EXPECT_EQ(window->size(), QSize(1024, 768));
  EXPECT_LT(Find<QDockWidget>("dckAnzeige").minimumSizeHint().height(), 160);
}

// The inventory tells which macros an earlier run has written.
TEST_F(TwinDockTest, KnowsTheMacrosOfAnEarlierRun) {
  terminal.Answer("E?F", "8142;");
  terminal.Answer("\x03", "\x06");
  terminal.Answer("?A", "?A9;");
  terminal.Answer("?V", "2.10F;");
  for (const bool first : {true, false}) {
    StartOn(Tab::Macros);
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(9);
    Click("cmdDovuAktivieren");
    Click("cmdVerbindungPruefen");
    if (first) {
      Type("txtMakroNr", "4");
      Type("txtMakro", "Hallo");
      Click("cmdSetMakro");
      window->close();
      window.reset();
    }
  }
  Trigger("mnuAnsichtAnzeige");
  for (const char* const number : {"4", "5"}) {
    Type("txtMakroNrDisplay", number);
    Click("cmdPlayMakro");
    loop.RunFor(std::chrono::seconds(1));
    Trigger("mnuAnsichtAnzeige");
    Trigger("mnuAnsichtAnzeige");
    const bool unknown = Text("lblAnzeigeStand").find("gelaufen ist") != std::string::npos;
    EXPECT_EQ(unknown, std::string(number) == "5") << Text("lblAnzeigeStand");
  }
}

}  // namespace
}  // namespace kelvo
