#include <QAbstractItemView>
#include <QClipboard>
#include <QSpinBox>
#include <filesystem>

#include "interfaces/port_control.h"
#include "shell/traffic_log.h"
#include "tests/window_fixture.h"
#include "widgets/data_control.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class MainWindowTest : public WindowTest {};

TEST_F(MainWindowTest, FirstRunShowsTheWelcomePageAndEveryLaterOneTheDrawing) {
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 8);
  EXPECT_EQ(Stored("Optionen", "FirstRun"), "0");
  window.reset();
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 0);
  EXPECT_EQ(Stored("Optionen", "FirstRun"), "0");
}

TEST_F(MainWindowTest, FirstPaintOpensTheStoredPortAndSetsItUp) {
  Sql("update \"Default\" set schnittstelle = 4");
  Sql("update Schnittstelle set Parity1 = 'Space', StopBit1 = '2' where satznr = 4");
  Sql("update Optionen set rs485wait = 70");
  Start();
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.number, 3);
  EXPECT_EQ(port.settings, "19200,S,8,2");
  EXPECT_EQ(port.handshaking, Handshaking::RtsCts);
  EXPECT_EQ(tmrRS485.Interval(), milliseconds(70));
  EXPECT_EQ(Find<DataControl>("ctlComData").Caption(), QStringLiteral("4"));
  EXPECT_EQ(Stored("Default", "schnittstelle"), "4");
  EXPECT_NE(Text("lblPort").find("19200,S,8,2"), std::string::npos);
}

TEST_F(MainWindowTest, PortThatCannotBeOpenedLeadsToTheInterfacePage) {
  port.openError = PortNotAvailable;
  window = nullptr;
  Sql("update Optionen set FirstRun = 0");
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 1);
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  EXPECT_EQ(Stored("Schnittstelle", "ComNr"), "Com 6");
}

TEST_F(MainWindowTest, StoredRecordThatIsGoneLeavesTheEndOfTheRecords) {
  Sql("update \"Default\" set schnittstelle = 99");
  Start();
  EXPECT_EQ(Find<DataControl>("ctlComData").Caption(), QString());
  EXPECT_EQ(Stored("Default", "schnittstelle"), "99");
}

TEST_F(MainWindowTest, WriteProtectedDatabaseIsSaidOnceAndThePortStillOpens) {
  std::filesystem::permissions(folder.Path("kelvo.mdb"), std::filesystem::perms::owner_read);
  std::vector<std::string> shown;
  person.duringMessage = [&] { shown.push_back(person.LastMessage()); };
  Start();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_NE(shown[0].find("schreibgeschützt"), std::string::npos);
  EXPECT_NE(shown[0].find(folder.Path("kelvo.mdb")), std::string::npos);
  Choose("cboCom_13", "Com 2");
  EXPECT_EQ(shown.size(), 2u);
  EXPECT_EQ(port.number, 2);
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(MainWindowTest, OptionsAreStoredWhenTheyAreToggled) {
  Start();
  const std::pair<const char*, const char*> options[] = {
      {"mnuOptionenSofortSenden", "sofortsenden"}, {"mnuOptionenZoom", "FensterMitZoomen"}};
  for (const auto& [entry, field] : options) {
    EXPECT_FALSE(Find<QAction>(entry).isChecked());
    Trigger(entry);
    EXPECT_EQ(Stored("Optionen", field), "1");
  }
  window.reset();
  Start();
  for (const auto& [entry, field] : options) {
    EXPECT_TRUE(Find<QAction>(entry).isChecked()) << field;
    Trigger(entry);
    EXPECT_EQ(Stored("Optionen", field), "0");
  }
}

TEST_F(MainWindowTest, LostDeviceEndsTheWaitIsSaidOnceAndCanBeChosenAgain) {
  Start();
  loop.After(milliseconds(10), [&] { port.Lose(); });
  const auto start = loop.Now();
  Click("cmdSetConfig");
  EXPECT_EQ(loop.Now() - start, milliseconds(10));
  ASSERT_EQ(person.notices.size(), 1u);
  EXPECT_NE(person.notices[0].find("Com 6"), std::string::npos);
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  EXPECT_EQ(Text("lblPort"), "nicht verbunden");
  Show(Tab::Interfaces);  // the page's refresh does not bring the port's name back
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  Choose("cboCom_13", "Com 6");
  EXPECT_TRUE(port.IsOpen());
  EXPECT_NE(Text("lblPort").find("Com 6"), std::string::npos);
}

TEST_F(MainWindowTest, SingleCommandShowsWhatComesBackWithin100Milliseconds) {
  Start();
  terminal.Answer("\x1b?X1;", "ab\x06", milliseconds(80));
  Type("Befehl", "?X1;");
  Click("cmdBefehlSenden");
  EXPECT_EQ(Written(), "←?X1;");
  EXPECT_EQ(Text("lblDebug"), "ab♠");
}

TEST_F(MainWindowTest, BusAddressIsSelected) {
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(300);
  Click("cmdDovuAktivieren");
  EXPECT_EQ(Written(), "←!A255;");
}

TEST_F(MainWindowTest, TrafficIsShownOnlyWhileItsWindowIsOpen) {
  Start();
  terminal.Answer("\x1b?A", "?A5;");
  Click("cmdGetAdresse");
  auto& table = Find<QAbstractItemView>("ctlVerkehr");
  EXPECT_EQ(table.model()->rowCount(), 0);
  Trigger("mnuAnsichtDatenverkehr");
  Click("cmdGetAdresse");
  ASSERT_EQ(table.model()->rowCount(), 2);
  EXPECT_EQ(table.model()->index(0, 4).data().toString(), QStringLiteral("Adresse abfragen"));
  EXPECT_EQ(table.model()->index(1, 3).data().toString(), QStringLiteral("3F 41 35 3B"));
  Click("cmdVerkehrPause");
  Click("cmdGetAdresse");
  Type("txtVerkehrFilter", "3f");
  EXPECT_EQ(table.model()->rowCount(), 2);
  Type("txtVerkehrFilter", "Antwort");
  EXPECT_EQ(table.model()->rowCount(), 1);
  Click("cmdVerkehrKopieren");
  EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral("?A5;")));
  person.file = folder.Path("traffic.txt");
  Type("txtVerkehrFilter", "");
  Click("cmdVerkehrSpeichern");
  const std::string saved = testing_world::ReadFile(*person.file);
  EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 2);
  person.file = folder.Path("no/such/folder.txt");
  Click("cmdVerkehrSpeichern");
  EXPECT_NE(person.LastMessage().find("nicht geschrieben"), std::string::npos);
}

TEST(TrafficLogTest, CharactersCloseTogetherAreOneEntryAndOldOnesAreDropped) {
  TrafficLog log;
  log.Add(milliseconds(0), Direction::ToTerminal, "\x1b?V");
  log.Add(milliseconds(5), Direction::FromTerminal, "2.");
  log.Add(milliseconds(30), Direction::FromTerminal, "1;");
  EXPECT_EQ(log.At(1).characters, "2.1;");
  EXPECT_EQ(log.At(1).meaning, "Antwort: Version abfragen");
  log.Add(milliseconds(500), Direction::FromTerminal, "k");
  EXPECT_EQ(log.Size(), 3u);
  EXPECT_EQ(ClockText(milliseconds(3723004)), "01:02:03.004");
  for (std::size_t i = 0; i < 2 * TrafficLog::Capacity; ++i) {
    log.Add(milliseconds(1000), Direction::ToTerminal, "\x1bR");
    ASSERT_LE(log.Size(), TrafficLog::Capacity);
  }
}

class InterfacePageTest : public WindowTest {};

TEST_F(InterfacePageTest, BothEndsAreSwitchedInStep) {
  StartOn(Tab::Interfaces);
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
  StartOn(Tab::Interfaces);
  Choose("cboCom_13", "(keine)");
  EXPECT_FALSE(port.IsOpen());
  Click("cmdSetCom1");
  EXPECT_EQ(person.LastMessage(), "zuerst Anschluß wählen");
  EXPECT_EQ(Written(), "");
}

TEST_F(InterfacePageTest, WithoutATerminalTheOperatorDecides) {
  StartOn(Tab::Interfaces);
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
  StartOn(Tab::Interfaces);
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
  StartOn(Tab::Interfaces);
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
  StartOn(Tab::Interfaces);
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
  StartOn(Tab::Interfaces);
  Click("cmdSetCom1");
  EXPECT_EQ(Written(), "");
  EXPECT_EQ(person.messages.size(), 1u);
}

TEST_F(InterfacePageTest, TextGoesThroughTheSecondInterfaceAndBack) {
  StartOn(Tab::Interfaces);
  Type("txtSendCom2", "Hallo;");
  Click("cmdSendCom2");
  EXPECT_EQ(Written(), "←2OHallo;");
  port.Arrive("Antw\xF6rt\r\n2");
  EXPECT_EQ(Find<QPlainTextEdit>("txtReceiveCom2").toPlainText(), QStringLiteral("Antwört\n2"));
  Click("cmdClearReceiveCom2");
  EXPECT_EQ(Find<QPlainTextEdit>("txtReceiveCom2").toPlainText(), QString());
}

TEST_F(InterfacePageTest, RefusedSettingIsShownWithTheReason) {
  StartOn(Tab::Interfaces);
  port.refusal = "Einstellung nicht möglich";
  Choose("cboCom_13", "Com 2");
  EXPECT_EQ(person.LastMessage(), "Einstellung nicht möglich");
  EXPECT_EQ(port.number, 2);
  EXPECT_EQ(Stored("Schnittstelle", "ComNr"), "Com 2");
}

}  // namespace
}  // namespace kelvo
