#pragma once

#include <string>

namespace kelvo {

/// Whether the open file is the one that has this name now, and no other one that has taken its
/// place.
bool IsStillAt(const std::string& path, int file);

}  // namespace kelvo
