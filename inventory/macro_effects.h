#pragma once

#include <string_view>

namespace kelvo {

/// Whether a command writes a macro that changes the EEPROM when it runs, or runs another one that
/// may.
bool ChangesWhenRun(std::string_view command);

}  // namespace kelvo
