#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "simulator/terminal.h"

namespace kelvo::sim {

/// Everything that hangs on one line: each Terminal hears every character, and whoever answers
/// drives the same pair of wires.
class Bus {
 public:
  static constexpr std::size_t kMost = 256;

  struct Character {
    unsigned char byte;
    Frame frame;
    int stopBits;  ///< 1 or 2
  };

  /// `fonts` must outlive the bus. Null when kMost Terminals are there.
  Terminal* Add(TerminalSetup setup, const DeviceFonts& fonts);
  std::size_t Count() const { return terminals_.size(); }
  Terminal& At(std::size_t index) { return *terminals_[index]; }
  const Terminal& At(std::size_t index) const { return *terminals_[index]; }

  void Receive(unsigned char byte, const Frame& frame, Time now);
  /// Whether no Terminal asks the host to pause by its line for that (RTS / CTS).
  bool ReadyToReceive() const;
  void Advance(Time now);
  /// When a Terminal has something to do.
  std::optional<Time> NextEvent() const;
  /// Since when or from when on some Terminal wants to send.
  std::optional<Time> OutputReady() const;
  /// What the line carries in the character time that begins at `now`; nothing when all are silent.
  std::optional<Character> Take(Time now);

 private:
  struct Driver {
    bool on = false;
    int slotsToWait = 0;
  };

  std::vector<std::unique_ptr<Terminal>> terminals_;
  std::vector<Driver> drivers_;  // of each Terminal
};

}  // namespace kelvo::sim
