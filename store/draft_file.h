#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelvo {

/// What is not saved, on disk so that it survives a crash: a file that belongs to one program. What
/// an earlier one has left in it is neither overwritten nor removed: the operator is asked, and it
/// is taken over or set aside.
class DraftFile {
 public:
  /// An empty path: no draft is kept. What is set aside lies in the same folder and is called like
  /// `aside`, "entwurf.wmf", with a number.
  explicit DraftFile(std::string path, std::string_view aside = {});

  struct Left {
    std::string bytes;
    std::string problem;  ///< why it cannot be read, German
  };
  /// What an earlier program has left, of up to `limit` bytes; nothing when it has left nothing.
  std::optional<Left> LeftOver(std::size_t limit) const;
  /// What was left is this program's own from here on.
  void Take() { own_ = true; }
  /// Where it would be set aside; empty when there is no room for more.
  std::string PlaceAside() const;
  /// What was left gets a name of its own, which comes back. Empty when that fails: then it stays.
  std::string SetAside() const;

  /// Replaces it. Why it could not be written; what was there stays then.
  std::optional<std::string> Write(std::string_view bytes);
  /// What this program keeps here goes.
  void Remove();

 private:
  std::string path_;
  std::string asideName_;    // "entwurf", with its folder
  std::string asideEnding_;  // ".wmf"
  bool own_ = false;         // the file is this program's, if there is one
};

/// What the operator is told of a draft that cannot be taken up, and where it lies now; `place` is
/// what SetAside() has said.
std::string LostDraftText(const std::string& problem, const std::string& place);
/// What stands below the question whether a draft is wanted.
std::string DeclinedDraftHint(const std::string& place);

}  // namespace kelvo
