#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "base/event_loop.h"
#include "base/serial_port.h"

namespace kelvo::cli {

/// All that the program meets of the world outside.
struct Outside {
  SerialPort& com1;
  EventLoop& loop;
  Timer& tmrTimeout;
  Timer& tmrRS485;
  std::ostream& out;      ///< the results
  std::ostream& err;      ///< everything else
  int progressWidth = 0;  ///< columns of the terminal that `err` is; 0: it is none
  std::string program;    ///< the folder of fonts and the delivered database
  std::string data;       ///< the folder of the operator's data
  /// Told which device stands behind each port number.
  std::function<void(std::function<std::string(int)>)> setDevices{};
  /// In German, how a device is; may be empty.
  std::function<std::string(const std::string& device)> describeDevice{};
  /// From now on an interruption calls this in place of ending the program; may be empty.
  std::function<void(std::function<void()>)> onInterrupt{};
};

}  // namespace kelvo::cli
