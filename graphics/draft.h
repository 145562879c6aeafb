#pragma once

#include <optional>
#include <string>

namespace kelvo {

/// The unsaved drawing on disk, so that it survives a crash: a file beside which nothing else is
/// written, replaced as a whole or not at all.
class Draft {
 public:
  /// An empty path: no draft is kept.
  explicit Draft(std::string path) : path_(std::move(path)) {}

  /// False when the file could not be written; the drawing then has no draft.
  bool Write(const std::string& bytes) const;
  /// Nothing when there is none.
  std::optional<std::string> Read() const;
  void Remove() const;

 private:
  std::string path_;
};

/// A whole file, up to `limit` bytes; nothing when it cannot be read or is larger.
std::optional<std::string> ReadFile(const std::string& path, std::size_t limit);
/// Replaces the file as a whole; false, and the old one left as it was, when that fails.
bool WriteFile(const std::string& path, const std::string& bytes);

}  // namespace kelvo
