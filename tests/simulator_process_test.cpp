#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "simulator/pty.h"

extern char** environ;

namespace kelvo::sim {
namespace {

const std::string Esc = "\x1B";
const std::string Etx = "\x03";
const std::string Ack = "\x06";

constexpr int kPatience = 20'000;  // ms; only a broken program needs it

/// What comes from a handle until it ends with `end`, or as far as it came.
std::string ReadUntil(int fd, std::string_view end) {
  std::string text;
  pollfd handle{fd, POLLIN, 0};
  while (!text.ends_with(end) && poll(&handle, 1, kPatience) > 0) {
    char byte = 0;
    if (read(fd, &byte, 1) != 1) break;
    text += byte;
  }
  return text;
}

/// The real program in a folder of its own, driven by command lines.
class Simulator {
 public:
  Simulator()
      : folder_(std::filesystem::temp_directory_path() /
                ("kelvo-sim-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(folder_);
  }
  ~Simulator() {
    if (pid_ > 0) End(SIGKILL);
    std::filesystem::remove_all(folder_);
  }
  std::string Path(const std::string& name) const { return folder_ / name; }

  /// Returns the first line that it prints.
  std::string Start() {
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) return "no pipe";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    std::vector<std::string> words = {KELVO_SIMULATOR, "--commands", "--port",
                                      Path("tty"),     "--eeprom",   Path("eeprom"),
                                      "--display-png", Path("a.png")};
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn(&pid_, KELVO_SIMULATOR, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    in_ = Handle(in[1]);
    out_ = Handle(out[0]);
    return ReadUntil(out_.Get(), "\n");
  }
  std::string Run(const std::string& line) {
    const std::string text = line + "\n";
    if (write(in_.Get(), text.data(), text.size()) < 0) return "not taken";
    return ReadUntil(out_.Get(), "\n");
  }
  /// The exit status, or -1 when a signal has ended it.
  int End(int signal) {
    int status = 0;
    kill(pid_, signal);
    waitpid(pid_, &status, 0);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  std::filesystem::path folder_;
  pid_t pid_ = 0;
  Handle in_;
  Handle out_;
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

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
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
  EXPECT_EQ(Content(simulator.Path("b.png")).substr(1, 3), "PNG");

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
  EXPECT_EQ(Content(simulator.Path("a.png")).substr(1, 3), "PNG");

  // What was stored is there again, and the autostart macro has run.
  ASSERT_EQ(simulator.Start(), simulator.Path("tty") + "\n");
  EXPECT_EQ(simulator.Run("status"),
            "ok power=on selected=yes p0=9 p1=0 free=8183 display=240x128 baud=19200\n");
  EXPECT_EQ(simulator.End(SIGINT), 0);
}

}  // namespace
}  // namespace kelvo::sim
