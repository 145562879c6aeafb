#pragma once

#include <string>

namespace kelvo {

/// A serial port that the machine has now.
struct MachinePort {
  std::string device;
  std::string description;  ///< for the operator, UTF-8
};

}  // namespace kelvo
