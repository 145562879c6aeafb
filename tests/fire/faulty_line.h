#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fakes/simulated_terminal.h"

namespace kelvo::fire {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

enum class Way { ToTerminals, ToHost };

enum class Kind {
  Drop,     ///< the character is lost
  Double,   ///< it comes twice
  Flip,     ///< one of its bits is wrong
  Insert,   ///< another one comes in front of it
  Silence,  ///< it is lost, and so is what follows for some time
  Delay,    ///< it and what follows is held back for some time, then comes at once
  Nak,      ///< a NAK comes in its place
  Babble,   ///< characters of chance come for some time beside what is sent
  Flood,    ///< the host hears one character without a pause for some time
  Hold,     ///< the host's driver may not send for some time
};
inline constexpr std::array kKindNames = {"drop",  "double", "flip",   "insert", "silence",
                                          "delay", "NAK",    "babble", "flood",  "hold"};

/// One fault: at which character of which direction, counted from the beginning of an action.
struct Strike {
  Way way = Way::ToHost;
  std::size_t at = 0;
  Kind kind = Kind::Drop;
  unsigned value = 0;  ///< the bit, the character, or the time in milliseconds
};

inline std::string StrikeText(const Strike& strike) {
  return std::string(kKindNames[static_cast<std::size_t>(strike.kind)]) + " " +
         std::to_string(strike.value) + " at " + std::to_string(strike.at) +
         (strike.way == Way::ToHost ? " to host" : " to Terminals");
}

/// The wires between the port and the Terminals, which may be struck; and what really went over
/// them, which is what statements are held to.
class FaultyLine {
 public:
  struct Lane {
    std::string put;                 ///< sent at one end
    std::string got;                 ///< heard at the other
    std::vector<nanoseconds> times;  ///< when each of these was heard
  };

  FaultyLine(testing_world::VirtualLoop& loop, testing_world::VirtualPort& port)
      : loop_(loop), port_(port), line_(loop, port) {
    line_.towardsTerminals = [this](std::string_view text) { Pass(Way::ToTerminals, text); };
    line_.towardsHost = [this](std::string_view text) { Pass(Way::ToHost, text); };
  }

  sim::Bus& Bus() { return line_.bus; }
  sim::Line& Wires() { return line_.line; }

  /// Another action begins: what went over the wires is forgotten, and a fault that is still going
  /// on has ended; but nothing overtakes what is held back.
  void Begin(std::vector<Strike> strikes) {
    strikes_ = std::move(strikes);
    lanes_ = {};
    ++action_;
    struck_ = 0;
    for (Block& block : blocked_) {
      block.lost = {};
      if (block.held > loop_.Now()) ++struck_;
    }
    late_ = port_.held = false;
  }
  const Lane& Of(Way way) const { return lanes_[Index(way)]; }
  /// How many faults have happened.
  int Struck() const { return struck_; }
  /// Something was held back for longer than anybody collects an answer.
  bool Late() const { return late_; }
  /// What was heard is not what was sent.
  bool Altered(Way way) const { return Of(way).put != Of(way).got; }

 private:
  struct Block {
    nanoseconds lost{0};
    nanoseconds held{0};
  };
  static std::size_t Index(Way way) { return static_cast<std::size_t>(way); }

  void Pass(Way way, std::string_view text) {
    for (const char character : text) {
      const std::size_t place = lanes_[Index(way)].put.size();
      lanes_[Index(way)].put += character;
      std::string on(1, character);
      for (const Strike& strike : strikes_) {
        if (strike.way == way && strike.at == place) on = Apply(strike, on);
      }
      if (loop_.Now() >= blocked_[Index(way)].lost) Carry(way, on);
    }
  }

  std::string Apply(const Strike& strike, const std::string& on) {
    ++struck_;
    const nanoseconds end = loop_.Now() + milliseconds(strike.value);
    const char first = on.empty() ? '\0' : on.front();
    switch (strike.kind) {
      case Kind::Drop:
        return {};
      case Kind::Double:
        return on + on;
      case Kind::Flip:
        return {static_cast<char>(first ^ 1 << strike.value % 8)};
      case Kind::Insert:
        return static_cast<char>(strike.value) + on;
      case Kind::Silence:
        blocked_[Index(strike.way)].lost = end;
        return {};
      case Kind::Delay:
        blocked_[Index(strike.way)].held = end;
        return on;
      case Kind::Nak:
        return "\x15";
      case Kind::Babble:
        Babble(strike);
        return on;
      case Kind::Flood:
        Flood(end);
        return on;
      case Kind::Hold:
        port_.held = true;
        Later(end, [this] { port_.held = false; });
        return on;
    }
    return on;
  }

  // Of this action alone.
  void Later(nanoseconds time, std::function<void()> what) {
    loop_.At(time, [this, action = action_, what = std::move(what)] {
      if (action == action_) what();
    });
  }
  void Babble(const Strike& strike) {
    std::minstd_rand random(strike.value + 1);
    for (nanoseconds time = loop_.Now(); time < loop_.Now() + milliseconds(strike.value);
         time += milliseconds(1 + random() % 40)) {
      const char character = static_cast<char>(random() % 256);
      Later(time, [this, way = strike.way, character] { Hear(way, {&character, 1}); });
    }
  }
  void Flood(nanoseconds end) {
    if (loop_.Now() >= end) return;
    Hear(Way::ToHost, "U");
    Later(loop_.Now() + port_.characterTime, [this, end] { Flood(end); });
  }

  // In the order of sending, whatever is held.
  void Carry(Way way, const std::string& text) {
    const nanoseconds held = blocked_[Index(way)].held;
    if (loop_.Now() >= held) return Hear(way, text);
    late_ = late_ || held - loop_.Now() > milliseconds(90);
    loop_.At(held, [this, way, text, action = action_] {
      if (action != action_) ++struck_;  // the present action is struck by what is left of another
      Hear(way, text);
    });
  }
  void Hear(Way way, std::string_view text) {
    Lane& lane = lanes_[Index(way)];
    lane.got += text;
    lane.times.resize(lane.got.size(), loop_.Now());
    way == Way::ToHost ? line_.ToHost(text) : line_.ToTerminals(text);
  }

  testing_world::VirtualLoop& loop_;
  testing_world::VirtualPort& port_;
  testing_world::SimulatedLine line_;
  std::vector<Strike> strikes_;
  std::array<Lane, 2> lanes_;
  std::array<Block, 2> blocked_{};
  int action_ = 0;
  int struck_ = 0;
  bool late_ = false;
};

}  // namespace kelvo::fire
