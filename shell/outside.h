#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/machine_port.h"
#include "base/operator.h"
#include "base/serial_port.h"
#include "base/side_program.h"
#include "link/link_world.h"

namespace kelvo {

/// Where the program's files lie; both without a slash at their end.
struct Folders {
  std::string program;  ///< fonts and help
  std::string data;     ///< database, draft and the simulator's port; often the same
  /// Why there is no database in `data`, UTF-8: then the program's own is shown and never changed.
  std::string lack{};
};

/// What is known of the machine's ports. What is left out is not known.
struct Machine {
  /// The ports that the machine has now.
  std::function<std::vector<MachinePort>()> ports;
  /// In German, how a device is: ready, missing, in use, forbidden (naming the group that may).
  std::function<std::string(const std::string& device)> describeDevice;
  /// Whether a device can be opened now.
  std::function<bool(const std::string& device)> deviceReady{};
  /// Told which device stands behind each port number.
  std::function<void(std::function<std::string(int)>)> setDevices;
  SideProgram* simulator = nullptr;  ///< the one in the program's folder
};

/// All that the program meets of the world outside; everything here outlives the windows.
struct Outside {
  SerialPort& com1;
  EventLoop& loop;
  Timer& tmrTimeout;
  Timer& tmrRS485;
  Timer& tmrSofort;  ///< bundles changes of the drawing that are sent at once
  Timer& tmrReturn;  ///< looks for a device that was lost
  Operator& person;
  Folders folders;
  Machine machine;
};

/// The one way to put it together, over a world of whatever kind.
template <typename Loop, typename Tick, typename Port>
Outside OutsideOf(LinkWorld<Loop, Tick, Port>& world, Operator& person, const Folders& folders,
                  const Machine& machine = {}) {
  return {.com1 = world.com1,
          .loop = world.loop,
          .tmrTimeout = world.tmrTimeout,
          .tmrRS485 = world.tmrRS485,
          .tmrSofort = world.tmrSofort,
          .tmrReturn = world.tmrReturn,
          .person = person,
          .folders = folders,
          .machine = machine};
}

}  // namespace kelvo
