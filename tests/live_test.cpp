#include <gtest/gtest.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidget>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "shell/tabs.h"
#include "tour/capture.h"
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

TEST_F(LiveTest, SavedCapturePlaysAgainAsALineThatEchoes) {
  const QStringList line{QStringLiteral("--echo"), QStringLiteral("line")};
  Start(line);
  Show(Tab::Macros);
  driver->Type(Q("txtMakro"), QString(1000, u'x'));
  driver->Type(Q("txtMakroNr"), Q("7"));
  driver->Click(Q("cmdSetMakro"));
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  const QString file = program.Folder() + QStringLiteral("/capture.txt");
  SaveCapture(*driver, file);
  const PlayedCapture played = PlayCapture(program.ProgramFolder(), file, line);
  EXPECT_EQ(played.status, 0) << played.text.toStdString();
  // Without the echo.
  EXPECT_EQ(PlayCapture(program.ProgramFolder(), file).status, 1);
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

// Its acknowledge comes while the line's arithmetic still has half a second to go.
TEST_F(LiveTest, TerminalThatTakesNoNoticeOfTheRateIsUnderstood) {
  Start({QStringLiteral("--no-pacing")});
  Show(Tab::Macros);
  driver->Type(Q("txtMakro"), QString(1000, u'x'));
  driver->Type(Q("txtMakroNr"), Q("7"));
  driver->Click(Q("cmdSetMakro"));
  Show(Tab::MatrixKeyboard);
  driver->Click(Q("cmdToolbar_6"));  // all 64 keys
  driver->Type(Q("txtTastTabNr"), Q("3"));
  driver->Click(Q("cmdSetMatrixTab"));
  // No message has asked for an answer, and both are there.
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  EXPECT_LT(driver->Text(Q("lblFreeBytes")).toInt(), 8192 - 1000 - 64);
  driver->Click(Q("cmdSetConfig"));
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

TEST_F(LiveTest, TheConnectionIsFoundAtAnotherRate) {
  Start({QStringLiteral("--baud"), QStringLiteral("4800")});
  Show(Tab::Interfaces);
  driver->OnDialog([this](QDialog& finder) {
    driver->OnDialog([](QDialog& question) { WindowDriver::Press(question, Q("Ja")); });
    WindowDriver::Press(finder, Q("Suchen"));
    EXPECT_EQ(finder.findChild<QLabel*>(Q("lblSuchenErgebnis"))->text(),
              Q("Gefunden: Das Terminal antwortet mit 4800,N,8,1. Übernommen."));
    WindowDriver::Press(finder, Q("Schließen"));
  });
  driver->Click(Q("cmdVerbindungSuchen"));
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000);
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
  auto& found = driver->Find<QTreeWidget>(Q("ctlDovuSuchListe"));
  for (const char* search : {"cmdDovusuchen", "cmdDovuSchnellsuche"}) {
    driver->Click(Q(search));
    std::string verdicts;
    for (int i = 0; i < found.topLevelItemCount(); ++i) {
      verdicts += found.topLevelItem(i)->text(1).toStdString() + "|";
    }
    EXPECT_EQ(verdicts, "ok|Fehler/Kollision|nicht vorhanden|nicht vorhanden|ok|") << search;
  }
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

// A garbled "T" is an XOFF.
TEST_F(LiveTest, LineThatIsHeldIsFreeAgainWhenItsPortIsOpenedAnew) {
  Start({QStringLiteral("--fault"), QStringLiteral("garbled")});
  Show(Tab::Status);
  driver->Click(Q("cmdGetVersion"));
  driver->Click(Q("cmdGetAdresse"));
  EXPECT_TRUE(program.Port().Held());
  simulator->Command(Q("fault none"));
  Show(Tab::Interfaces);
  driver->Click(Q("cmdVerbinden"));
  driver->Click(Q("cmdVerbinden"));
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000);
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

TEST_F(LiveTest, SimulatorIsOneClickAwayAndEndsWithTheProgram) {
  frmhaupt& window = program.Start();
  driver = std::make_unique<WindowDriver>(window);
  ExpectMessage("Schnittstelle nicht vorhanden");
  bool loaded = false;
  QObject::connect(&window, &frmhaupt::Loaded, &window, [&loaded] { loaded = true; });
  driver->Until(Q("first paint"), [&loaded] { return loaded; });
  const std::string port = program.Folder().toStdString() + "/simulator.tty";
  ExpectMessage("Der Simulator ließ sich nicht starten.");
  const std::string binary = program.Folder().toStdString() + "/kelvo-simulator";
  std::filesystem::rename(binary, binary + "x");
  driver->Click(Q("mnuOptionenSimulator"));
  std::filesystem::rename(binary + "x", binary);
  driver->Click(Q("mnuOptionenSimulator"));
  EXPECT_TRUE(program.Port().IsOpen());
  Show(Tab::Eeprom);
  driver->Click(Q("cmdGetFreeBytes"));
  EXPECT_GT(driver->Text(Q("lblFreeBytes")).toInt(), 1000);
  window.close();
  while (std::filesystem::exists(port)) {
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
}

}  // namespace
}  // namespace kelvo
