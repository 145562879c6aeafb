#include "inventory/reply_memory.h"

#include <algorithm>

#include "link/addresses.h"

namespace kelvo {

ReplyMemory::ReplyMemory(LineWatch& line, const EventLoop& loop,
                         std::function<TerminalId()> listener)
    : loop_(loop), listener_(std::move(listener)) {
  line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction == Direction::ToTerminal) Sent(characters);
  });
  line.FollowOutcomes([this](const Outcome& outcome) { Take(outcome); });
}

// Who listened before may be another one.
void ReplyMemory::Sent(std::string_view characters) {
  WalkCommands(characters, [this](const SentCommand& command) {
    if (command.row == nullptr || command.row->name != CommandName::SelectAddress) return true;
    std::erase_if(newest_,
                  [](const auto& some) { return some.first.first.address == kUnknownAddress; });
    return false;
  });
}

void ReplyMemory::TakeNameless(const TerminalId& told) {
  for (const Question& question : Questions()) {
    auto nameless = newest_.extract({{told.device, kUnknownAddress}, question.query});
    if (nameless.empty()) continue;
    nameless.mapped().terminal = told;
    newest_.insert_or_assign({told, question.query}, std::move(nameless.mapped()));
  }
}

// Where all listen, nobody knows whose reply it is.
void ReplyMemory::Take(const Outcome& outcome) {
  const CommandRow* const asked = LastCommand(outcome.sent);
  if (asked == nullptr || outcome.reply.kind != ReplyKind::Answered) return;
  if (!outcome.reply.readable) return;
  const auto questions = Questions();
  const bool known = std::any_of(questions.begin(), questions.end(), [asked](const Question& some) {
    return some.query == asked->name;
  });
  const TerminalId listener = listener_();
  if (!known || listener.address == kAllAddresses) return;
  if (listener.address != kUnknownAddress) TakeNameless(listener);
  newest_[{listener, asked->name}] = {loop_.WallClock(), listener, asked->name, outcome.reply.text};
}

void ReplyMemory::AddTo(Readings& readings) const {
  for (const auto& [what, reading] : newest_) {
    const Reading* const last = readings.Last(what.first, what.second);
    if (last == nullptr || last->time < reading.time) readings.Take(reading);
  }
}

}  // namespace kelvo
