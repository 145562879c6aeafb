#include "interfaces/interface_page.h"

#include <QToolButton>

#include "interfaces/raw_command.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class InterfacePageTest : public PageTest {
 protected:
  // As the main window does at its first paint.
  InterfacePage& Open() {
    auto& page = Put(new InterfacePage(
        {exchange, com1, portControl, person, Records("Schnittstelle"), Records("Default"), {}}));
    page.SelectStoredRecord();
    portControl.FormLoading = false;
    port.opened = 0;
    port.SetReceiveThreshold(0);  // as a port is until it is set up
    page.OpenChosenPort();
    Forget();
    return page;
  }
  static std::string List(int list) { return "cboCom_" + std::to_string(list); }
  PortControl portControl{com1, person};
};

TEST_F(InterfacePageTest, BothEndsAreSwitchedInStep) {
  Open();
  terminal.Answer("\033EWC", "\x06");
  std::string reached;
  port.characterTime = milliseconds(1);
  port.onCharacter = [&, scripted = port.onCharacter](char c) {
    reached += c;
    scripted(c);
  };
  Choose("cboCom_0", "9600");
  Choose("cboCom_1", "Space");
  Choose("cboCom_4", "RTS / CTS");
  Choose("cboCom_5", "4 k");
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "←!B9600,1,8,1,1;←!S4096;←EWC←R");
  EXPECT_EQ(reached, port.written) << "before the port is closed";
  EXPECT_EQ(person.messages.at(0).text, "Terminalschnittstelle erfolgreich umgestellt");
  EXPECT_EQ(person.messages.at(1).text, "PC-Schnittstelle erfolgreich umgestellt");
  EXPECT_EQ(port.settings, "9600,S,8,1");
  EXPECT_EQ(port.handshaking, Handshaking::RtsCts);
  EXPECT_EQ(port.opened, 2);
  EXPECT_EQ(Stored("Schnittstelle", "Baud1"), "9600");
}

TEST_F(InterfacePageTest, SwitchesNothingInTheMiddleOfWhatMustRunAlone) {
  Open();
  const Undertakings::Alone erasing(person.Begun(), "Das EEPROM wird gelöscht.");
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "");
  EXPECT_TRUE(com1.IsOpen());
  EXPECT_EQ(person.notices,
            (std::vector<std::string>{
                "Das EEPROM wird gelöscht. Solange wird nichts anderes gesendet."}));
}

TEST_F(InterfacePageTest, WithoutAPortNothingIsSent) {
  auto& page = Open();
  int changes = 0;
  QObject::connect(&page, &InterfacePage::PortChanged, [&changes] { ++changes; });
  Click("cmdVerbinden");
  EXPECT_FALSE(port.IsOpen());
  EXPECT_EQ(changes, 1);
  Choose("cboCom_13", "(keine)");
  for (const char* button : {"cmdVerbinden", "cmdSetCom1"}) {
    Forget();
    Click(button);
    EXPECT_EQ(person.LastMessage(), "zuerst Anschluß wählen");
  }
  Click("cmdSetCom1");
  EXPECT_EQ(person.LastMessage(), "zuerst Anschluß wählen");
  EXPECT_EQ(Written(), "");
}

TEST_F(InterfacePageTest, WhileAPortIsOpenAChoiceOnlyMarks) {
  Open();
  const int number = port.number;
  const std::string settings = port.settings;
  EXPECT_EQ(Text("lblAnschluss"), "");
  Choose("cboCom_0", "1200");
  EXPECT_NE(Text("lblAnschluss").find("Geöffnet ist noch: Com 6: 19200,N,8,1."), std::string::npos);
  Choose("cboCom_13", "Com 3");
  Choose("cboCom_13", "(keine)");
  EXPECT_EQ(port.number, number);
  EXPECT_EQ(port.opened, 1);
  EXPECT_EQ(port.settings, settings);
  EXPECT_EQ(Written(), "");
  Click("cmdVerbinden");
  Choose("cboCom_13", "Com 3");  // opens now
  EXPECT_EQ(port.number, 3);
  EXPECT_EQ(port.settings, "1200,N,8,1");
  EXPECT_EQ(Text("lblAnschluss"), "");
  EXPECT_EQ(Written(), "");
}

TEST_F(InterfacePageTest, WithoutATerminalTheOperatorDecides) {
  Open();
  Click("cmdSetCom1");
  EXPECT_EQ(person.questions,
            std::vector<std::string>{"keine Verbindung, PC-Schnittstelle trotzdem ändern ?"});
  EXPECT_TRUE(person.lastQuestion.hint.starts_with("Ob das Terminal die neuen Werte gespeichert"));
  EXPECT_EQ(port.opened, 1);
  person.answers = {true};
  Forget();
  Click("cmdSetCom1");
  EXPECT_TRUE(Written().ends_with("←EWC←R"));
  EXPECT_EQ(port.opened, 2);
  ASSERT_EQ(person.messages.size(), 1u);
  EXPECT_EQ(person.LastMessage(), "PC-Schnittstelle erfolgreich umgestellt");
  terminal.Answer("\033EWC", "\x15");
  Forget();
  Click("cmdSetCom1");
  EXPECT_EQ(person.LastMessage(), "Fehler beim EEPROM");
  EXPECT_EQ(person.questions.size(), 1u);
  EXPECT_TRUE(person.lastQuestion.hint.starts_with("Das Terminal hat geantwortet, aber nicht"));
}

TEST_F(InterfacePageTest, SecondInterfaceIsSetAndItsFailureNamed) {
  Open();
  Choose("cboCom_9", "2");
  Choose("cboCom_11", "2 k");
  Choose("cboCom_12", "empf. & Puffer löschen");
  for (const auto& [answer, message] : {std::pair("\x06", ""),
                                        {"x", "unerwartetes Zeichen /  SetCom2"},
                                        {"\x15", "Fehler beim EEPROM"}}) {
    Forget();
    terminal.Answer("\033EWC", answer);
    Click("cmdSetCom2");
    EXPECT_EQ(Written(), "←!b9600,0,8,2,0;←!s2048;←2I2;←EWC");
    EXPECT_EQ(person.LastMessage(), message);
  }
}

TEST_F(InterfacePageTest, ListsOfferWhatBothEndsKnow) {
  Open();
  const char* const lists[] = {"1200=1200|2400=2400|4800=4800|9600=9600|14400=14400|19200=19200|",
                               "None=0|Space=1|Odd=2|Even=3|",
                               "7=7|8=8|",
                               "1=1|2=2|",
                               "XOn / XOff=0|RTS / CTS=1|",
                               "1 k=1024|2 k=2048|4 k=4096|8 k=8192|16 k=16384|",
                               "aus=0|empfangen=1|empf. & Puffer löschen=2|",
                               "Com 1=1|Com 2=2|Com 3=3|Com 4=4|Com 5=5|Com 6=6|(keine)=7|"};
  for (int list = 0; list < ComListCount; ++list) {
    auto& box = Find<QComboBox>(List(list).c_str());
    std::string offered;
    for (int i = 0; i < box.count(); ++i) {
      offered +=
          box.itemText(i).toStdString() + "=" + box.itemData(i).toString().toStdString() + "|";
    }
    EXPECT_EQ(offered, lists[list < ComRecCom2 ? list % 6 : list - 6]);
  }
}

TEST_F(InterfacePageTest, StandardValuesAreChosenAndStoredAndNothingIsSent) {
  Open();
  const std::string standard[] = {"19200", "None", "8", "1",          "XOn / XOff", "16 k", "9600",
                                  "None",  "8",    "1", "XOn / XOff", "16 k",       "aus"};
  for (int list = 0; list < ComPortNr; ++list) {
    const auto entries = Entries(List(list).c_str());
    const bool first = entries.front() != standard[list];
    Choose(List(list).c_str(), (first ? entries.front() : entries.back()).c_str());
  }
  Click("cmdDefaultCom1");
  Click("cmdDefaultCom2");
  for (int list = 0; list < ComPortNr; ++list) {
    EXPECT_EQ(Chosen(List(list).c_str()), standard[list]) << list;
    EXPECT_EQ(Stored("Schnittstelle", std::string(ComField(ComList(list)))), standard[list]);
  }
  EXPECT_EQ(Written(), "");
}

TEST_F(InterfacePageTest, RecordMovedToIsRemembered) {
  Open();
  Click("ctlComData_Next");
  EXPECT_EQ(Stored("Default", "schnittstelle"), "2");
  EXPECT_EQ(Chosen("cboCom_13"), "Com 1");
  Click("ctlComData_Last");
  EXPECT_EQ(Stored("Default", "schnittstelle"), "4");
  EXPECT_FALSE(Find("ctlComData_Next").isEnabled());
  EXPECT_EQ(Chosen("cboCom_4"), "RTS / CTS");
  // The bar of the icons is where they lead to.
  for (const auto& [button, bar] : {std::pair("ctlComData_First", 6), {"ctlComData_Last", 18}}) {
    const QImage icon = Find<QToolButton>(button).icon().pixmap(24).toImage();
    EXPECT_GT(icon.pixelColor(bar, 12).alpha(), 0) << button;
    EXPECT_EQ(icon.pixelColor(24 - bar, 12).alpha(), 0) << button;
  }
}

TEST_F(InterfacePageTest, RecordWithAForeignValueSendsNothing) {
  Sql("update Schnittstelle set Baud1 = '38400'");
  Open();
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "");
  ASSERT_EQ(person.messages.size(), 1u);
  EXPECT_EQ(person.messages[0].icon, Icon::Exclamation);
  EXPECT_TRUE(Find("cboCom_0").hasFocus());
}

TEST_F(InterfacePageTest, TextGoesThroughTheSecondInterfaceAndBack) {
  Open();
  Type("txtSendCom2", "Hallo;");
  Click("cmdSendCom2");
  EXPECT_EQ(Written(), "←2OHallo;");
  port.Arrive("Antw\xF6rt\r\n2");
  EXPECT_EQ(Find<QPlainTextEdit>("txtReceiveCom2").toPlainText(), QStringLiteral("Antwört\n2"));
  Click("cmdClearReceiveCom2");
  EXPECT_EQ(Find<QPlainTextEdit>("txtReceiveCom2").toPlainText(), QString());
}

TEST_F(InterfacePageTest, RefusedSettingIsShownWithTheReason) {
  Open();
  port.refusal = "Einstellung nicht möglich";
  Click("cmdVerbinden");
  Choose("cboCom_13", "Com 2");
  EXPECT_EQ(person.LastMessage(), "Einstellung nicht möglich");
  EXPECT_EQ(port.number, 2);
  EXPECT_EQ(Stored("Schnittstelle", "ComNr"), "Com 2");
}

TEST_F(InterfacePageTest, SingleCommandShowsWhatComesBackWithin100Milliseconds) {
  Put(new RawCommand(exchange, person));
  terminal.Answer("\x1b?X1;", "ab\x06", milliseconds(80));
  Type("Befehl", "?X1;");
  Click("cmdBefehlSenden");
  EXPECT_EQ(Written(), "←?X1;");
  EXPECT_EQ(Text("lblDebug"), "ab♠");
  Forget();
  Type("Befehl", "GC");
  Click("cmdSenden_0");
  EXPECT_EQ(port.written, "GC");
  EXPECT_EQ(Text("lblDebug"), "") << "that was another one's answer";
}

}  // namespace
}  // namespace kelvo
