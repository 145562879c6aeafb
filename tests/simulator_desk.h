#pragma once

#include <string>
#include <string_view>

#include "simulator/terminal.h"
#include "tests/test_fonts.h"

namespace kelvo::sim {

using namespace std::chrono_literals;

inline const std::string Esc = "\x1B";
inline const std::string Etx = "\x03";
inline const std::string Eot = "\x04";
inline const std::string Ack = "\x06";
inline const std::string Nak = "\x15";

/// One Terminal that is switched on, with a clock that the test moves.
class Desk {
 public:
  explicit Desk(const TerminalSetup& setup = {}) : terminal(setup, TestFonts()) {
    terminal.PowerOn(now);
  }

  /// What the Terminal has ready to send by now.
  std::string Heard() {
    std::string heard;
    for (auto ready = terminal.OutputReady(); ready && *ready <= now;
         ready = terminal.OutputReady()) {
      heard += static_cast<char>(terminal.TakeOutput());
    }
    return heard;
  }
  /// Sends and returns what is answered at once.
  std::string Send(std::string_view bytes) {
    for (const char byte : bytes) terminal.Receive(static_cast<unsigned char>(byte), now);
    return Heard();
  }
  std::string Command(const std::string& command) { return Send(Esc + command); }
  void Wait(Time span) {
    now += span;
    terminal.Advance(now);
  }
  void PowerCycle() {
    terminal.PowerOff();
    terminal.PowerOn(now);
  }

  Time now = 1s;
  Terminal terminal;
};

}  // namespace kelvo::sim
