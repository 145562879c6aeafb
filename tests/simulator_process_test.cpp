#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <termios.h>

#include <QProcess>
#include <filesystem>

#include "simulator/pty.h"
#include "tests/fakes/open_port.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo::sim {
namespace {

using testing_world::kPatience;
using testing_world::ReadFile;
using testing_world::ReadUntil;

const std::string Esc = "\x1B";
const std::string Etx = "\x03";
const std::string Ack = "\x06";

/// The real program in a folder of its own, driven by command lines.
class Simulator {
 public:
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  /// Returns the first line that it prints.
  std::string Start() {
    const std::string options[] = {"--commands",  "--port",       Path("tty"),
                                   "--eeprom",    Path("eeprom"), "--display-png",
                                   Path("a.png"), "--record",     Path("capture")};
    QStringList arguments;
    for (const std::string& option : options) arguments << QString::fromStdString(option);
    process_.start(QStringLiteral(KELVO_SIMULATOR), arguments);
    return Line();
  }
  std::string Run(const std::string& line) {
    process_.write((line + "\n").c_str());
    return Line();
  }
  /// Plays what was recorded: the exit status.
  int Replay(const std::string& option = "--fast") {
    process_.start(QStringLiteral(KELVO_SIMULATOR),
                   {QStringLiteral("--replay"), QString::fromStdString(Path("capture")),
                    QString::fromStdString(option)});
    process_.waitForFinished(kPatience);
    return process_.exitCode();
  }
  /// The exit status, and what it says to people.
  std::pair<int, std::string> Refuses(const std::vector<std::string>& options) {
    QStringList arguments{QStringLiteral("--no-window"), QStringLiteral("--eeprom"),
                          QString::fromStdString(Path("eeprom")), QStringLiteral("--port"),
                          QString::fromStdString(Path("tty"))};
    if (options.front() == "--replay") arguments.clear();
    for (const std::string& option : options) arguments << QString::fromStdString(option);
    process_.start(QStringLiteral(KELVO_SIMULATOR), arguments);
    const bool ended = process_.waitForFinished(kPatience);
    const bool normal = ended && process_.exitStatus() == QProcess::NormalExit;
    return {normal ? process_.exitCode() : -1, process_.readAllStandardError().toStdString()};
  }
  /// The exit status, or -1 when a signal has ended it.
  int End(int signal) {
    kill(static_cast<pid_t>(process_.processId()), signal);
    process_.waitForFinished(kPatience);
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
  }

 private:
  std::string Line() {
    while (!process_.canReadLine() && process_.waitForReadyRead(kPatience)) {
    }
    return process_.readLine().toStdString();
  }

  testing_world::TemporaryFolder folder_;
  QProcess process_;
};

Handle OpenPort(const std::string& path) {
  Handle port(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  termios settings{};
  tcgetattr(port.Get(), &settings);
  cfsetspeed(&settings, B19200);
  tcsetattr(port.Get(), TCSANOW, &settings);
  return port;
}

std::string Exchange(const Handle& port, const std::string& command, std::string_view end) {
  if (write(port.Get(), command.data(), command.size()) < 0) return "not written";
  return ReadUntil(port.Get(), end);
}

TEST(SimulatorProcess, IsATerminalOnAPort) {
  Simulator simulator;
  ASSERT_EQ(simulator.Start(), simulator.Path("tty") + "\n");
  {
    const Handle port = OpenPort(simulator.Path("tty"));
    EXPECT_EQ(Exchange(port, Esc + "?V", ";"), "2.10F;");
    EXPECT_EQ(Exchange(port, Esc + "EWM0," + Esc + "!P9;" + Etx, Ack), Ack);
    EXPECT_EQ(Exchange(port, Esc + "ECM0;" + Esc + "E?F", ";"), "8183;");
  }
  // The host may close its port and come back, at another rate too, which is then not understood.
  const Handle port = OpenPort(simulator.Path("tty"));
  EXPECT_EQ(simulator.Run("p1 165"), "ok\n");
  EXPECT_EQ(Exchange(port, Esc + "?P", ";"), "165;");
  EXPECT_EQ(simulator.Run("type \xC3\xBC"), "ok\n");
  EXPECT_EQ(ReadUntil(port.Get(), "\xFC"), "\xFC");
  EXPECT_EQ(simulator.Run("key 0 0 press"), "error not wired\n");
  EXPECT_EQ(simulator.Run("status"),
            "ok power=on selected=yes p0=9 p1=165 free=8183 display=240x128 baud=19200\n");
  EXPECT_EQ(simulator.Run("nonsense"), "error unknown command\n");
  EXPECT_EQ(simulator.Run("png " + simulator.Path("b.png")), "ok\n");
  EXPECT_EQ(ReadFile(simulator.Path("b.png")).substr(1, 3), "PNG");

  // The adapter is pulled out and put back.
  EXPECT_EQ(simulator.Run("unplug"), "ok\n");
  pollfd handle{port.Get(), POLLIN, 0};
  EXPECT_EQ(poll(&handle, 1, kPatience), 1);
  EXPECT_NE(handle.revents & POLLHUP, 0);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(simulator.Path("tty"))));
  EXPECT_EQ(simulator.Run("plug"), "ok\n");
  EXPECT_EQ(Exchange(OpenPort(simulator.Path("tty")), Esc + "?A", ";"), "?A0;");

  EXPECT_EQ(simulator.End(SIGTERM), 0);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(simulator.Path("tty"))));
  EXPECT_EQ(ReadFile(simulator.Path("a.png")).substr(1, 3), "PNG");

  // What was stored is there again, and the autostart macro has run.
  ASSERT_EQ(simulator.Start(), simulator.Path("tty") + "\n");
  EXPECT_EQ(simulator.Run("status"),
            "ok power=on selected=yes p0=9 p1=0 free=8183 display=240x128 baud=19200\n");
  EXPECT_EQ(simulator.End(SIGINT), 0);
}

// Without any time to say farewell.
TEST(SimulatorProcess, WhatIsAcknowledgedOutlivesItsDeath) {
  Simulator simulator;
  for (int number = 1; number <= 5; ++number) {
    ASSERT_EQ(simulator.Start(), simulator.Path("tty") + "\n");
    const Handle port = OpenPort(simulator.Path("tty"));
    const std::string free = std::to_string(8192 - 5 * (number - 1)) + ";";
    EXPECT_EQ(Exchange(port, Esc + "E?F", ";"), free) << number;
    const std::string write = Esc + "EWM" + std::to_string(number) + ",x" + Etx;
    EXPECT_EQ(Exchange(port, write, Ack), Ack);
    EXPECT_EQ(simulator.End(SIGKILL), -1);
  }
}

TEST(SimulatorProcess, PlaysWhatItHasRecorded) {
  Simulator simulator;
  EXPECT_EQ(simulator.Replay(), 2);  // nothing yet
  ASSERT_EQ(simulator.Start(), simulator.Path("tty") + "\n");
  {
    const Handle port = OpenPort(simulator.Path("tty"));
    EXPECT_EQ(Exchange(port, Esc + "?V", ";"), "2.10F;");
    EXPECT_EQ(Exchange(port, Esc + "EWM0," + Esc + "!P9;" + Etx, Ack), Ack);
    EXPECT_EQ(Exchange(port, Esc + "E?F", ";"), "8183;");
  }
  EXPECT_EQ(simulator.End(SIGTERM), 0);
  EXPECT_EQ(simulator.Replay(), 0);
  EXPECT_EQ(simulator.Replay("--no-window"), 0);  // in its time
  std::string capture = ReadFile(simulator.Path("capture"));
  ASSERT_NE(capture.find("38 31 38 33"), std::string::npos);
  capture[capture.find("38 31 38 33") + 1] = '9';
  std::ofstream(simulator.Path("capture")) << capture;
  EXPECT_EQ(simulator.Replay(), 1);
}

TEST(SimulatorProcess, AFolderInPlaceOfAFileIsRefusedInGerman) {
  const std::pair<const char*, int> cases[] = {
      {"--replay", 2}, {"--bus", 2}, {"--record", 1}, {"--display-png", 1}};
  for (const auto& [option, status] : cases) {
    Simulator simulator;
    const auto [code, words] = simulator.Refuses({option, simulator.Path("")});
    EXPECT_EQ(code, status) << option;
    EXPECT_NE(words.find("ist ein Ordner"), std::string::npos) << option << words;
  }
}

}  // namespace
}  // namespace kelvo::sim
