#include <signal.h>
#include <sys/signalfd.h>

#include <QApplication>
#include <QCoreApplication>
#include <iostream>
#include <memory>
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
  if (options.eepromFile.empty()) options.eepromFile = ProgramFolder() + "/simulator.eeprom";

  const Handle signalHandle = TakeSignals();
  int nameOnly = 1;  // Qt would take "--display" for its own
  std::unique_ptr<QCoreApplication> application;
  if (options.window) {
    application = std::make_unique<QApplication>(nameOnly, argv);
  } else {
    application = std::make_unique<QCoreApplication>(nameOnly, argv);
  }
  try {
    Program program(options, signalHandle.Get());
    program.Start();
    return QCoreApplication::exec();
  } catch (const std::system_error& error) {
    std::cerr << "kelvo-simulator: " << error.what() << '\n';
    return 1;
  }
}
