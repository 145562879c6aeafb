#pragma once

#include <string>
#include <vector>

#include "base/machine_port.h"

namespace kelvo {

/// The ports that the machine has now, in the order of their names.
std::vector<MachinePort> MachinePorts();

/// In German, how a device is. Nothing is opened for it: opening a port may restart what hangs on
/// it.
std::string DescribeDevice(const std::string& device);

/// Whether a device can be opened now: it is there, permitted, and nobody has it.
bool IsDeviceReady(const std::string& device);

}  // namespace kelvo
