#include "shell/program_slot.h"

#include <algorithm>

#include "store/file_calls.h"

namespace kelvo {
namespace {

constexpr int kSlots = 99;
constexpr const char* kKept[] = {"entwurf", "entwuerfe", "ausstattung"};

std::string FileOf(const std::string& folder, int slot, const std::string& ending) {
  const std::string suffix = slot == 1 ? std::string() : "-" + std::to_string(slot);
  return folder + "/kelvo" + suffix + "." + ending;
}

bool KeepsSomething(const std::string& folder, int slot) {
  return std::any_of(std::begin(kKept), std::end(kKept),
                     [&](const char* ending) { return IsThere(FileOf(folder, slot, ending)); });
}

}  // namespace

ProgramSlot::ProgramSlot(const std::string& dataFolder) : folder_(dataFolder) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    // A free slot behind the own one that holds nothing is nobody's concern.
    if (number_ == 0 || IsThere(FileOf(folder_, slot, "lock")) || KeepsSomething(folder_, slot)) {
      TakeSlot(slot);
    }
  }
  if (number_ == 0) number_ = kSlots + 1;
}

void ProgramSlot::TakeSlot(int slot) {
  FileLock& lock = locks_.emplace_back();
  const std::string path = FileOf(folder_, slot, "lock");
  const bool left = IsThere(path);  // it goes with a program that ends properly
  const FileLock::Result result = lock.Take(path);
  killed_ = killed_ || (left && result == FileLock::Result::Held);
  if (result == FileLock::Result::Taken) {
    neighbour_ = true;
    locks_.pop_back();
  } else if (number_ == 0) {
    number_ = slot;
  } else if (KeepsSomething(folder_, slot)) {
    left_.push_back(slot);
  } else {
    locks_.pop_back();
  }
}

std::vector<std::string> ProgramSlot::LeftBehind(const std::string& ending) const {
  std::vector<std::string> files;
  for (const int slot : left_) {
    std::string file = FileOf(folder_, slot, ending);
    if (IsThere(file)) files.push_back(std::move(file));
  }
  return files;
}

std::string ProgramSlot::File(const std::string& ending) const {
  return FileOf(folder_, number_, ending);
}

}  // namespace kelvo
