#include "link/commands.h"
#include "settings/eeprom_page.h"
#include "settings/status.h"
#include "settings/status_page.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class StatusPageTest : public PageTest {
 protected:
  StatusPage& page = Put(new StatusPage({exchange, person, state, Records("Default")}));
};

TEST_F(StatusPageTest, VersionTellsTheNumberAndTheFlash) {
  const struct {
    const char* reply;
    const char* shown;
    bool flash;
  } cases[] = {{"2.10F;", "2.10F", true}, {"2.10;", "2.10", false}, {"\x1b?V1.9F;", "1.9F", true}};
  terminal.Answer("\x1b??", "Info\r\nZeile 2", milliseconds(20));
  for (const auto& c : cases) {
    terminal.Answer("\x1b?V", c.reply);
    Click("cmdGetVersion");
    EXPECT_EQ(Text("lblVersion"), c.shown);
    EXPECT_EQ(Find("ctlFlashFrame").isHidden(), !c.flash) << c.reply;
    EXPECT_EQ(Find<QPlainTextEdit>("lblSysInfo").toPlainText(), QStringLiteral("Info\nZeile 2"));
  }
  EXPECT_EQ(state.versionText, "1.9F");
}

TEST_F(StatusPageTest, SilenceLeavesZerosAndABlankVersion) {
  for (const char* button : {"cmdGetVersion", "cmdGetAdresse", "cmdGetPort", "cmdGetFlashInfo"}) {
    Click(button);
  }
  EXPECT_EQ(Text("lblVersion"), "");
  for (const char* field : {"txtAdresse", "lblPortP1", "lblSektorAnzahl", "lblSektorSize"}) {
    EXPECT_EQ(Text(field), "0") << field;
  }
  const char* const marks[] = {"lblVersionStand", "lblAdresseStand", "lblPortP1Stand",
                               "lblFlashStand"};
  for (const char* mark : marks) EXPECT_EQ(Text(mark), "keine Antwort") << mark;
  EXPECT_TRUE(person.messages.empty());
  terminal.Answer("\x1b?A", "0;");
  Click("cmdGetAdresse");
  EXPECT_EQ(Text("lblAdresseStand").substr(0, 8), "gelesen ");
  Q_EMIT Find<QLineEdit>("txtAdresse").textEdited(QStringLiteral("5"));
  EXPECT_EQ(Text("lblAdresseStand"), "") << "what is typed has not been read";
}

TEST_F(StatusPageTest, TheMarkSaysWhatCameAndNothingMovesForIt) {
  const auto place = [this] { return Find("txtDisplayX").mapTo(shown.get(), QPoint()); };
  const QPoint before = place();
  const auto mark = [this] {
    Click("cmdGetAdresse");
    QApplication::processEvents();
    return Text("lblAdresseStand");
  };
  terminal.Answer("\x1b?A", "5");
  EXPECT_EQ(mark(), "Antwort unvollständig");
  EXPECT_EQ(place(), before);
  terminal.Answer("\x1b?A", "x#;");
  EXPECT_EQ(mark(), "Antwort unlesbar");
  port.characterTime = milliseconds(1);
  port.held = true;
  EXPECT_EQ(mark(), "Leitung gehalten");
  port.held = false;
  terminal.Answer("\x1b?A", "");
  loop.After(milliseconds(20), [this] { port.Close(); });
  EXPECT_EQ(mark(), "Anschluss geschlossen");
  EXPECT_EQ(place(), before);
}

// The system information is waited for 100 ms; one that comes later stands in front of what is
// asked next.
TEST_F(StatusPageTest, AnAnswerOfAnotherFormIsReadButNotCalledRead) {
  const char* const info = "Terminal 2.1F Adr. 4\r\n";
  terminal.Answer("\x1b?A", std::string(info) + "?A4;");
  terminal.Answer("\x1b?P", std::string(info) + "165;");
  terminal.Answer("\033F??", "64;");
  terminal.Answer("\x1b?V", "2\x04\x10 F;");
  terminal.Answer("\x1b??", "Te\x04;");
  for (const char* button : {"cmdGetAdresse", "cmdGetPort", "cmdGetFlashInfo", "cmdGetVersion"}) {
    Click(button);
  }
  EXPECT_EQ(Text("txtAdresse"), "2.1");
  const char* const marks[] = {"lblAdresseStand", "lblPortP1Stand", "lblFlashStand",
                               "lblVersionStand"};
  for (const char* mark : marks) EXPECT_EQ(Text(mark), "Antwort unlesbar") << mark;
  EXPECT_EQ(state.versionText, "");
  terminal.Answer("\x1b?V", "2.1;");
  Click("cmdGetVersion");
  EXPECT_EQ(Text("lblVersionStand"), "Info: Antwort unlesbar");
}

TEST_F(StatusPageTest, WhereTheFlashGroupIsHiddenItSaysWhy) {
  const auto lack = [this] {
    Click("cmdGetVersion");
    return Find("lblFlashLack").isVisible() ? Text("lblFlashLack") : "";
  };
  terminal.Answer("\x1b?V", "1.9F;");
  EXPECT_EQ(lack(), "");
  terminal.Answer("\x1b?V", "");
  EXPECT_EQ(lack(), "Flash-Speicher: nicht bekannt (keine Antwort)");
  terminal.Answer("\x1b?V", "1.9;");
  EXPECT_EQ(lack(), "Flash-Speicher: keiner");
}

TEST_F(StatusPageTest, PageAsksForTheFlashWhileItIsUnknown) {
  terminal.Answer("\x1b?V", "2.10F;", milliseconds(5));
  terminal.Answer("\033F??", "64,4096;", milliseconds(5));
  page.Shown();
  EXPECT_EQ(Text("lblSektorAnzahl") + "/" + Text("lblSektorSize"), "64/4096");
  EXPECT_FALSE(Find("ctlFlashFrame").isHidden());
  Forget();
  page.Shown();
  EXPECT_EQ(Written(), "");
  state.flash = FlashState::Unknown;
  page.Shown();
  EXPECT_EQ(Written(), "←?V←F??");
}

TEST_F(StatusPageTest, UnansweredVersionStaysUnknown) {
  page.Shown();
  Forget();
  page.Shown();
  EXPECT_EQ(Written(), "←?V");
  EXPECT_TRUE(Find("ctlFlashFrame").isHidden());
}

TEST_F(StatusPageTest, AddressIsReadWhateverStandsBeforeIt) {
  for (const char* reply : {"17;", "?A17;", "\x1b?A17;", "\x1b?A?A17;"}) {
    terminal.Answer("\x1b?A", reply);
    Click("cmdGetAdresse");
    EXPECT_EQ(Text("txtAdresse"), "17") << reply;
  }
}

TEST_F(StatusPageTest, AddressFieldKeepsANumberAndTheButtonItsRange) {
  const struct {
    const char* typed;
    const char* shown;
    bool usable;
  } cases[] = {{"12a", "12", true}, {"255", "255", true}, {"256", "256", false},
               {"", "0", true},     {"-1", "-1", false},  {"1.5", "1.5", false},
               {"007", "7", true},  {"x;R", "0", true}};
  for (const auto& c : cases) {
    Type("txtAdresse", c.typed);
    EXPECT_EQ(Text("txtAdresse"), c.shown);
    EXPECT_EQ(Find("cmdSetAdresse").isEnabled(), c.usable) << c.typed;
  }
  Type("txtAdresse", "42");
  Click("cmdSetAdresse");
  EXPECT_EQ(Written(), "←!A42;");
}

TEST_F(StatusPageTest, PortLinesAreBits) {
  terminal.Answer("\x1b?P", "165;");
  Click("cmdGetPort");
  EXPECT_EQ(Text("lblPortP1"), "165");
  std::string ticked;
  for (int line = 7; line >= 0; --line) {
    const QString name = QStringLiteral("chkPortP1_%1").arg(line);
    ticked += Root().findChild<QCheckBox*>(name)->isChecked() ? '1' : '0';
  }
  EXPECT_EQ(ticked, "10100101");
  Forget();
  const auto state = [&](int line) {
    return Root().findChild<QCheckBox*>(QStringLiteral("chkPortP0_%1").arg(line))->checkState();
  };
  Click("chkPortP0_0");
  Click("chkPortP0_3");
  EXPECT_EQ(Text("lblPortP0"), "9");
  EXPECT_EQ(state(3), Qt::Checked);
  EXPECT_EQ(state(4), Qt::PartiallyChecked) << "nobody has set it";
  Click("cmdSetPort");
  EXPECT_EQ(Written(), "←!P9;");
  EXPECT_EQ(state(4), Qt::Unchecked);
  Click("chkPortP0_3");
  EXPECT_EQ(state(3), Qt::Unchecked) << "on or off, nothing between";
  Click("chkPortP0_3");
  EXPECT_EQ(Text("lblPortP0"), "9");
}

TEST_F(StatusPageTest, ResolutionIsClampedSentStoredAndKept) {
  const struct {
    const char* x;
    const char* y;
    const char* sent;
  } cases[] = {{"700", "500", "640,480"}, {"640", "480", "640,480"},
               {"19", "5", "20,20"},      {"20", "64", "20,64"},
               {"99x", "abc", "99,20"},   {"99999999999999999999", "-1e5", "640,20"},
               {"\xFC", ";R", "20,20"},   {"20.9", "&H40", "20,64"}};
  terminal.Answer("\033EWC", "\x06");
  std::string told;
  QObject::connect(&page, &StatusPage::ResolutionSet,
                   [&told](int x, int y) { told = std::to_string(x) + "," + std::to_string(y); });
  Type("txtDisplayOption", "7");
  for (const auto& c : cases) {
    Type("txtDisplayX", c.x);
    Leave("txtDisplayX");
    Type("txtDisplayY", c.y);
    Forget();
    Click("cmdSetRes");
    EXPECT_EQ(Written(), std::string("←!R") + c.sent + ",7;←EWC←R");
    EXPECT_EQ(told, c.sent);
    EXPECT_EQ(Stored("Default", "displayx") + "," + Stored("Default", "displayy"), c.sent);
  }
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(StatusPageTest, ResolutionThatIsNotStoredIsReportedAndTheTerminalRestartedAllTheSame) {
  Click("cmdSetRes");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdSetRes");
  EXPECT_TRUE(Written().ends_with("←EWC←R"));
  terminal.Answer("\033EWC", "\x15");
  Click("cmdSetRes");
  EXPECT_EQ(person.LastMessage(), "Fehler beim EEPROM");
}

TEST_F(StatusPageTest, FlashUpdateSaysThatItIsMissing) {
  Click("cmdFlashUpdate");
  EXPECT_EQ(person.LastMessage(), "noch nicht implementiert");
}

TEST(FlashInfoTest, ReplyWithoutCommaGivesBothNumbers) {
  EXPECT_EQ(ReadFlashInfo("64,4096").sectorSize, 4096);
  EXPECT_EQ(ReadFlashInfo("64").sectors, 64);
  EXPECT_EQ(ReadFlashInfo("64").sectorSize, 64);
}

class EepromPageTest : public PageTest {
 protected:
  EepromPageTest() { Put(new EepromPage({exchange, person, state, Records("Optionen")})); }
  QWidget& Info() { return Find("frmInfo"); }
};

TEST_F(EepromPageTest, EveryFailedWriteIsReportedByTheOneRule) {
  const std::tuple<const char*, const char*, std::string> buttons[] = {
      {"cmdSetConfig", "\033EWC", " /  cmdSetConfig"},
      {"cmdClearConfig", "\033EDC", " / cmdClearConfig"}};
  for (const auto& [button, command, suffix] : buttons) {
    for (const auto& [answer, message] : {std::pair("", "keine Reaktion" + suffix),
                                          {"A", "unknown 65" + suffix},
                                          {"\x15", "Fehler beim EEPROM"},
                                          {"\x06", ""}}) {
      Forget();
      terminal.Answer(command, answer);
      Click(button);
      EXPECT_EQ(person.LastMessage(), message);
    }
  }
}

TEST_F(EepromPageTest, ProgressWindowStandsDuringTheSaveAndIsGoneAfterIt) {
  bool during = false;
  loop.After(milliseconds(1), [&] { during = !Info().isHidden(); });
  person.duringMessage = [&] { EXPECT_TRUE(Info().isHidden()); };
  Click("cmdSetConfig");
  EXPECT_TRUE(during);
  EXPECT_EQ(Info().windowTitle(), QStringLiteral("Konfiguration speichern"));
  EXPECT_EQ(person.messages.size(), 1u);
}

TEST_F(EepromPageTest, NoToTheQuestionOnlyReadsTheFreeSpace) {
  terminal.Answer("\033E?F", "8000;");
  Click("cmdClearEEprom");
  EXPECT_EQ(person.questions, std::vector<std::string>{"Sind Sie sicher ?"});
  EXPECT_EQ(person.lastQuestion.icon, Icon::Exclamation);
  EXPECT_EQ(Written(), "←E?F");
  EXPECT_EQ(Text("lblFreeBytes"), "8000");
}

TEST_F(EepromPageTest, SilenceIsToldBesideTheFreeSpace) {
  Click("cmdGetFreeBytes");
  EXPECT_EQ(Text("lblFreeBytes") + Text("lblFreeBytesStand"), "0keine Antwort");
  terminal.Answer("\033E?F", "0;");
  Click("cmdGetFreeBytes");
  EXPECT_EQ((Text("lblFreeBytes") + Text("lblFreeBytesStand")).substr(0, 9), "0gelesen ");
}

TEST_F(EepromPageTest, OldTerminalIsErasedWithoutProgressAndAFailureEndsTheHandler) {
  terminal.Answer("\x1b?V", "1.9;");
  const struct {
    const char* erased;
    const char* saved;
    std::deque<bool> answers;
    const char* written;
    const char* message;
  } cases[] = {
      {"", "", {true}, "←?V←EE", "keine Reaktion / cmdClearEEprom"},
      {"\x06", "", {true, false}, "←?V←EE←E?F", ""},
      {"\x06", "\x15", {true, true}, "←?V←EE←EWC", "Fehler beim EEPROM"},
  };
  for (const auto& c : cases) {
    terminal.Answer("\033EE", c.erased, milliseconds(29990));
    terminal.Answer("\033EWC", c.saved);
    Forget();
    person.answers = c.answers;
    bool moving = false;
    loop.After(milliseconds(3000), [&] {
      const auto& bar = *Root().findChild<QProgressBar*>(QStringLiteral("ctlFortschritt"));
      moving = bar.isVisible() && bar.maximum() == 0;  // without a figure to show
    });
    Click("cmdClearEEprom");
    EXPECT_TRUE(moving);
    EXPECT_EQ(Written(), c.written);
    EXPECT_EQ(person.LastMessage(), c.message);
    EXPECT_EQ(person.questions.size(), c.answers.size());
    EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
    EXPECT_TRUE(Info().isHidden());
  }
  EXPECT_EQ(person.questions.back(), "aktuelle Konfiguration gleich speichern ?");
}

TEST_F(EepromPageTest, NewTerminalCountsDown) {
  std::vector<int> values;
  auto* bar = Root().findChild<QProgressBar*>(QStringLiteral("ctlFortschritt"));
  port.onCharacter = [&, scripted = port.onCharacter](char c) {
    scripted(c);
    if (c != 'e') return;
    for (int block = 3; block >= 0; --block) {
      const int at = (4 - block) * 100;
      port.ArriveAfter(milliseconds(at), std::to_string(block) + "\r");
      loop.After(milliseconds(at + 50), [&] {
        values.push_back(bar->value());
        EXPECT_EQ(Info().windowTitle(), QStringLiteral("EEprom löschen"));
        EXPECT_EQ(bar->maximum(), 3);
        EXPECT_FALSE(bar->isHidden());
      });
    }
    port.ArriveAfter(milliseconds(470), "k\x06");  // a key was pressed
  };
  terminal.Answer("\033E?F", "8192;");
  terminal.Answer("\033EWC", "\x06");
  for (const char* version : {"2.0;", "2.1F;"}) {
    terminal.Answer("\x1b?V", version);
    Forget();
    values.clear();
    person.answers = {true, true};
    Click("cmdClearEEprom");
    EXPECT_EQ(Written(), "←?V←Ee←EWC←E?F");
    EXPECT_EQ(values, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(person.lastQuestion.icon, Icon::Question);
    EXPECT_TRUE(bar->isHidden());
    EXPECT_TRUE(Info().isHidden());
    EXPECT_TRUE(person.messages.empty());
    EXPECT_EQ(Text("lblFreeBytes"), "8192");
  }
}

TEST_F(EepromPageTest, NobodyHasToWaitForTheEndOfAnErase) {
  for (const auto& [version, written] : {std::pair("1.9;", "←?V←EE"), {"2.1;", "←?V←Ee"}}) {
    terminal.Answer("\x1b?V", version);
    terminal.Answer("\033Ee", "5\r");
    for (int i = 1; written == std::string("←?V←Ee") && i < 60; ++i) {  // it counts for ever
      loop.After(milliseconds(i * 400), [this] { port.Arrive("5\r"); });
    }
    loop.After(milliseconds(9000), [this] { Click("cmdInfoNichtWarten"); });
    Forget();
    person.answers = {true};
    const auto begun = loop.Now();
    Click("cmdClearEEprom");
    EXPECT_LT(loop.Now() - begun, milliseconds(9500));
    EXPECT_EQ(Written(), written);
    EXPECT_EQ(person.LastMessage(),
              "Es wird nicht länger gewartet. Das Terminal löscht vielleicht noch.");
    EXPECT_TRUE(Info().isHidden());
    loop.RunFor(milliseconds(30000));
  }
}

TEST_F(EepromPageTest, CountDownThatDoesNotComeEndsAtOnceAndIsReported) {
  terminal.Answer("\x1b?V", "2.1;");
  person.duringMessage = [&] { EXPECT_TRUE(Info().isHidden()); };
  for (const char* count : {"", "0\r", "xyz\r"}) {
    terminal.Answer("\033Ee", count);
    person.answers = {true, false};
    Forget();
    Click("cmdClearEEprom");
    EXPECT_EQ(person.LastMessage(), "kein ACK nach löschen / cmdClearEEprom") << count;
    EXPECT_EQ(person.messages.back().icon, Icon::Exclamation);
  }
}

}  // namespace
}  // namespace kelvo
