#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Files that are read and replaced as a whole. What comes back is nothing when it is done, else the
// reason, German and UTF-8: "kein Platz mehr".

namespace kelvo {

enum class FileKind {
  Operators,  ///< a file in the operator's hands: a link is followed to it
  Own,        ///< one that a program keeps for itself: what a link leads to is never touched
  Any,        ///< the operator's, but a device or a pipe will do; that may keep the caller waiting
};

/// Reads a file of up to `limit` bytes into `bytes`.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit,
                                         std::string& bytes, FileKind kind = FileKind::Operators);

enum class Until {
  OnDisc,   ///< it outlives a loss of power
  Written,  ///< it outlives the program
};

/// Replaces a file as a whole: it is written beside and renamed, so that there is the old content
/// or the new one at any instant. After a failure the old file is as it was; should the disc fail
/// in the very last step, it is the new one.
std::optional<std::string> WriteWholeFile(const std::string& path, std::string_view bytes,
                                          FileKind kind = FileKind::Operators,
                                          Until until = Until::OnDisc);

/// Writes a file that is not there yet, or fails. What was begun of it is removed. 0 or the
/// system's number of the reason.
int WriteNewFile(const std::string& path, std::string_view bytes, Until until = Until::OnDisc,
                 mode_t mode = 0666);

/// Removes a file of the program's own; none there is as good.
std::optional<std::string> RemoveOwnFile(const std::string& path);

}  // namespace kelvo
