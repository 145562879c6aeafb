#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kelvo {

/// A whole file, up to `limit` bytes; nothing when it cannot be read or is larger.
std::optional<std::string> ReadFile(const std::string& path, std::size_t limit);

/// Replaces the file as a whole. Nothing when that is done; else the system's reason (UTF-8), and
/// the old file, if there was one, is as it was.
std::optional<std::string> WriteFile(const std::string& path, const std::string& bytes);

}  // namespace kelvo
