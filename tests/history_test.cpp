#include <QListWidget>
#include <QStatusBar>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class HistoryTest : public WindowTest {};

TEST_F(HistoryTest, EachActionLeavesItsLineInTheStatusBarAndInTheHistory) {
  StartOn(Tab::Macros);
  terminal.Answer("E?F", "8142;");
  terminal.Answer("\x03", "\x06");
  Type("txtMakro", "Hallo");
  Click("cmdSetMakro");
  EXPECT_EQ(Text("lblAktivitaet"),
            "✓ Makro 1 geschrieben: 5 Byte, bestätigt, vorher 8142 Byte frei");
  Click("cmdClearConfig");
  EXPECT_EQ(Text("lblAktivitaet"), "✗ Konfiguration löschen: keine Antwort");
  window->statusBar()->showMessage(QStringLiteral("hint"));
  Click("cmdClearConfig");
  EXPECT_EQ(InStatusBar(), "") << "the newer line shows";
  Trigger("mnuAnsichtVerlauf");
  auto& history = Find<QListWidget>("ctlVerlauf");
  const auto line = [&](int row) { return history.item(row)->text().mid(10).toStdString(); };
  EXPECT_EQ(line(0).substr(0, 26), "✓ Anschluss offen: Com 6");
  EXPECT_EQ(line(history.count() - 1), "✗ Konfiguration löschen: keine Antwort");
  Type("txtmaxDovu", "2");
  const int before = history.count();
  Click("cmdDovusuchen");
  EXPECT_EQ(history.count(), before + 1);
  EXPECT_EQ(line(before), "✓ Suche: " + Text("lblDovuStand"));
  port.Lose();
  EXPECT_EQ(Text("lblAktivitaet"), "✗ Die Verbindung zu Com 6 ist verloren gegangen.");
}

}  // namespace
}  // namespace kelvo
