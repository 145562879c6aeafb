#include "adapters/qt_event_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <thread>
#include <utility>

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kPaintEvery{20};
// The system may let a sleep last a thousandth longer than asked for; a longer one than this is
// ended by a short one.
constexpr milliseconds kOneSleep{1000};

}  // namespace

QtEventLoop::QtEventLoop() = default;

void QtEventLoop::WaitForEvent() {
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtEventLoop::WaitForEvent(nanoseconds longest) {
  QTimer wake;  // its time-out is an event
  wake.setSingleShot(true);
  wake.setTimerType(Qt::PreciseTimer);
  wake.start(std::chrono::ceil<milliseconds>(std::max(longest, nanoseconds(1))));
  WaitForEvent();
}

void QtEventLoop::ProcessPending() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

void QtEventLoop::WaitPaintingOnly(nanoseconds time) {
  const nanoseconds begin = Now();
  // Many short waits repaint like one long one.
  if (begin - painted_ >= kPaintEvery) Paint();
  const nanoseconds left = std::min<nanoseconds>(begin + time - Now(), kPaintEvery);
  if (left <= nanoseconds(0)) return;
  if (sleeper_) return sleeper_(left);
  std::this_thread::sleep_for(left);
}

void QtEventLoop::Paint() {
  const bool outer = std::exchange(held_, true);
  ServeHeld();
  held_ = outer;
  painted_ = Now();
  if (!held_) Q_EMIT Released();
}

void QtEventLoop::ServeHeld() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

nanoseconds QtEventLoop::Now() const { return std::chrono::steady_clock::now().time_since_epoch(); }

QtTimer::QtTimer(QtEventLoop& loop, milliseconds interval, bool enabled, Ticks ticks)
    : loop_(loop), interval_(interval), enabled_(enabled), ticks_(ticks) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, this, &QtTimer::Expired);
  StartInterval();
}

void QtTimer::SetInterval(milliseconds interval) {
  interval_ = std::max(interval, milliseconds(1));
  StartInterval();
}

void QtTimer::SetEnabled(bool enabled) {
  const bool before = std::exchange(enabled_, enabled);
  if (!enabled) return;
  if (ticks_ == Ticks::OnDemand) return Arm();
  if (!before) StartInterval();
}

void QtTimer::StartInterval() {
  due_ = loop_.Now() + interval_;
  if (enabled_ && ticks_ == Ticks::Each) Arm();
}

// Starts the timer for the next tick that is still to come. Each exchange begins an interval anew;
// a timer that wakes up before the new end is left as it is and goes on then, which is cheaper.
void QtTimer::Arm() {
  const nanoseconds now = loop_.Now();
  if (due_ <= now) due_ += interval_ * ((now - due_) / interval_ + 1);
  if (timer_.isActive() && wakes_ <= due_) return;
  auto wait = std::chrono::ceil<milliseconds>(due_ - now);
  if (wait > kOneSleep) wait -= wait / 50;
  wakes_ = now + wait;
  timer_.start(wait);
}

void QtTimer::Expired() {
  if (!enabled_) return;
  if (loop_.Now() < due_) return Arm();
  // A tick that falls into a wait without ticks is dropped; one that was asked for comes later
  // then.
  if (ticks_ == Ticks::Each || loop_.Held()) Arm();
  if (tick_ && !loop_.Held()) tick_();
}

}  // namespace kelvo
