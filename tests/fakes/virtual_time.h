#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

#include "base/event_loop.h"

namespace kelvo::testing_world {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// Time as a number that the waits advance: each wait jumps to the next thing that happens.
class VirtualLoop : public EventLoop {
 public:
  using Action = std::function<void()>;

  /// Something that happens at a given time, from outside the program.
  void At(nanoseconds time, Action action) { actions_.emplace(time, std::move(action)); }
  void After(nanoseconds delay, Action action) { At(now_ + delay, std::move(action)); }
  /// A source of events with its own clockwork (a timer, a simulated Terminal): `next` tells when
  /// it acts, `act` lets it.
  struct Source {
    std::function<nanoseconds()> next;
    Action act;
    bool isTimer = false;
  };
  void Add(Source source) { sources_.push_back(std::move(source)); }

  /// Lets time pass as an idle program would.
  void RunFor(nanoseconds time) {
    const nanoseconds end = now_ + time;
    while (Advance(end, true)) {
    }
    now_ = end;
  }

  void WaitForEvent() override {
    if (!Advance(kNever, true)) throw std::logic_error("a wait that nothing can end");
  }
  void WaitForEvent(nanoseconds longest) override {
    const nanoseconds end = now_ + std::max(longest, nanoseconds(1));
    if (!Advance(end, true)) now_ = end;
  }
  void ProcessPending() override {
    while (Advance(now_, true)) {
    }
  }
  void WaitPaintingOnly(nanoseconds time) override {
    const nanoseconds end = now_ + std::max(time, nanoseconds(1));
    held_ = true;
    woken_ = false;
    while (!woken_ && Advance(end, false)) {
    }
    if (!woken_) now_ = end;
    held_ = false;
    if (onReleased) onReleased();
  }
  /// Inside WaitPaintingOnly: receive events are held back.
  bool Held() const { return held_; }
  /// Ends WaitPaintingOnly early.
  void Wake() { woken_ = true; }
  /// Called when receive events may be raised again.
  Action onReleased;
  nanoseconds Now() const override { return now_; }
  WallTime WallClock() const override {
    return WallTime(std::chrono::duration_cast<milliseconds>(now_));
  }
  bool Closing() const override { return closing; }

  bool closing = false;
  static constexpr nanoseconds kNever = nanoseconds::max();

 private:
  nanoseconds NextTime(bool ticks) const {
    nanoseconds next = actions_.empty() ? kNever : actions_.begin()->first;
    for (const Source& source : sources_) {
      if (ticks || !source.isTimer) next = std::min(next, source.next());
    }
    return next;
  }

  // Lets happen what is next, if that is not later; whether there was such a thing.
  bool Advance(nanoseconds latest, bool ticks) {
    const nanoseconds next = NextTime(ticks);
    if (next == kNever || next > latest) return false;
    now_ = std::max(now_, next);
    if (!actions_.empty() && actions_.begin()->first <= now_) {
      const Action action = std::move(actions_.begin()->second);
      actions_.erase(actions_.begin());
      action();
      return true;
    }
    const auto due = std::find_if(sources_.begin(), sources_.end(), [&](const Source& source) {
      return (ticks || !source.isTimer) && source.next() <= now_;
    });
    due->act();
    return true;
  }

  nanoseconds now_{0};
  bool held_ = false;
  bool woken_ = false;
  std::multimap<nanoseconds, Action> actions_;
  std::vector<Source> sources_;
};

class VirtualTimer : public Timer {
 public:
  VirtualTimer(VirtualLoop& loop, milliseconds interval, bool enabled, Ticks ticks = Ticks::Each)
      : loop_(loop),
        interval_(interval),
        enabled_(enabled),
        onDemand_(ticks == Ticks::OnDemand),
        due_(loop.Now() + interval) {
    loop.Add({[this] { return enabled_ && (asked_ || !onDemand_) ? due_ : VirtualLoop::kNever; },
              [this] { Tick(); }, true});
  }
  void SetInterval(milliseconds interval) override {
    interval_ = interval;
    due_ = loop_.Now() + interval;
  }
  milliseconds Interval() const override { return interval_; }
  void SetEnabled(bool enabled) override {
    if (enabled && !enabled_) due_ = loop_.Now() + interval_;
    enabled_ = asked_ = enabled;
    // It has run freely meanwhile.
    if (onDemand_ && due_ <= loop_.Now())
      due_ += interval_ * ((loop_.Now() - due_) / interval_ + 1);
  }
  bool Enabled() const override { return enabled_; }
  void SetHandler(std::function<void()> tick) override { tick_ = std::move(tick); }

 private:
  void Tick() {
    due_ = loop_.Now() + interval_;
    asked_ = false;
    if (tick_) tick_();
  }

  VirtualLoop& loop_;
  milliseconds interval_;
  bool enabled_;
  bool onDemand_;
  bool asked_ = false;
  nanoseconds due_;
  std::function<void()> tick_;
};

}  // namespace kelvo::testing_world
