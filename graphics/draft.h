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

  /// Why it could not be written; an older draft stays then.
  std::optional<std::string> Write(const std::string& bytes) const;
  /// Nothing when there is none.
  std::optional<std::string> Read() const;
  void Remove() const;

 private:
  std::string path_;
};

}  // namespace kelvo
