#include <sys/ioctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <iostream>

#include "adapters/interruption.h"
#include "adapters/machine_ports.h"
#include "adapters/qt_event_loop.h"
#include "adapters/qt_serial_port.h"
#include "cli/run.h"
#include "link/link_world.h"
#include "store/data_folder.h"

namespace {

// 0 where nobody sits in front of it.
int WidthOfTerminal() {
  if (isatty(STDERR_FILENO) == 0) return 0;
  constexpr int kUsualWidth = 80;
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualWidth;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace kelvo;
  const QCoreApplication application(argc, argv);
  const std::string program = ProgramFolder();
  LinkWorld<QtEventLoop, QtTimer, QtSerialPort> world;
  Interruption interruption;
  const auto setDevices = [&world](QtSerialPort::DeviceOf deviceOf) {
    world.com1.SetDevices(std::move(deviceOf));
  };
  return cli::Run({argv + 1, argv + argc},
                  {.com1 = world.com1,
                   .loop = world.loop,
                   .tmrTimeout = world.tmrTimeout,
                   .tmrRS485 = world.tmrRS485,
                   .out = std::cout,
                   .err = std::cerr,
                   .progressWidth = WidthOfTerminal(),
                   .program = program,
                   .data = DataFolder(program),
                   .setDevices = setDevices,
                   .describeDevice = DescribeDevice,
                   .onInterrupt = [&interruption](std::function<void()> handler) {
                     interruption.SetHandler(std::move(handler));
                   }});
}
