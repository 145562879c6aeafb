#include "adapters/qt_event_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <thread>

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// Repainting may take a while; so close to the end of a wait nothing is begun that could make it
// late, because the Terminal's answer comes one character later.
constexpr milliseconds quietEnd{30};
constexpr milliseconds paintEvery{20};

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
  const nanoseconds end = Now() + time;
  if (time > quietEnd) {
    held_ = true;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    held_ = false;
    Q_EMIT Released();
    time = std::min<nanoseconds>(end - Now(), paintEvery);
  }
  if (time > nanoseconds(0)) std::this_thread::sleep_for(time);
}

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
  const bool starts = enabled && !enabled_;
  enabled_ = enabled;
  if (!enabled) return timer_.stop();
  if (ticks_ == Ticks::OnDemand) return Arm();
  if (starts) StartInterval();
}

void QtTimer::StartInterval() {
  due_ = loop_.Now() + interval_;
  if (enabled_ && ticks_ == Ticks::Each) Arm();
}

// Starts the timer for the next tick that is still to come.
void QtTimer::Arm() {
  const nanoseconds now = loop_.Now();
  if (due_ <= now) due_ += interval_ * ((now - due_) / interval_ + 1);
  timer_.start(std::chrono::ceil<milliseconds>(due_ - now));
}

void QtTimer::Expired() {
  if (loop_.Now() < due_) return Arm();
  if (ticks_ == Ticks::Each) Arm();
  if (tick_ && !loop_.Held()) tick_();
}

}  // namespace kelvo
