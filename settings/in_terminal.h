#pragma once

#include <cstdint>

namespace kelvo {

/// How a stored text stands to what a Terminal holds under its number, as far as it was written
/// from here.
enum class InTerminal : std::uint8_t {
  Same,
  Changed,  ///< under its number lies an older text of it
  Absent,   ///< nothing lies there, or something else
  Unknown,
};

}  // namespace kelvo
