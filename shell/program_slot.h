#pragma once

#include <QLockFile>
#include <memory>
#include <string>
#include <vector>

namespace kelvo {

/// Which of the programs on one data folder this is. What a program keeps for itself alone, such as
/// drafts, belongs to its slot; a slot is free again when its program has ended, in whatever way.
class ProgramSlot {
 public:
  /// Takes the first free slot. In a folder that cannot be written it is always the first.
  explicit ProgramSlot(const std::string& dataFolder);

  /// 1 for the first program.
  int Number() const { return number_; }
  /// Another program runs on this folder.
  bool HasNeighbour() const { return neighbour_; }
  /// The files of that ending which slots have whose programs have died.
  std::vector<std::string> LeftBehind(const std::string& ending) const;
  /// The path of a file of this slot: "kelvo.entwurf", in the second "kelvo-2.entwurf".
  std::string File(const std::string& ending) const;

 private:
  std::string folder_;
  int number_ = 1;
  bool neighbour_ = false;
  std::vector<int> free_;  // the other slots that nobody has
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace kelvo
