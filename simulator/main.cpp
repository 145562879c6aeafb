#include <signal.h>
#include <sys/signalfd.h>

#include <QApplication>
#include <QCoreApplication>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "simulator/files.h"
#include "simulator/options.h"
#include "simulator/program.h"
#include "simulator/pty.h"
#include "store/data_folder.h"

namespace {

// Blocked before there is any other thread (Qt has some), so that they come out of the handle
// alone.
kelvo::sim::Handle TakeSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, number);
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  return kelvo::sim::Handle(signalfd(-1, &set, SFD_CLOEXEC));
}

// The one Terminal, or those of the bus; otherwise the reason.
std::optional<std::string> TakeTerminals(const kelvo::sim::Options& options,
                                         std::vector<kelvo::sim::TerminalOptions>& terminals) {
  if (options.busFile.empty()) {
    terminals = {options.terminal};
  } else {
    std::string text;
    if (auto error = kelvo::sim::ReadWhole(options.busFile, text)) return error;
    if (auto error = kelvo::sim::ReadBus(text, options.terminal, terminals)) return error;
  }
  return std::nullopt;
}

// The capture that is to be played, if there is one; otherwise the reason.
std::optional<std::string> TakeReplay(const std::string& path,
                                      std::optional<kelvo::sim::ReplayPlan>& replay) {
  if (path.empty()) return std::nullopt;
  std::string text;
  if (auto error = kelvo::sim::ReadWhole(path, text)) return error;
  return ReadReplay(text, replay.emplace());
}

// Where the operator has named no file it lies in the data folder.
void PlaceFiles(kelvo::sim::Options& options, std::vector<kelvo::sim::TerminalOptions>& terminals) {
  const std::string folder = kelvo::DataFolder(kelvo::ProgramFolder());
  const auto place = [&folder](std::string& path, const std::string& name) {
    if (!path.empty()) return;
    kelvo::MakeDataFolder(folder);
    path = folder + '/' + name;
  };
  place(options.port, "simulator.tty");
  for (std::size_t i = 0; i < terminals.size(); ++i) {
    const std::string number = i == 0 ? "" : std::to_string(i + 1);
    place(terminals[i].eepromFile, "simulator" + number + ".eeprom");
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace kelvo::sim;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  Options options;
  if (const auto error = ReadOptions(arguments, options)) {
    std::cerr << "kelvo-simulator: " << *error << '\n';
    return 2;
  }
  if (options.help) {
    std::cout << OptionHelp();
    return 0;
  }
  std::vector<TerminalOptions> terminals;
  if (const auto error = TakeTerminals(options, terminals)) {
    std::cerr << "kelvo-simulator: " << options.busFile << ": " << *error << '\n';
    return 2;
  }
  std::optional<ReplayPlan> replay;
  if (const auto error = TakeReplay(options.replayFile, replay)) {
    std::cerr << "kelvo-simulator: " << options.replayFile << ": " << *error << '\n';
    return 2;
  }

  const Handle signalHandle = TakeSignals();
  int nameOnly = 1;  // Qt would take "--display" for its own
  std::unique_ptr<QCoreApplication> application;
  if (options.window) {
    application = std::make_unique<QApplication>(nameOnly, argv);
  } else {
    application = std::make_unique<QCoreApplication>(nameOnly, argv);
  }
  try {
    // Nothing but what the command line names takes part in a replay, and it leaves nothing behind.
    if (!replay) PlaceFiles(options, terminals);
    Program program(options, std::move(terminals), std::move(replay), signalHandle.Get());
    program.Start();
    QCoreApplication::exec();
    return program.Status();
  } catch (const std::exception& error) {
    std::cerr << "kelvo-simulator: " << error.what() << '\n';
    return 1;
  }
}
