#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <stdexcept>
#include <string>

#include "adapters/qt_event_loop.h"
#include "adapters/qt_serial_port.h"
#include "link/exchange.h"
#include "link/link_world.h"

namespace kelvo {

/// The exchange over the real port and event loop, as the program puts it together.
struct Host : LinkWorld<QtEventLoop, QtTimer, QtSerialPort> {
  Host(std::string device, std::string lineSettings) : settings(std::move(lineSettings)) {
    tmrTimeout.SetEnabled(true);
    tmrRS485.SetInterval(std::chrono::milliseconds(20));
    com1.SetDevices([device](int) { return device; });
    com1.SetPortNumber(1);
    if (!Open()) throw std::runtime_error("cannot open " + device);
  }
  bool Open() {
    if (com1.Open() != PortOk) return false;
    com1.SetInputLen(1);
    com1.SetUp(settings, Handshaking::XOnXOff);
    com1.SetReceiveThreshold(1);
    return true;
  }
  bool Send(std::string_view text) {
    return exchange.SendString(text, Pending::Keep, Acknowledge::Wait).Failed();
  }

  const std::string settings;
  Exchange exchange{com1, loop, tmrTimeout, tmrRS485};
};

/// A program folder with the simulator in it, its EEPROM file and port apart from an operator's
/// own.
class SimulatedFolder {
 public:
  SimulatedFolder() {
    const QString program = QStringLiteral(KELVO_PROGRAM_DIR "/");
    QFile::copy(program + QStringLiteral("kelvo-simulator"),
                folder_.filePath(QStringLiteral("kelvo-simulator")));
    QFile::link(program + QStringLiteral("fonts"), folder_.filePath(QStringLiteral("fonts")));
  }
  QString Path() const { return folder_.path(); }
  std::string Port() const { return Path().toStdString() + "/simulator.tty"; }

 private:
  QTemporaryDir folder_;
};

}  // namespace kelvo
