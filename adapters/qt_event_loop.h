#pragma once

#include <QObject>
#include <QTimer>

#include "base/event_loop.h"

namespace kelvo {

/// The Qt event loop of the user-interface thread.
class QtEventLoop : public QObject, public EventLoop {
  Q_OBJECT

 public:
  QtEventLoop();

  void WaitForEvent() override;
  void WaitForEvent(std::chrono::nanoseconds longest) override;
  void ProcessPending() override;
  void WaitPaintingOnly(std::chrono::nanoseconds time) override;
  std::chrono::nanoseconds Now() const override;
  bool Closing() const override { return closing_; }

  /// Ends every wait, now and from now on.
  void Close() { closing_ = true; }
  /// True while WaitPaintingOnly repaints: ticks are dropped and receive events held back.
  bool Held() const { return held_; }
  /// Sleeps for the given time, but may wake up early to serve a device.
  using Sleeper = std::function<void(std::chrono::nanoseconds)>;
  /// How WaitPaintingOnly sleeps; without one it serves nobody.
  void SetSleeper(Sleeper sleeper) { sleeper_ = std::move(sleeper); }

 protected:
  /// Serves what has happened, in a wait that takes no input.
  virtual void ServeHeld();

 Q_SIGNALS:
  /// Receive events that were held back may be raised from now on.
  void Released();

 private:
  void Paint();

  bool closing_ = false;
  bool held_ = false;
  std::chrono::nanoseconds painted_{0};
  Sleeper sleeper_;
};

/// A periodic timer with millisecond precision: a tick is never early.
class QtTimer : public QObject, public Timer {
  Q_OBJECT

 public:
  QtTimer(QtEventLoop& loop, std::chrono::milliseconds interval, bool enabled,
          Ticks ticks = Ticks::Each);

  /// At least 1 ms.
  void SetInterval(std::chrono::milliseconds interval) override;
  std::chrono::milliseconds Interval() const override { return interval_; }
  void SetEnabled(bool enabled) override;
  bool Enabled() const override { return enabled_; }
  void SetHandler(std::function<void()> tick) override { tick_ = std::move(tick); }

 private:
  void StartInterval();
  void Arm();
  void Expired();

  QtEventLoop& loop_;
  QTimer timer_;
  std::chrono::milliseconds interval_;
  bool enabled_;
  Ticks ticks_;
  std::chrono::nanoseconds due_{0};
  std::chrono::nanoseconds wakes_{0};  // when timer_ expires, if it runs
  std::function<void()> tick_;
};

}  // namespace kelvo
