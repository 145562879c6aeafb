#include "inventory/free_bytes.h"

#include <algorithm>
#include <utility>

#include "link/addresses.h"
#include "link/chronicle.h"

namespace kelvo {

FreeBytesMemory::FreeBytesMemory(Services services) : services_(std::move(services)) {
  services_.line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction == Direction::ToTerminal) Sent(characters);
  });
  services_.line.FollowOutcomes([this](const Outcome& outcome) { Take(outcome); });
}

// Another one may listen from now on.
void FreeBytesMemory::Sent(std::string_view characters) {
  WalkCommands(characters, [this](const SentCommand& command) {
    if (command.row != nullptr && command.row->name == CommandName::SelectAddress) {
      nameless_.reset();
    }
    return nameless_.has_value();
  });
}

void FreeBytesMemory::Take(const Outcome& outcome) {
  const CommandRow* const asked = LastCommand(outcome.sent);
  if (asked == nullptr) return;
  const TerminalId listener = services_.listener();
  if (asked->name == CommandName::AskAddress && nameless_) TakeNameless(listener);
  if (asked->name != CommandName::AskFreeBytes) return;
  const Reply& reply = outcome.reply;
  FreeBytes said{listener, services_.loop.WallClock(), {}, MarkWords(reply, services_.exchange)};
  if (!reply.Failed()) said.bytes = reply.Number();
  asked_.insert_or_assign(listener, std::move(said));
  ++answers_;
  if (listener.address == kUnknownAddress) nameless_ = listener;
  if (told_) told_();
}

// Who tells an address is no other for that.
void FreeBytesMemory::TakeNameless(const TerminalId& told) {
  if (told.address == kUnknownAddress) return;
  auto nameless = asked_.extract(*std::exchange(nameless_, std::nullopt));
  if (nameless.empty() || told.device != nameless.key().device) return;
  nameless.key() = nameless.mapped().terminal = told;
  asked_.erase(told);
  asked_.insert(std::move(nameless));
}

std::optional<FreeBytes> FreeBytesMemory::Read(const TerminalId& terminal) const {
  const auto read = services_.journal.Of(terminal).FreeBytes().LastReading();
  if (!read) return std::nullopt;
  return FreeBytes{terminal, read->time, static_cast<double>(read->bytes)};
}

// Another program may have asked since.
std::optional<FreeBytes> FreeBytesMemory::Of(const TerminalId& terminal) const {
  const auto asked = asked_.find(terminal);
  auto read = Read(terminal);
  const bool newer = asked != asked_.end() && (!read || asked->second.time >= read->time);
  return newer ? std::optional(asked->second) : read;
}

std::optional<FreeBytes> FreeBytesMemory::LastAt(const std::string& device) const {
  const auto isThere = [&device](const TerminalId& terminal) {
    if (terminal.address == kClosingAddress) return false;
    return device.empty() ? !terminal.device.empty() : terminal.device == device;
  };
  const auto& entries = services_.journal.Entries();
  const auto read = std::find_if(entries.rbegin(), entries.rend(), [&](const JournalEntry& entry) {
    return entry.event == Event::FreeBytes && isThere(entry.terminal);
  });
  auto last = read == entries.rend() ? std::nullopt : Of(read->terminal);
  for (const auto& [terminal, said] : asked_) {
    if (isThere(terminal) && (!last || last->time <= said.time)) last = said;
  }
  return last;
}

}  // namespace kelvo
