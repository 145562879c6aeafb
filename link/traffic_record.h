#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/event_loop.h"
#include "link/exchange.h"

namespace kelvo {

/// One stretch of characters in one direction. What it means is made when somebody looks.
struct TrafficEntry {
  WallTime time;            ///< of its first character
  std::uint64_t start = 0;  ///< characters that were recorded before it
  std::uint32_t length = 0;
  /// Of an answer: how many entries before it its question stands; of what was received else, the
  /// text sent last. 0 for none.
  std::uint32_t behindSent = 0;
  /// Of an answer: from the question's last bit to the answer's last character; of a question that
  /// was not answered, how long was waited.
  std::chrono::duration<std::uint32_t, std::micro> took{0};
  Direction direction = Direction::ToTerminal;
  /// Of an answer, and of a question to which none came; Sent as long as nothing is known.
  ReplyKind result = ReplyKind::Sent;
  bool settled = false;  ///< of a question: what came of it is known
};

/// What has crossed the line, and what came of each question. Characters that arrive close together
/// are one entry, as are the pieces of a long text. Bounded: of what is old, whole entries are
/// dropped, but never any of the last 100000 characters.
class TrafficRecord {
 public:
  /// Of an entry, counted from the first one ever; never given twice.
  using Number = std::uint64_t;

  /// For 100000 entries of one character each, with some room to drop many at once.
  static constexpr std::size_t kUsualLimit = 4'000'000;
  static constexpr std::size_t kLongestEntry = 100'000;

  /// `limit` in bytes of its memory.
  explicit TrafficRecord(std::size_t limit = kUsualLimit) : limit_(limit) {}

  /// Told the number of an entry that is new or has changed.
  void SetListener(std::function<void(Number)> listener) { listener_ = std::move(listener); }

  void Add(WallTime now, Direction direction, std::string_view characters);
  void Note(WallTime now, const Outcome& outcome);
  /// The device has gone: an entry without characters, from the Terminal's side.
  void NoteLoss(WallTime now);
  /// An entry of its own, whatever stands before it; at most kLongestEntry characters.
  Number Append(WallTime time, Direction direction, std::string_view characters);
  void Mark(Number number, ReplyKind result, std::chrono::nanoseconds took);
  /// Notes that `received` answers `sent`.
  void Join(Number received, Number sent);

  /// The entries that are kept: from Begin() up to, without, End().
  Number Begin() const { return dropped_; }
  Number End() const { return dropped_ + entries_.size(); }
  const TrafficEntry& At(Number number) const { return entries_[number - dropped_]; }
  /// Its characters, or the first `limit` of them.
  std::string Characters(Number number, std::size_t limit = kLongestEntry) const;
  /// What was sent last before what was received; nothing when that is not kept.
  std::optional<Number> Sent(Number received) const;
  std::size_t Bytes() const { return characters_.size() + entries_.size() * sizeof(TrafficEntry); }

 private:
  TrafficEntry& Entry(Number number) { return entries_[number - dropped_]; }
  bool Continues(WallTime now, Direction direction, std::size_t length) const;
  bool EndsWith(const TrafficEntry& entry, std::string_view text) const;
  std::optional<Number> FindSent(std::string_view text) const;
  void DropOld();
  void Tell(Number number) const;

  std::size_t limit_;
  std::deque<TrafficEntry> entries_;
  std::deque<char> characters_;
  Number dropped_ = 0;
  std::optional<Number> lastSent_;
  WallTime lastTime_{};         // of the last characters
  std::size_t lastLength_ = 0;  // of the last text handed over
  std::function<void(Number)> listener_;
};

}  // namespace kelvo
