#pragma once

#include <string>

namespace kelvo {

/// Whether that path is one of the files that the programs keep in this folder for themselves
/// (database, records of what was written and read, drafts, logs, the simulator's EEPROM) or that
/// are delivered there, by whatever links it leads to it. Nothing of the operator's may be saved
/// over one of them. The file need not exist.
bool IsOwnFile(const std::string& folder, const std::string& path);

/// Whether both paths lead to one folder that exists.
bool IsSameFolder(const std::string& one, const std::string& other);

}  // namespace kelvo
