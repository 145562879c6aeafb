#pragma once

#include <string>

namespace kelvo::cli {

/// Stands for the standard output in place of a file's name.
inline constexpr char kStandardOutput[] = "-";

/// A whole file. Throws std::runtime_error (German, UTF-8), naming it, when it cannot be read or is
/// larger than anything that is meant for a Terminal.
std::string ReadWhole(const std::string& path);

/// Replaces a file as a whole; throws in the same way, and an old file is as it was then. What the
/// programs keep in `dataFolder` for themselves is never replaced.
void WriteWhole(const std::string& path, const std::string& bytes, const std::string& dataFolder);

}  // namespace kelvo::cli
