#pragma once

#include <list>
#include <string>
#include <vector>

#include "store/file_lock.h"

namespace kelvo {

/// Which of the programs on one data folder this is. What a program keeps for itself alone, such as
/// drafts, belongs to its slot; a slot is free again when its program has ended, in whatever way.
class ProgramSlot {
 public:
  /// Takes the first free slot, and with it what programs have left behind in others: nobody else
  /// is offered that as long as this one runs. In a folder that cannot be written it is the first
  /// that nobody has.
  explicit ProgramSlot(const std::string& dataFolder);

  /// 1 for the first program.
  int Number() const { return number_; }
  /// Another program runs on this folder.
  bool HasNeighbour() const { return neighbour_; }
  /// A program was killed here, and none runs that may be at work now.
  bool FollowsAKill() const { return killed_ && !neighbour_; }
  /// The files of that ending which slots have whose programs have died.
  std::vector<std::string> LeftBehind(const std::string& ending) const;
  /// The path of a file of this slot: "kelvo.entwurf", in the second "kelvo-2.entwurf".
  std::string File(const std::string& ending) const;

 private:
  void TakeSlot(int slot);

  std::string folder_;
  int number_ = 0;  // none yet
  bool neighbour_ = false;
  bool killed_ = false;
  std::vector<int> left_;  // the other slots whose files are this program's to offer
  std::list<FileLock> locks_;
};

}  // namespace kelvo
