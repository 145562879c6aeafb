#include "link/traffic_record.h"

#include <algorithm>

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// Longer than any gap within one answer at 1200 baud.
constexpr milliseconds kSameEntry{40};
// A Terminal that talks without a pause still gets entries that can be read.
constexpr std::size_t kLongestReceived = 5000;
// Dropping many at once keeps a full record as cheap as an empty one.
constexpr std::size_t kDroppedPart = 16;
// Exchanges run inside of one another; a question is not far from the end.
constexpr TrafficRecord::Number kQuestionWithin = 64;
// Enough to tell one text from the others.
constexpr std::size_t kCompared = 64;

}  // namespace

void TrafficRecord::Add(WallTime now, Direction direction, std::string_view characters) {
  if (characters.empty()) return;
  if (Continues(now, direction, characters.size())) {
    characters_.insert(characters_.end(), characters.begin(), characters.end());
    entries_.back().length += static_cast<std::uint32_t>(characters.size());
    DropOld();
    Tell(End() - 1);
  } else {
    for (std::string_view rest = characters; !rest.empty();
         rest.remove_prefix(std::min(rest.size(), kLongestEntry))) {
      Append(now, direction, rest.substr(0, kLongestEntry));
    }
  }
  lastTime_ = now;
  lastLength_ = characters.size();
}

// A text that goes out in pieces is one command.
bool TrafficRecord::Continues(WallTime now, Direction direction, std::size_t length) const {
  if (entries_.empty() || entries_.back().direction != direction) return false;
  if (entries_.back().length == 0) return false;
  const std::size_t together = entries_.back().length + length;
  if (direction == Direction::ToTerminal) {
    return lastLength_ == kPieceLength && together <= kLongestEntry;
  }
  return now >= lastTime_ && now - lastTime_ <= kSameEntry && together <= kLongestReceived;
}

TrafficRecord::Number TrafficRecord::Append(WallTime time, Direction direction,
                                            std::string_view characters) {
  const Number number = End();
  TrafficEntry entry{.time = time, .direction = direction};
  entry.start = entries_.empty() ? 0 : entries_.back().start + entries_.back().length;
  entry.length = static_cast<std::uint32_t>(characters.size());
  if (direction == Direction::ToTerminal) {
    lastSent_ = number;
  } else if (lastSent_) {
    entry.behindSent = static_cast<std::uint32_t>(number - *lastSent_);
  }
  entries_.push_back(entry);
  characters_.insert(characters_.end(), characters.begin(), characters.end());
  DropOld();
  Tell(number);
  return number;
}

void TrafficRecord::Mark(Number number, ReplyKind result, nanoseconds took) {
  Entry(number).result = result;
  Entry(number).took = std::chrono::duration_cast<decltype(TrafficEntry::took)>(took);
  Tell(number);
}

void TrafficRecord::Join(Number received, Number sent) {
  Entry(received).behindSent = static_cast<std::uint32_t>(received - sent);
}

void TrafficRecord::Note(WallTime now, const Outcome& outcome) {
  auto sent = FindSent(outcome.sent);
  const bool closed = outcome.reply.kind == ReplyKind::PortClosed;
  // With the port closed nothing was written, though the same may have been asked before.
  if (closed && (!sent || At(*sent).settled)) sent = Append(now, Direction::ToTerminal, {});
  if (!sent) return;
  Entry(*sent).settled = true;
  const Number last = End() - 1;
  if (closed || outcome.reply.kind == ReplyKind::Silent || last == *sent ||
      At(last).direction == Direction::ToTerminal) {
    return Mark(*sent, outcome.reply.kind, outcome.took);
  }
  Join(last, *sent);
  // Some waits go on after the answer, for another one.
  const nanoseconds after = std::clamp<nanoseconds>(now - lastTime_, nanoseconds(0), outcome.took);
  Mark(last, outcome.reply.kind, outcome.took - after);
}

void TrafficRecord::NoteLoss(WallTime now) {
  const Number number = Append(now, Direction::FromTerminal, {});
  Join(number, number);  // it answers nothing
  Mark(number, ReplyKind::PortClosed, {});
}

std::optional<TrafficRecord::Number> TrafficRecord::FindSent(std::string_view text) const {
  const Number first = std::max(Begin(), End() - std::min(End(), kQuestionWithin));
  for (Number number = End(); number > first; --number) {
    const TrafficEntry& entry = At(number - 1);
    if (entry.direction == Direction::ToTerminal && EndsWith(entry, text)) return number - 1;
  }
  return std::nullopt;
}

bool TrafficRecord::EndsWith(const TrafficEntry& entry, std::string_view text) const {
  if (text.size() > kCompared) text.remove_prefix(text.size() - kCompared);
  if (entry.length < text.size() || entry.length == 0) return false;
  const auto end = static_cast<std::ptrdiff_t>(entry.start + entry.length - entries_.front().start);
  return std::equal(text.rbegin(), text.rend(),
                    std::make_reverse_iterator(characters_.begin() + end));
}

std::string TrafficRecord::Characters(Number number, std::size_t limit) const {
  const TrafficEntry& entry = At(number);
  const auto from =
      characters_.begin() + static_cast<std::ptrdiff_t>(entry.start - entries_.front().start);
  return {from, from + static_cast<std::ptrdiff_t>(std::min<std::size_t>(entry.length, limit))};
}

std::optional<TrafficRecord::Number> TrafficRecord::Sent(Number received) const {
  const Number behind = At(received).behindSent;
  if (behind == 0 || received - Begin() < behind) return std::nullopt;
  return received - behind;
}

void TrafficRecord::DropOld() {
  if (Bytes() <= limit_) return;
  const std::size_t enough = limit_ - limit_ / kDroppedPart;
  std::size_t count = 0;
  std::size_t length = 0;
  while (Bytes() - length - count * sizeof(TrafficEntry) > enough) {
    length += entries_[count].length;
    ++count;
  }
  entries_.erase(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(count));
  characters_.erase(characters_.begin(), characters_.begin() + static_cast<std::ptrdiff_t>(length));
  dropped_ += count;
  if (lastSent_ && *lastSent_ < dropped_) lastSent_.reset();
}

void TrafficRecord::Tell(Number number) const {
  if (listener_) listener_(number);
}

}  // namespace kelvo
