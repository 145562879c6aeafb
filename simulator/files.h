#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/eeprom.h"

namespace kelvo::sim {

/// Why a path that leads to a folder is no file, German; nothing where it leads to none.
std::optional<std::string> FolderReason(const std::string& path);

/// Reads a file into `text`; otherwise the reason, German.
std::optional<std::string> ReadWhole(const std::string& path, std::string& text);

/// Replaces a file in one step: whoever reads sees the old content or the new. What a link leads to
/// stays as it is. False on an error.
bool ReplaceFile(const std::string& path, std::string_view bytes);

enum class EepromFile { Loaded, Missing, Damaged };
/// Fills the EEPROM from a file. If that is missing or damaged the EEPROM is empty.
EepromFile LoadEeprom(const std::string& path, Eeprom& eeprom);

}  // namespace kelvo::sim
