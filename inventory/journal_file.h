#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/whole_file.h"

namespace kelvo {

/// A file of lines that only grows. Several programs may append to it.
class JournalFile {
 public:
  /// One of a program's own is not reached through a link.
  explicit JournalFile(std::string path, FileKind kind = FileKind::Operators)
      : path_(std::move(path)), own_(kind == FileKind::Own) {}

  /// Appends a line (with its end) in one piece and returns when it is on the disc; behind a line
  /// that was torn it begins a new one. Nothing when that is done, else the reason, UTF-8.
  std::optional<std::string> Append(std::string_view line) const;

  using Change = std::function<std::vector<std::string>(std::vector<std::string> lines)>;
  /// Puts what `change` makes of all lines (without their ends) in their place, all of it or
  /// nothing; nobody appends meanwhile. Nothing when that is done, else the reason, UTF-8.
  std::optional<std::string> Rewrite(const Change& change) const;

  struct Lines {
    bool anew = false;  ///< it is another file than before, and these are all of its lines
    std::vector<std::string> lines;
  };
  /// The whole lines that have been appended since the last call, without their ends.
  Lines Read();

 private:
  int Flags() const;

  std::string path_;
  bool own_;
  std::uint64_t read_ = 0;  // bytes
  std::uint64_t inode_ = 0;
};

}  // namespace kelvo
