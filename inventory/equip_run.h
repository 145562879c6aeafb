#pragma once

#include <cstdint>
#include <functional>

#include "inventory/equip_log.h"
#include "terminal/terminal_state.h"

// Carries a job out: step by step, each proven, so that it can be ended at any character and goes
// on later.

namespace kelvo {

class EquipRun {
 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    TerminalState& state;  ///< takes version and free bytes
    double countsFrom;     ///< the first version that counts while it erases
    double sumsFrom;       ///< the first version that computes checksums
  };
  enum class End : std::uint8_t {
    Complete,   ///< every target has had its turn
    Stopped,    ///< by the operator
    LineLost,   ///< or the program is closing
    NotLogged,  ///< the log could not be written: nothing more was sent
  };
  /// Told of every entry.
  using Listener = std::function<void(const EquipEntry& entry)>;

  explicit EquipRun(const Services& services) : services_(services) {}

  /// Does what is not done yet. It serves the event loop all the time.
  End Run(EquipLog& log, const Listener& listener);
  /// Ends it after the step that is on the line.
  void Stop() { stopping_ = true; }

 private:
  class Visit;

  Services services_;
  bool stopping_ = false;
};

}  // namespace kelvo
