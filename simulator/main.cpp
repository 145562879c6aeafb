#include <signal.h>
#include <sys/signalfd.h>

#include <QApplication>
#include <QCoreApplication>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "simulator/files.h"
#include "simulator/options.h"
#include "simulator/program.h"
#include "simulator/pty.h"

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

// The one Terminal, or those of the bus, each with a file for its EEPROM; otherwise the reason.
std::optional<std::string> TakeTerminals(const kelvo::sim::Options& options,
                                         std::vector<kelvo::sim::TerminalOptions>& terminals) {
  if (options.busFile.empty()) {
    terminals = {options.terminal};
  } else {
    std::ifstream file(options.busFile, std::ios::binary);
    if (!file) return "kann nicht gelesen werden";
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (auto error = kelvo::sim::ReadBus(text, options.terminal, terminals)) return error;
  }
  for (std::size_t i = 0; i < terminals.size(); ++i) {
    const std::string number = i == 0 ? "" : std::to_string(i + 1);
    std::string& path = terminals[i].eepromFile;
    if (path.empty()) path = kelvo::sim::ProgramFolder() + "/simulator" + number + ".eeprom";
  }
  return std::nullopt;
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
  if (options.port.empty()) options.port = ProgramFolder() + "/simulator.tty";
  std::vector<TerminalOptions> terminals;
  if (const auto error = TakeTerminals(options, terminals)) {
    std::cerr << "kelvo-simulator: " << options.busFile << ": " << *error << '\n';
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
    Program program(options, std::move(terminals), signalHandle.Get());
    program.Start();
    return QCoreApplication::exec();
  } catch (const std::system_error& error) {
    std::cerr << "kelvo-simulator: " << error.what() << '\n';
    return 1;
  }
}
