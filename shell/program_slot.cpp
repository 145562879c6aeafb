#include "shell/program_slot.h"

#include <filesystem>

namespace kelvo {
namespace {

constexpr int kSlots = 9;

std::string FileOf(const std::string& folder, int slot, const std::string& ending) {
  const std::string suffix = slot == 1 ? std::string() : "-" + std::to_string(slot);
  return folder + "/kelvo" + suffix + "." + ending;
}

std::unique_ptr<QLockFile> LockOf(const std::string& folder, int slot) {
  auto lock = std::make_unique<QLockFile>(QString::fromStdString(FileOf(folder, slot, "lock")));
  lock->setStaleLockTime(0);  // a program may run for weeks
  return lock;
}

}  // namespace

ProgramSlot::ProgramSlot(const std::string& dataFolder) : folder_(dataFolder) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    auto lock = LockOf(folder_, slot);
    if (lock->tryLock(0)) {
      if (lock_ != nullptr) {
        free_.push_back(slot);
        continue;  // only looked whether anybody has it
      }
      number_ = slot;
      lock_ = std::move(lock);
    } else if (lock->error() == QLockFile::LockFailedError) {
      neighbour_ = true;
    } else {
      return;  // a folder that cannot be written
    }
  }
}

std::vector<std::string> ProgramSlot::LeftBehind(const std::string& ending) const {
  std::vector<std::string> files;
  for (const int slot : free_) {
    const std::string file = FileOf(folder_, slot, ending);
    if (std::filesystem::exists(file)) files.push_back(file);
  }
  return files;
}

std::string ProgramSlot::File(const std::string& ending) const {
  return FileOf(folder_, number_, ending);
}

}  // namespace kelvo
