#include "link/listener_trace.h"

#include <algorithm>

#include "base/val.h"
#include "base/whole_val.h"
#include "link/addresses.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

using enum CommandName;

// The Terminal's macros are shorter. A bitmap has a display at most.
constexpr std::size_t kLongestMakro = 1100;
constexpr std::size_t kLongestBitmap = 160'000;
constexpr int kDeepestMakro = 4;
constexpr CommandName kFollowed[] = {
    SelectAddress, Restart,     WriteMakro,          DeleteMakro,   RunMakro,       WriteConfig,
    DeleteConfig,  EraseEEprom, EraseEEpromCounting, WriteKeyTable, DeleteKeyTable, WriteBitmap};

bool IsFollowed(std::string_view command) {
  return std::any_of(std::begin(kFollowed), std::end(kFollowed), [command](CommandName name) {
    const std::string_view letters = RowOf(name).letters;
    return command.starts_with(letters) || letters.starts_with(command);
  });
}

bool Is(std::string_view command, CommandName name) {
  return command.starts_with(RowOf(name).letters);
}

std::size_t LongestOf(std::string_view command) {
  return Is(command, WriteBitmap) ? kLongestBitmap : kLongestMakro;
}

bool IsComplete(std::string_view command) {
  const CommandRow* const row = FindCommand(command);
  if (row == nullptr) return false;
  switch (row->ending) {
    case Ending::AtOnce:
      return true;
    case Ending::Etx:
      return command.back() == kEtx;
    default:
      return command.back() == ';';
  }
}

std::optional<int> AddressOf(std::string_view number) {
  const double value = Val(number);
  if (value < 0 || value > kAllAddresses) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace

ListenerTrace::Change ListenerTrace::Sent(std::string_view characters) {
  change_ = Change::None;
  for (const char character : characters) Take(character);
  return change_;
}

void ListenerTrace::Take(char character) {
  // A macro's text holds whole commands.
  const bool insideMakro = open_ && Is(command_, WriteMakro);
  if (character == kEsc && !insideMakro) {
    command_.clear();
    open_ = true;
  } else if (open_) {
    TakeOfCommand(character);
  }
}

void ListenerTrace::TakeOfCommand(char character) {
  command_ += character;
  open_ = IsFollowed(command_) && command_.size() <= LongestOf(command_);
  if (!open_ || !IsComplete(command_)) return;
  open_ = false;
  const std::string command = command_;
  if (depth_ == 0 && listener_) listener_(command);
  Act(command);
}

void ListenerTrace::Act(std::string_view command) {
  const CommandName name = FindCommand(command)->name;
  const std::string_view parameters = command.substr(RowOf(name).letters.size());
  switch (name) {
    case SelectAddress:
      return Select(parameters);
    case Restart:
      change_ = Change::Restarted;
      nobody_ = false;
      return address_.reset();
    case CommandName::WriteMakro:
      return KeepMakro(parameters);
    case CommandName::RunMakro:
      return RunMakro(WholeVal(parameters));
    case DeleteMakro:
      texts_.erase({address_.value_or(kAllAddresses), WholeVal(parameters)});
      return;
    case EraseEEprom:
    case EraseEEpromCounting:
      return texts_.clear();
    default:
      return;
  }
}

void ListenerTrace::Select(std::string_view number) {
  const std::optional<int> address = AddressOf(number);
  if (!address) return;
  depth_ > 0 ? SelectFromMakro(*address) : Select(*address);
}

void ListenerTrace::Select(int address) {
  change_ = Change::Selected;
  address_ = address;
  nobody_ = false;
}

// Only the Terminals that run the macro take notice: who did not listen cannot be selected.
void ListenerTrace::SelectFromMakro(int address) {
  const bool stays = address == kAllAddresses || runs_ == kAllAddresses || runs_ == address;
  change_ = Change::Selected;
  address_ = address == kAllAddresses ? runs_ : address;
  nobody_ = runs_ && !stays;
}

void ListenerTrace::KeepMakro(std::string_view parameters) {
  const std::size_t comma = std::min(parameters.find(','), parameters.size() - 1);
  const auto number = WholeVal(parameters.substr(0, comma));
  const std::string_view text = parameters.substr(comma + 1);
  texts_[{address_.value_or(kAllAddresses), number}] = text.substr(0, text.find(kEtx));
}

void ListenerTrace::RunMakro(int number) {
  auto found = texts_.find({address_.value_or(kAllAddresses), number});
  if (found == texts_.end()) found = texts_.find({kAllAddresses, number});
  if (found == texts_.end() || depth_ >= kDeepestMakro) return;
  const std::string text = found->second;
  if (depth_ == 0) runs_ = address_;
  ++depth_;
  for (const char character : text) Take(character);
  --depth_;
  open_ = false;
}

void ListenerTrace::Told(int address) {
  address_ = address;
  nobody_ = false;
}

void ListenerTrace::Forget() {
  address_.reset();
  nobody_ = false;
  open_ = false;
  texts_.clear();
}

}  // namespace kelvo
