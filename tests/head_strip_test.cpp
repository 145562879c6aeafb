#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using std::chrono::seconds;

class HeadStripTest : public WindowTest {
 protected:
  HeadStripTest() {
    Sql("update Optionen set FirstRun = 0");
    Sql("insert into DOVU values (7, 'Halle 1 Tor', 1, 1)");
    terminal.Answer("\x1b?V", "2.10F;");
    terminal.Answer("\x1b?A", "?A7;");
  }
  std::string Head() {
    return Text("lblHoerer") + " | " + Text("lblTerminal") + " | " + Text("lblAntwort");
  }
  bool Ticks() { return Find("ctlRS485").findChild<QTimer*>()->isActive(); }
  void Pass(seconds time) {
    loop.WaitForEvent(time);
    Find("ctlRS485").hide();
    Find("ctlRS485").show();
  }
};

TEST_F(HeadStripTest, ATerminalIsPickedByItsNameAndTheHeadSaysWhoListens) {
  Start();
  EXPECT_EQ(Head(), "Terminal nicht bekannt | Version ? | ? noch nicht gefragt");
  Find<QToolButton>("cmdDovuName").menu()->actions().at(0)->trigger();
  EXPECT_EQ(Find<QSpinBox>("ctlUpDownAdrDovu").value(), 7);
  EXPECT_EQ(Written(), "");
  Click("cmdDovuAktivieren");
  EXPECT_EQ(Head(), "Halle 1 Tor, Adresse 7 | Version ? | ? noch nicht gefragt");
  Click("cmdVerbindungPruefen");
  EXPECT_EQ(Written(), "←!A7;←?A←?V");
  EXPECT_EQ(Head(), "Halle 1 Tor, Adresse 7 | Version 2.10F | ✓ hat eben geantwortet");
  Type("Befehl", "!A9;");
  Click("cmdSenden_0");  // without ESC it is a text
  EXPECT_NE(Head().find("Adresse 7"), std::string::npos);
  Click("cmdGetAdresse");
  EXPECT_TRUE(Text("lblAdresseStand").starts_with("gelesen "));
  terminal.Answer("\x1b?V", "");
  Click("cmdBefehlSenden");
  EXPECT_TRUE(Text("lblAdresseStand").ends_with(" bei Adresse 7")) << Text("lblAdresseStand");
  Click("cmdGetVersion");
  EXPECT_EQ(Head(), "Adresse 9 | Version ? | ✗ antwortet nicht (seit 2 Befehlen)");
  Click("cmdToolbar_0");
  EXPECT_EQ(Head(), "Terminal nicht bekannt | Version ? | ? noch nicht gefragt");
  port.Lose();
  EXPECT_EQ(Head(), "Terminal nicht bekannt | Version ? | – getrennt, das Gerät fehlt");
  for (const auto& [name, entry] :
       {std::pair("Tor", "Tor (7)"), {"(Anzeige Nr.7)", "(Anzeige Nr.7)"}}) {
    Sql("update DOVU set Bezeichnung = '" + std::string(name) + "'");
    Show(Tab::Text);
    Show(Tab::Terminals);
    EXPECT_EQ(Find<QToolButton>("cmdDovuName").menu()->actions().at(0)->text(), entry);
  }
}

TEST_F(HeadStripTest, WhoSendsWithoutBeingAskedDoesNotJustKeepSilent) {
  StartOn(Tab::MatrixKeyboard);
  terminal.Answer("\x1b?V", "");
  Click("cmdGetVersion");
  EXPECT_EQ(Text("lblAntwort"), "✗ antwortet nicht (seit 2 Befehlen)");
  port.Arrive("5");
  EXPECT_EQ(Text("lblAntwort"), "! sendet Zeichen, antwortet aber nicht");
  Click("cmdGetVersion");
  EXPECT_EQ(Text("lblAntwort"), "✗ antwortet nicht (seit 4 Befehlen)");
}

TEST_F(HeadStripTest, WhereAllAnswerAtOnceTheAnswerIsNotClear) {
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(255);
  Click("cmdDovuAktivieren");
  terminal.Answer("\x1b?V", "2\x04\x10 F;");
  Click("cmdVerbindungPruefen");
  EXPECT_EQ(Head(), "alle Terminals | Version ? | ! unklar, mehrere zugleich? (eben)");
  EXPECT_EQ(person.LastMessage(), "Die Antwort war nicht lesbar.");
}

TEST_F(HeadStripTest, HowTheOutputsStandIsNotKnownBehindARestartAnotherPortAndALoss) {
  StartOn(Tab::Status);
  const auto forgets = [this](const char* why, const std::function<void()>& act) {
    Show(Tab::Status);
    Click("chkPortP0_3");
    Click("cmdSetPort");
    EXPECT_TRUE(Text("lblPortP0Stand").starts_with("gesendet")) << why;
    act();
    EXPECT_EQ(Text("lblPortP0Stand"), "nicht bekannt") << why;
    EXPECT_EQ(Text("lblPortP0"), "0") << why;
    EXPECT_EQ(Find<QCheckBox>("chkPortP0_3").checkState(), Qt::PartiallyChecked) << why;
  };
  forgets("restart", [this] { Click("cmdToolbar_0"); });
  forgets("another port", [this] {
    Click("cmdVerbinden");
    Choose("cboCom_13", "Com 2");
  });
  forgets("loss", [this] { port.Lose(); });
}

TEST_F(HeadStripTest, TheWordsAgeOnlyWhileTheyAreSeenAndChange) {
  Start();
  EXPECT_FALSE(Ticks());
  Click("cmdVerbindungPruefen");
  EXPECT_TRUE(Ticks());
  Pass(seconds(8));
  EXPECT_EQ(Text("lblAntwort"), "✓ hat vor 8 s geantwortet");
  Pass(seconds(60));
  EXPECT_EQ(Text("lblAntwort"), "✓ hat vor 1 min geantwortet");
  window->hide();
  EXPECT_FALSE(Ticks());
  window->show();
  EXPECT_TRUE(Ticks());
  Pass(seconds(3600));
  EXPECT_EQ(Text("lblAntwort"), "✓ hat vor über 1 h geantwortet");
  EXPECT_FALSE(Ticks());
}

TEST_F(HeadStripTest, NothingIsCutOffAtAWidthOf1024) {
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(7);
  Click("cmdDovuAktivieren");
  Click("cmdVerbindungPruefen");
  terminal.Answer("\x1b?V", "");
  for (int i = 0; i < 6; ++i) Click("cmdGetVersion");
  window->resize(1024, 700);
  QApplication::processEvents();
  EXPECT_EQ(Text("lblAntwort"), "✗ antwortet nicht (seit 12 Befehlen)");
  for (const char* name : {"lblPort", "lblHoerer", "lblTerminal", "lblAntwort"}) {
    EXPECT_GE(Find(name).width(), Find(name).sizeHint().width()) << name;
  }
}

TEST_F(HeadStripTest, InANarrowWindowItIsSeenWhoListensAndTheMarksAreShorter) {
  StartOn(Tab::Status);
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(7);
  Click("cmdDovuAktivieren");
  Click("cmdGetAdresse");
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(8);
  Click("cmdDovuAktivieren");
  const QLabel& mark = Find<QLabel>("lblAdresseStand");
  EXPECT_TRUE(mark.text().endsWith(QStringLiteral(" bei Adresse 7")));
  EXPECT_TRUE(mark.toolTip().startsWith(mark.text()));
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(7);
  Click("cmdDovuAktivieren");
  window->resize(960, 700);
  QApplication::processEvents();
  for (const char* name : {"lblAdresseStand", "lblPortP0Stand", "lblPortP1Stand"}) {
    const QWidget& seen = Find(name);
    EXPECT_LT(seen.mapTo(window.get(), seen.rect().topRight()).x(), 960) << name;
  }
  window->resize(1, 700);
  QApplication::processEvents();
  const QLabel& who = Find<QLabel>("lblHoerer");
  EXPECT_GE(who.width(), who.fontMetrics().horizontalAdvance(who.text()));
}

}  // namespace
}  // namespace kelvo
