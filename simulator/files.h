#pragma once

#include <string>
#include <string_view>

#include "simulator/eeprom.h"

namespace kelvo::sim {

/// Replaces a file in one step: whoever reads sees the old content or the new. False on an error.
bool ReplaceFile(const std::string& path, std::string_view bytes);

enum class EepromFile { Loaded, Missing, Damaged };
/// Fills the EEPROM from a file. If that is missing or damaged the EEPROM is empty.
EepromFile LoadEeprom(const std::string& path, Eeprom& eeprom);

/// The folder that the running program lies in.
std::string ProgramFolder();

}  // namespace kelvo::sim
