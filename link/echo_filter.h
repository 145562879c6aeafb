#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace kelvo {

/// Parts the echo of what was written from what a Terminal sends.
///
/// A two-wire bus brings back every character that is written to it. An exact copy of what was
/// written, from its first character on, is echo and dropped, in whatever pieces and however late
/// it comes: an adapter may hold it back. The first character that is no copy is the answer, and so
/// is all that follows; of a damaged echo that is the character that differs. Nothing is taken for
/// an answer or for old because of the moment at which it arrives, so an answer counts even when it
/// comes sooner than the line could have carried the command.
///
/// Times are those of `EventLoop::Now()`.
class EchoFilter {
 public:
  using Time = std::chrono::nanoseconds;

  /// What an adapter or a bridge may hold characters back at most while nobody waits for an answer.
  /// Later an ESC that arrives is a key that was pressed, not the beginning of an echo.
  static constexpr std::chrono::milliseconds kHeldBack{200};

  /// A text is handed to the line, which its last bit will have left at `lastBit`. An echo that is
  /// still to come from the texts before it is expected in front of its own.
  void Written(std::string_view text, Time now, Time lastBit);
  /// What was written leaves the line at `lastBit` only: a handshake has held it.
  void Delayed(Time lastBit);
  /// What of `characters`, which have just arrived, is no echo.
  std::string Arrived(std::string_view characters);
  /// No echo is expected any more when the line has been free for longer than kHeldBack. Returns
  /// what had begun like an echo and was none.
  std::string Expire(Time now);
  /// Nothing has been written.
  void Reset();
  /// Characters of whole texts that have come back, ever.
  std::size_t Returned() const { return returned_; }
  /// Something may still come back.
  bool Expected() const { return !texts_.empty(); }
  /// Something has come that may be the beginning of an echo.
  bool Begun() const { return matched_ > 0; }

 private:
  struct Text {
    std::string characters;
    Time lastBit;
  };

  bool IsEcho(char character);
  bool SkipTo(char character);

  std::deque<Text> texts_;  // whose echo may still come, in the order of writing
  std::size_t returned_ = 0;
  std::size_t matched_ = 0;  // characters of the first text that have come back
};

}  // namespace kelvo
