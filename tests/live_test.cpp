#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>
#include <QComboBox>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidget>

#include <cstdlib>
#include <ctime>
#include <fstream>

#include "shell/tabs.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/window_driver.h"

// The real window over a real pseudo-terminal against the real simulator process.

namespace kelvo {
namespace {

class LiveTest : public testing::Test {
 protected:
  void Start(const QStringList& options = {}) {
    simulator = std::make_unique<SimulatorProcess>(program.Folder(), options);
    frmhaupt& window = program.Start();
    driver = std::make_unique<WindowDriver>(window);
    driver->Until(QStringLiteral("connection"), [this] { return program.Port().IsOpen(); });
  }
  static QString Q(const char* text) { return QString::fromUtf8(text); }
  void Show(Tab tab) { driver->ShowTab(static_cast<int>(tab)); }
  void ExpectMessage(const char* text) {
    driver->OnDialog([text](QDialog& dialog) {
      EXPECT_EQ(dynamic_cast<QMessageBox&>(dialog).text(), Q(text));
      dialog.reject();
    });
  }

  LiveProgram program{QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE)};
  std::unique_ptr<SimulatorProcess> simulator;
  std::unique_ptr<WindowDriver> driver;
};

TEST_F(LiveTest, MacroIsStoredInTheTerminalAndChangesItsDisplayWhenItRuns) {
  Start();
  Show(Tab::Macros);
  driver->Type(Q("txtMakro"), Q("\x1b!P129;\x1bGC\x1bGP10,10;\x1bGR100,50;"));
  driver->Type(Q("txtMakroNr"), Q("7"));
  driver->Click(Q("cmdSetMakro"));
  const QString before = simulator->Command(Q("status"));
  EXPECT_TRUE(before.contains(Q(" p0=0 "))) << before.toStdString();
  driver->Type(Q("txtMakroNrDisplay"), Q("7"));
  driver->Click(Q("cmdPlayMakro"));
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));  // its answer comes after the macro has run
  EXPECT_TRUE(simulator->Command(Q("status")).contains(Q(" p0=129 ")));
  EXPECT_LT(driver->Text(Q("lblFreeBytes")).toInt(), 8192);
}

TEST_F(LiveTest, EchoOfTheBusIsNotTakenForAnAnswer) {
  Start({QStringLiteral("--echo"), QStringLiteral("line")});
  Show(Tab::Status);
  for (int i = 0; i < 5; ++i) {
    driver->Click(Q("cmdGetAdresse"));
    EXPECT_EQ(driver->Text(Q("txtAdresse")), Q("0"));
    Show(Tab::Eeprom);
    driver->Click(Q("cmdSetConfig"));
    driver->Click(Q("cmdGetFreeBytes"));
    EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000);
    Show(Tab::Status);
  }
}

TEST_F(LiveTest, BothEndsChangeTheirRateAndStillUnderstandEachOther) {
  Start();
  Show(Tab::Interfaces);
  for (const char* rate : {"1200", "14400"}) {
    driver->Choose(Q("cboCom_0"), Q(rate));
    ExpectMessage("Terminalschnittstelle erfolgreich umgestellt");
    ExpectMessage("PC-Schnittstelle erfolgreich umgestellt");
    driver->Click(Q("cmdSetCom1"));
    Show(Tab::Eeprom);
    driver->Click(Q("cmdGetFreeBytes"));
    EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000) << rate;
    Show(Tab::Interfaces);
  }
}

TEST_F(LiveTest, UnpluggedDeviceIsNoticedSaidOnceAndChosenAgain) {
  Start();
  Show(Tab::Interfaces);
  const std::clock_t before = std::clock();
  int messages = 0;
  driver->OnDialog([&](QDialog& dialog) {
    ++messages;
    dialog.reject();
  });
  simulator->Command(Q("unplug"));
  driver->Until(Q("lost line"), [&] { return messages > 0; });
  EXPECT_FALSE(program.Port().IsOpen());
  EXPECT_EQ(driver->Find<QComboBox>(Q("cboCom_13")).currentText(), Q("(keine)"));
  // Not a busy loop: noticing it took next to no processor time.
  EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 1.0);
  simulator->Command(Q("plug"));
  driver->Choose(Q("cboCom_13"), Q("Com 6"));
  EXPECT_TRUE(program.Port().IsOpen());
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000);
}

TEST_F(LiveTest, DeviceThatGoesAwayEndsAWaitAtOnce) {
  Start({QStringLiteral("--version"), QStringLiteral("1.0")});
  Show(Tab::Eeprom);
  driver->OnDialog([&](QDialog& dialog) { WindowDriver::Press(dialog, Q("Ja")); });
  // The erase of an old Terminal may take 30 seconds; the device goes away in its middle.
  QTimer::singleShot(300, driver.get(), [this] { simulator->Command(Q("unplug")); });
  driver->OnDialog([](QDialog& dialog) { dialog.reject(); });
  driver->OnDialog([](QDialog& dialog) { dialog.reject(); });
  QElapsedTimer elapsed;
  elapsed.start();
  driver->Click(Q("cmdClearEEprom"));
  EXPECT_LT(elapsed.elapsed(), 20000);
  EXPECT_FALSE(program.Port().IsOpen());
}

TEST_F(LiveTest, TerminalsOfABusAreFoundStoredAndSentADrawing) {
  const QString bus = program.Folder() + Q("/bus.txt");
  std::ofstream(bus.toStdString())
      << "address=0\naddress=1\naddress=1\naddress=3 fault=silent\naddress=4 version=1.0\n";
  Start({Q("--bus"), bus});
  Show(Tab::Terminals);
  driver->Type(Q("txtmaxDovu"), Q("4"));
  driver->Click(Q("cmdDovusuchen"));
  auto& found = driver->Find<QTreeWidget>(Q("ctlDovuSuchListe"));
  std::string verdicts;
  for (int i = 0; i < found.topLevelItemCount(); ++i) {
    verdicts += found.topLevelItem(i)->text(1).toStdString() + "|";
  }
  EXPECT_EQ(verdicts, "ok|Fehler/Kollision|nicht vorhanden|nicht vorhanden|ok|");
  driver->Click(Q("cmdDovuUebernehmen"));
  bool shown = false;
  driver->OnDialog([&shown](QDialog&) { shown = true; });
  driver->Click(Q("cmdDovuSenden"));
  driver->Until(Q("dialog"), [&shown] { return shown; });
  driver->Click(Q("cmdSenden"));
  EXPECT_TRUE(driver->Text(Q("lblErgebnis"))
                  .startsWith(Q("1 gut, 0 falsch, 0 ohne Antwort, 1 Terminal ohne Prüfung.")));
  EXPECT_EQ(simulator->Command(Q("@5 status")).left(21), Q("ok power=on selected="));
}

TEST_F(LiveTest, SecondProgramOnTheSamePortIsTold) {
  Start();
  QtEventLoop loop;
  QtSerialPort other(loop);
  other.SetDevices([this](int) { return program.Folder().toStdString() + "/simulator.tty"; });
  other.SetPortNumber(6);
  EXPECT_EQ(other.Open(), PortInUse);
  EXPECT_TRUE(program.Port().IsOpen());
  other.SetDevices([this](int) { return program.Folder().toStdString() + "/nothing.tty"; });
  EXPECT_EQ(other.Open(), PortNotAvailable);
  other.SetDevices([this](int) { return program.Folder().toStdString() + "/kelvo.mdb"; });
  EXPECT_EQ(other.Open(), PortNotAvailable);
  EXPECT_EQ(program.Port().Open(), PortAlreadyOpen);
}

// A port on a pseudo-terminal whose other end is the test itself.
class BarePortTest : public testing::Test {
 protected:
  BarePortTest() : master(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master);
    unlockpt(master);
    port.SetDevices([device = std::string(ptsname(master))](int) { return device; });
    port.SetPortNumber(1);
    EXPECT_EQ(port.Open(), PortOk);
    EXPECT_EQ(port.SetUp("19200,N,8,1", Handshaking::XOnXOff), "");
  }
  ~BarePortTest() override { close(master); }
  void Arrive(std::string_view text) {
    ASSERT_EQ(write(master, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void WaitUntilSent() {
    while (port.OutBufferCount() > 0) loop.WaitPaintingOnly(port.OutBufferTime());
  }
  // All that is in the input buffer once `count` characters are.
  std::string Received(std::size_t count) {
    while (port.InBufferCount() < count) loop.WaitForEvent();
    port.SetInputLen(0);
    return port.Input();
  }

  int master;
  QtEventLoop loop;
  QtSerialPort port{loop};
};

TEST_F(BarePortTest, EchoIsDroppedHoweverLateItComesAndTheAnswerStays) {
  const std::string command = "\033EWC";
  for (std::size_t early = 0; early <= command.size(); ++early) {
    port.Write("\033E?F");
    Arrive("\033E?F80;");
    EXPECT_EQ(Received(7), "\033E?F80;");
    Arrive("key");
    port.Write("\x1b!S1024;");
    port.Write(command);
    Arrive("\x1b!S1024;" + command.substr(0, early));
    WaitUntilSent();
    port.DiscardEcho();
    Arrive(command.substr(early) + "\x06");
    EXPECT_EQ(Received(1), "\x06") << early;
    port.DiscardInput();
  }
}

// A query drops what is there before it is written, but not what an adapter still holds back.
TEST_F(BarePortTest, EchoOfTheTextBeforeAQueryIsNotTakenForItsReply) {
  const std::string selection = "\x1b!A5;";
  const std::string query = "\x1b?A";
  for (std::size_t early = 0; early <= selection.size(); ++early) {
    port.Write(selection);
    Arrive(selection.substr(0, early));
    WaitUntilSent();
    port.DiscardInput();
    port.Write(query);
    Arrive(selection.substr(early) + query + "?A5;");
    EXPECT_EQ(Received(query.size() + 4), query + "?A5;") << early;
  }
  // Without an echo on the line, but with a Terminal that repeats the query.
  port.Write(selection);
  WaitUntilSent();
  port.DiscardInput();
  port.Write(query);
  Arrive("\x1b");
  EXPECT_EQ(port.InBufferCount(), 0U);
  Arrive("?A?A5;");
  EXPECT_EQ(Received(query.size() + 4), query + "?A5;");
}

TEST_F(BarePortTest, AnswerIsKeptWhenTheCallComesLate) {
  port.Write("\033EWC");
  WaitUntilSent();
  Arrive("\x06");
  loop.WaitPaintingOnly(std::chrono::milliseconds(5));
  port.DiscardEcho();
  EXPECT_EQ(Received(1), "\x06");
}

TEST_F(BarePortTest, EveryRateOfTheListIsAcceptedAndCounted) {
  for (const char* rate : {"1200", "2400", "4800", "9600", "14400", "19200"}) {
    for (const char* frame : {",N,8,1", ",S,7,2", ",E,7,1", ",O,8,2"}) {
      EXPECT_EQ(port.SetUp(std::string(rate) + frame, Handshaking::RtsCts), "") << rate << frame;
    }
    EXPECT_EQ(port.SetUp(std::string(rate) + ",N,8,1", Handshaking::XOnXOff), "");
    port.Write("0123456789");
    const double seconds = 100.0 / std::atoi(rate);
    EXPECT_NEAR(std::chrono::duration<double>(port.OutBufferTime()).count(), seconds,
                seconds * 0.2 + 0.01);
    port.DiscardOutput();
  }
  EXPECT_NE(port.SetUp("fast,N,8,1", Handshaking::XOnXOff), "");
}

}  // namespace
}  // namespace kelvo
