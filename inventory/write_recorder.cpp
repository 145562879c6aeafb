#include "inventory/write_recorder.h"

#include <algorithm>
#include <utility>

#include "base/val.h"
#include "base/whole_val.h"
#include "bus/transfer.h"
#include "inventory/macro_effects.h"
#include "link/addresses.h"
#include "link/commands.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

// Macros may run macros.
constexpr int kDeepestMacro = 4;
constexpr int kNoDoubts = -1;

std::string_view Parameters(std::string_view command, CommandName name) {
  return command.substr(RowOf(name).letters.size());
}

// What a reply to an acknowledged command says; nothing as long as it may still come.
std::optional<Event> EventOf(const Reply& reply) {
  switch (JudgedAcknowledge(reply).kind) {
    case ReplyKind::Answered:
      return Event::Acknowledged;
    case ReplyKind::Refused:
      return Event::Refused;
    case ReplyKind::PortClosed:
      return Event::LineLost;
    case ReplyKind::Silent:
      return Event::Silent;
    case ReplyKind::Unfinished:
    case ReplyKind::Unexpected:
      return Event::Unclear;
    case ReplyKind::Sent:
      break;
  }
  return std::nullopt;
}

}  // namespace

WriteRecorder::WriteRecorder(Services services) : services_(std::move(services)) {
  services_.state.SetCommandListener([this](std::string_view command) { Sent(command); });
  services_.line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction != Direction::ToTerminal) return;
    CountSum(characters);
    settings_.Sent(characters, services_.device(), services_.loop.WallClock());
  });
  services_.line.FollowOutcomes([this](const Outcome& outcome) { Settle(outcome); });
}

TerminalId WriteRecorder::Listener() const {
  const LineState& state = services_.state;
  const auto address = state.Address();
  const bool somebody = address == kClosingAddress && state.Listens() == Listening::Unknown;
  return {services_.device(), somebody ? kUnknownAddress : address.value_or(kUnknownAddress)};
}

void WriteRecorder::Sent(std::string_view command) {
  const CommandName name = FindCommand(command)->name;
  if (name == CommandName::SelectAddress || name == CommandName::Restart) proof_.reset();
  if (name == CommandName::Restart) return RunMacro(0);
  if (name == CommandName::RunMakro) {
    return RunMacro(WholeVal(Parameters(command, name)));
  }
  const std::string wire = std::string(1, kEsc).append(command);
  if (const auto change = ChangeOf(wire)) Begin(wire, *change);
}

void WriteRecorder::Begin(std::string_view command, const ItemChange& change) {
  const Origin& origin = services_.exchange.SentFrom();
  JournalEntry entry{{}, Listener(), Event::Begun, change, origin.name, {}};
  if (const auto item = ItemOf(command, {}, KindOfRecord(origin.typ))) entry.change.key = item->key;
  const bool unsure = TornAt(entry.terminal.device);
  const Inventory before = services_.journal.Of(entry.terminal);
  const Held* const config = before.At({ItemKind::Config, 0});
  JournalEntry begun = entry;
  // Of such a macro it matters what is in it, even if nobody ever learns whether it has arrived.
  if (ChangesWhenRun(command)) begun.command = command;
  Record(std::move(begun), Event::Begun);
  const bool counts = LastCommand(command)->answer == Answer::CountDown;
  pending_.push_back({std::move(entry), std::string(command), counts, false, unsure,
                      Settings(config != nullptr ? config->item.command : std::string())});
}

// Whoever listens runs it, if it is there. Where that may be several, each of them tells what is in
// doubt: what was written to one is in doubt for all of them together.
void WriteRecorder::RunMacro(int number) {
  const TerminalId listener = Listener();
  const bool one = listener.address != kAllAddresses && listener.address != kUnknownAddress;
  bool others = false;
  for (const TerminalId& terminal : services_.journal.Terminals()) {
    const bool may = !one && terminal.device == listener.device && terminal != listener;
    others = others || may;
    if (may) RunMacro(terminal, number, terminal.address == kUnknownAddress ? kNoDoubts : 0);
  }
  RunMacro(listener, number, others ? kNoDoubts : 0);
}

// One that nobody knows is taken for one that only draws.
void WriteRecorder::RunMacro(const TerminalId& terminal, int number, int depth) {
  if (depth == kDeepestMacro) return;
  const Inventory inventory = services_.journal.Of(terminal);
  const ItemKey key{ItemKind::Macro, number};
  if (const Held* const macro = inventory.At(key)) {
    RunText(terminal, macro->item, depth);
  } else if (const Doubt* const doubt = inventory.DoubtAt(key); doubt && depth != kNoDoubts) {
    RunDoubtful(terminal, key, *doubt, depth);
  }
}

// It is any of those that were sent; what took in what followed it may be anything.
void WriteRecorder::RunDoubtful(const TerminalId& terminal, const ItemKey& key, const Doubt& macro,
                                int depth) {
  if (macro.cutOff || macro.event == Event::Begun) {
    Record({{}, terminal, Event::ByMacro, {ItemChange::Kind::Erased, {}}, {}, {}}, Event::ByMacro);
    return;
  }
  if (macro.before) RunText(terminal, macro.before->item, depth);
  for (const std::string& command : macro.perhaps) RunText(terminal, {key, command, {}}, depth);
}

void WriteRecorder::RunText(const TerminalId& terminal, const Item& macro, int depth) {
  WalkCommands(ItemContent(macro), [&](const SentCommand& command) {
    if (command.row == nullptr) return true;
    if (const auto change = ChangeOf(command)) {
      Record({{}, terminal, Event::ByMacro, *change, macro.name, {}}, Event::ByMacro);
    } else if (command.row->name == CommandName::RunMakro) {
      RunMacro(terminal, WholeVal(command.parameters), std::max(depth, 0) + 1);
    }
    return true;
  });
}

// A program that died may have left it so.
bool& WriteRecorder::TornAt(const std::string& device) {
  const auto known = torn_.find(device);
  if (known != torn_.end()) return known->second;
  bool torn = false;
  for (const JournalEntry& entry : services_.journal.Entries()) {
    if (entry.terminal.device != device) continue;
    torn = entry.event == Event::Begun || entry.event == Event::LineLost;
  }
  return torn_[device] = torn;
}

// Only a sum that was set to 0 by a text of its own is known to the character.
void WriteRecorder::CountSum(std::string_view characters) {
  if (characters.find(kEtx) != std::string_view::npos) TornAt(services_.device()) = false;
  if (characters == ResetChecksum().Text()) {
    proof_ = Proof();
  } else if (proof_) {
    proof_->sum = static_cast<std::uint16_t>(proof_->sum + StringSum(characters));
  }
}

void WriteRecorder::Settle(const Outcome& outcome) {
  const CommandRow* const asked = LastCommand(outcome.sent);
  LeaveCounts(outcome.sent);
  if (asked == nullptr) return;
  if (asked->name == CommandName::AskFreeBytes) return NoteFreeBytes(outcome.reply);
  if (asked->name == CommandName::AskChecksum) return Prove(outcome.reply);
  End(outcome);
}

// Whoever asks something else has not waited for the end.
void WriteRecorder::LeaveCounts(std::string_view asked) {
  std::erase_if(pending_, [&](const Pending& pending) {
    const bool left = pending.counts && !asked.ends_with(pending.command);
    if (left && !pending.told) Record(pending.entry, Event::Unclear);
    return left;
  });
}

// While it counts, the acknowledge may still come: the doubt is recorded, and its end is awaited.
bool WriteRecorder::StaysOpen(Event event) {
  Pending& last = pending_.back();
  if (!last.counts || (event != Event::Silent && event != Event::Unclear)) return false;
  const bool first = !std::exchange(last.told, true);
  if (first && pending_.size() == 1) Record(last.entry, event);
  return true;
}

// Of several commands in one text nobody knows which one the answer is to.
void WriteRecorder::End(const Outcome& outcome) {
  if (pending_.empty() || !outcome.sent.ends_with(pending_.back().command)) return;
  const auto event = EventOf(outcome.reply);
  if (!event || StaysOpen(*event)) return;
  const bool one = pending_.size() == 1;
  Pending pending = std::exchange(pending_, {}).back();
  if (!one) return;
  // Whoever has answered there.
  if (pending.entry.terminal.address == kClosingAddress) pending.entry.terminal = Listener();
  if (*event == Event::LineLost) TornAt(pending.entry.terminal.device) = true;
  if (*event != Event::Acknowledged) return Record(pending.entry, *event);
  if (pending.entry.change.kind == ItemChange::Kind::Written)
    pending.entry.command = StoredText(pending);
  Record(pending.entry, pending.unsure ? Event::Unclear : Event::Acknowledged);
  if (proof_) proof_->acknowledged.push_back(std::move(pending));
}

// A configuration is what the Terminal is set to: of that only what was set from here is known,
// now or before it kept the last one.
std::string WriteRecorder::StoredText(const Pending& pending) const {
  if (pending.entry.change.key.kind != ItemKind::Config) return pending.command;
  Settings settings = pending.settings;
  settings.Take(settings_.Of(pending.entry.terminal).Text());
  return settings.Text() + pending.command;
}

void WriteRecorder::Prove(const Reply& reply) {
  const auto proof = std::exchange(proof_, std::nullopt);
  const auto sum = reply.Failed() ? std::nullopt : ReadChecksum(reply.text);
  if (!proof || !sum) return;
  const bool good = *sum == proof->sum;
  for (const Pending& written : proof->acknowledged) {
    if (good && written.unsure) Record(written.entry, Event::Acknowledged);
    Record(written.entry, good ? Event::Proven : Event::WrongSum);
  }
}

// The same number once more in the same minute tells nothing.
void WriteRecorder::NoteFreeBytes(const Reply& reply) {
  const TerminalId listener = Listener();
  if (reply.Failed() || !reply.readable || listener.address == kAllAddresses) return;
  const std::int64_t bytes = RoundToEven(reply.Number());
  const Inventory inventory = services_.journal.Of(listener);
  const auto& last = inventory.FreeBytes().LastReading();
  const bool now = last && std::chrono::floor<std::chrono::minutes>(last->time) ==
                               std::chrono::floor<std::chrono::minutes>(services_.loop.WallClock());
  if (now && last->bytes == bytes && !inventory.FreeBytes().Changed()) return;
  Record({{}, listener, Event::FreeBytes, {}, {}, {}, bytes}, Event::FreeBytes);
}

void WriteRecorder::Record(JournalEntry entry, Event event) {
  entry.time = services_.loop.WallClock();
  entry.event = event;
  if (event != Event::Acknowledged && event != Event::Begun) entry.command.clear();
  services_.journal.Add(std::move(entry));
}

}  // namespace kelvo
