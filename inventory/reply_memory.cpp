#include "inventory/reply_memory.h"

#include <algorithm>

#include "link/addresses.h"

namespace kelvo {

ReplyMemory::ReplyMemory(LineWatch& line, const EventLoop& loop,
                         std::function<TerminalId()> listener)
    : loop_(loop), listener_(std::move(listener)) {
  line.FollowOutcomes([this](const Outcome& outcome) { Take(outcome); });
}

// Where all listen, nobody knows whose reply it is.
void ReplyMemory::Take(const Outcome& outcome) {
  const CommandRow* const asked = LastCommand(outcome.sent);
  if (asked == nullptr || outcome.reply.kind != ReplyKind::Answered) return;
  const auto questions = Questions();
  const bool known = std::any_of(questions.begin(), questions.end(), [asked](const Question& some) {
    return some.query == asked->name;
  });
  const TerminalId listener = listener_();
  if (!known || listener.address == kAllAddresses) return;
  newest_[{listener, asked->name}] = {loop_.WallClock(), listener, asked->name, outcome.reply.text};
}

void ReplyMemory::AddTo(Readings& readings) const {
  for (const auto& [what, reading] : newest_) {
    const Reading* const last = readings.Last(what.first, what.second);
    if (last == nullptr || last->time < reading.time) readings.Take(reading);
  }
}

}  // namespace kelvo
