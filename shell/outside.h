#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/machine_port.h"
#include "base/operator.h"
#include "base/serial_port.h"

namespace kelvo {

/// All that the program meets of the world outside; everything here outlives the windows.
struct Outside {
  SerialPort& com1;
  EventLoop& loop;
  Timer& tmrTimeout;
  Timer& tmrRS485;
  Timer& tmrSofort;  ///< bundles changes of the drawing that are sent at once
  Operator& person;
  std::string programFolder;  ///< fonts and help; without a slash at its end
  std::string dataFolder;     ///< database, draft and the simulator's port; often the same
  /// The ports that the machine has now.
  std::function<std::vector<MachinePort>()> machinePorts;
  /// In German, how a device is: ready, missing, in use, forbidden (naming the group that may).
  std::function<std::string(const std::string& device)> describeDevice;
  /// Told which device stands behind each port number.
  std::function<void(std::function<std::string(int)>)> setDevices;
};

}  // namespace kelvo
