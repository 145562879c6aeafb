#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace kelvo {

/// Tells from the line rate how many characters are still on their way. The operating system takes
/// thousands of characters at once and some devices report none of them as queued.
class LineClock {
 public:
  using Time = std::chrono::nanoseconds;

  /// `bits` a character, start and stop bits included; baud in bits per second, above 0.
  void SetRate(int baud, int bits) { character_ = Time(std::chrono::seconds(bits)) / baud; }
  Time CharacterTime() const { return character_; }

  void Written(std::size_t characters, Time now) {
    freeAt_ = std::max(freeAt_, now) + character_ * static_cast<Time::rep>(characters);
  }
  void Discarded(Time now) { freeAt_ = std::min(freeAt_, now); }

  /// How long until the last bit has left; 0 when it has.
  Time Left(Time now) const { return std::max(freeAt_ - now, Time(0)); }
  std::size_t CharactersLeft(Time now) const {
    return static_cast<std::size_t>((Left(now) + character_ - Time(1)) / character_);
  }
  /// How long ago the last bit has left, negative while it has not.
  Time IdleFor(Time now) const { return now - freeAt_; }

 private:
  Time character_ = std::chrono::milliseconds(1);
  Time freeAt_{0};
};

}  // namespace kelvo
