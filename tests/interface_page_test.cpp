#include "interfaces/interface_page.h"

#include "interfaces/raw_command.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class InterfacePageTest : public PageTest {
 protected:
  // As the main window does at its first paint.
  void Open() {
    auto& page = Put(new InterfacePage(
        {exchange, com1, portControl, person, Records("Schnittstelle"), Records("Default"), {}}));
    page.SelectStoredRecord();
    portControl.FormLoading = false;
    port.opened = 0;
    page.OpenChosenPort();
    Forget();
  }
  PortControl portControl{com1, person};
};

TEST_F(InterfacePageTest, BothEndsAreSwitchedInStep) {
  Open();
  terminal.Answer("\033EWC", "\x06");
  Choose("cboCom_0", "9600");
  Choose("cboCom_1", "Space");
  Choose("cboCom_4", "RTS / CTS");
  Choose("cboCom_5", "4 k");
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "←!B9600,1,8,1,1;←!S4096;←EWC←R");
  EXPECT_EQ(person.messages.at(0).text, "Terminalschnittstelle erfolgreich umgestellt");
  EXPECT_EQ(person.messages.at(1).text, "PC-Schnittstelle erfolgreich umgestellt");
  EXPECT_EQ(port.settings, "9600,S,8,1");
  EXPECT_EQ(port.handshaking, Handshaking::RtsCts);
  EXPECT_EQ(port.opened, 2);
  EXPECT_EQ(Stored("Schnittstelle", "Baud1"), "9600");
}

TEST_F(InterfacePageTest, WithoutAPortNothingIsSent) {
  Open();
  Choose("cboCom_13", "(keine)");
  EXPECT_FALSE(port.IsOpen());
  Click("cmdSetCom1");
  EXPECT_EQ(person.LastMessage(), "zuerst Anschluß wählen");
  EXPECT_EQ(Written(), "");
}

TEST_F(InterfacePageTest, WithoutATerminalTheOperatorDecides) {
  Open();
  Click("cmdSetCom1");
  EXPECT_EQ(person.questions,
            std::vector<std::string>{"keine Verbindung, PC-Schnittstelle trotzdem ändern ?"});
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
}

TEST_F(InterfacePageTest, SecondInterfaceIsSetAndItsFailureNamed) {
  Open();
  Choose("cboCom_12", "empf. & Puffer löschen");
  for (const auto& [answer, message] : {std::pair("\x06", ""),
                                        {"x", "unerwartetes Zeichen /  SetCom2"},
                                        {"\x15", "Fehler beim EEPROM"}}) {
    Forget();
    terminal.Answer("\033EWC", answer);
    Click("cmdSetCom2");
    EXPECT_EQ(Written(), "←!b9600,0,8,1,0;←!s16384;←2I2;←EWC");
    EXPECT_EQ(person.LastMessage(), message);
  }
}

TEST_F(InterfacePageTest, StandardValuesAreChosenAndNothingIsSent) {
  Open();
  Choose("cboCom_0", "1200");
  Choose("cboCom_5", "1 k");
  Choose("cboCom_6", "19200");
  Choose("cboCom_12", "empfangen");
  Click("cmdDefaultCom1");
  Click("cmdDefaultCom2");
  EXPECT_EQ(Chosen("cboCom_0") + Chosen("cboCom_5"), "1920016 k");
  EXPECT_EQ(Chosen("cboCom_6") + Chosen("cboCom_12"), "9600aus");
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
}

TEST_F(InterfacePageTest, RecordWithAForeignValueSendsNothing) {
  Sql("update Schnittstelle set Baud1 = '38400'");
  Open();
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "");
  EXPECT_EQ(person.messages.size(), 1u);
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
}

}  // namespace
}  // namespace kelvo
