#pragma once

#include <chrono>
#include <functional>

namespace kelvo {

/// A moment of the calendar, UTC.
using WallTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// The one event loop, seen from inside a wait.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  /// Sleeps until something happens (a character, a tick, the operator), handles it and returns.
  virtual void WaitForEvent() = 0;
  /// The same, but for `longest` at most.
  virtual void WaitForEvent(std::chrono::nanoseconds longest) = 0;
  /// Handles what has happened already; never sleeps.
  virtual void ProcessPending() = 0;
  /// Lets up to `time` pass. Takes no input from the operator but Escape and the closing of a
  /// window, and no tick of a `Timer`; windows repaint. May return early, but not without any time
  /// having passed.
  virtual void WaitPaintingOnly(std::chrono::nanoseconds time) = 0;
  /// Time since an arbitrary origin; it never goes back.
  virtual std::chrono::nanoseconds Now() const = 0;
  /// The time of the calendar, which the operator may set while the program runs.
  virtual WallTime WallClock() const {
    return std::chrono::time_point_cast<std::chrono::milliseconds>(
        std::chrono::system_clock::now());
  }
  /// True once the program is closing: every wait ends.
  virtual bool Closing() const = 0;
};

/// A timer that ticks periodically while it is enabled. Ticks come from the event loop, never
/// earlier than the interval.
class Timer {
 public:
  /// Each: every tick is delivered. OnDemand: the timer runs freely, but only a tick that somebody
  /// asked for with SetEnabled(true) is delivered, so that an idle program sleeps.
  enum class Ticks { Each, OnDemand };

  virtual ~Timer() = default;

  virtual void SetInterval(std::chrono::milliseconds interval) = 0;
  virtual std::chrono::milliseconds Interval() const = 0;
  /// Enabling a timer that runs already changes nothing; after a disable the interval starts anew.
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetHandler(std::function<void()> tick) = 0;
};

}  // namespace kelvo
