#include <QDockWidget>

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

}  // namespace
}  // namespace kelvo
