#pragma once

#include "base/event_loop.h"
#include "link/intervals.h"

namespace kelvo {

/// Loop, timers and port as the program starts with them: the toolkit's in the program, virtual
/// ones where time is a number. They outlive the windows.
template <typename LoopType, typename TimerType, typename PortType>
struct LinkWorld {
  LoopType loop;
  TimerType tmrTimeout{loop, kTimeoutAtStart, false};
  TimerType tmrRS485{loop, kPauseAtStart, true, Timer::Ticks::OnDemand};
  /// Bundles changes of the drawing that are sent at once.
  TimerType tmrSofort{loop, kDrawingInterval, false};
  /// Looks for a device that was lost.
  TimerType tmrReturn{loop, kReturnInterval, false};
  PortType com1{loop};
};

}  // namespace kelvo
