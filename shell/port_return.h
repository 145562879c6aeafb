#pragma once

#include <functional>

#include "base/event_loop.h"
#include "base/undertakings.h"

namespace kelvo {

/// Opens the port of a lost device again when that is back. Sends nothing.
class PortReturn {
 public:
  struct Services {
    Timer& timer;
    Undertakings& begun;
    /// The device can be opened now.
    std::function<bool()> ready;
    std::function<void()> open;
  };
  explicit PortReturn(Services services);

  /// From now on; until it has been opened once, whatever came of that.
  void Await();
  void GiveUp() { services_.timer.SetEnabled(false); }

 private:
  void Look();

  Services services_;
};

}  // namespace kelvo
