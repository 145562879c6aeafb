#include "adapters/window_loop.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QWindow>
#include <csignal>

#include "adapters/interruption.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

// Typed and clicked things are done when the text has left; closing the window is not put off.
TEST(QtEventLoopTest, WaitsThatOnlyPaintLetClosingAndEscapeThroughAndKeepOtherInput) {
  class Window : public QWindow {
   public:
    std::vector<int> seen;
    bool event(QEvent* event) override {
      if (event->type() == QEvent::KeyPress) seen.push_back(static_cast<QKeyEvent*>(event)->key());
      if (event->type() == QEvent::Close) seen.push_back(0);
      return QWindow::event(event);
    }
  } window;
  WindowLoop loop;
  const auto post = [&window](QEvent* event) { QCoreApplication::postEvent(&window, event); };
  for (const Qt::Key key : {Qt::Key_A, Qt::Key_Escape, Qt::Key_B}) {
    post(new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
  }
  post(new QCloseEvent);
  const auto end = loop.Now() + milliseconds(100);
  while (loop.Now() < end) loop.WaitPaintingOnly(milliseconds(30));
  EXPECT_EQ(window.seen, (std::vector<int>{Qt::Key_Escape, 0}));
  loop.ProcessPending();
  EXPECT_EQ(window.seen, (std::vector<int>{Qt::Key_Escape, 0, Qt::Key_A, Qt::Key_B}));
}

TEST(InterruptionTest, EachSignalIsToldAndEndsNothingByItself) {
  QtEventLoop loop;
  Interruption interruption;
  int told = 0;
  interruption.SetHandler([&told] { ++told; });
  const auto patience = loop.Now() + std::chrono::seconds(20);
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    const int before = told;
    std::raise(signal);
    while (told == before && loop.Now() < patience) loop.WaitForEvent(milliseconds(100));
    EXPECT_EQ(told, before + 1);
  }
}

// A pause that is asked for ends, though its tick fell into a wait without ticks.
TEST(QtTimerTest, TickThatWasAskedForComesAfterAWaitWithoutTicks) {
  QtEventLoop loop;
  QtTimer timer(loop, milliseconds(10), true, Timer::Ticks::OnDemand);
  bool ticked = false;
  timer.SetHandler([&ticked] { ticked = true; });
  timer.SetEnabled(true);
  const auto end = loop.Now() + milliseconds(60);
  while (loop.Now() < end) loop.WaitPaintingOnly(milliseconds(30));
  EXPECT_FALSE(ticked);
  const auto patience = loop.Now() + std::chrono::seconds(20);
  while (!ticked && loop.Now() < patience) loop.WaitForEvent(milliseconds(100));
  EXPECT_TRUE(ticked);
}

TEST(QtTimerTest, RestartedTimerTicksWhenItsNewIntervalIsOverAndAStoppedOneNever) {
  QtEventLoop loop;
  QtTimer timer(loop, milliseconds(20), true);
  std::chrono::nanoseconds ticked{0};
  timer.SetHandler([&] { ticked = loop.Now(); });
  loop.WaitForEvent(milliseconds(5));
  timer.SetEnabled(false);
  const auto restarted = loop.Now();
  timer.SetEnabled(true);
  while (ticked < restarted) loop.WaitForEvent();
  EXPECT_GE(ticked - restarted, milliseconds(20));
  timer.SetEnabled(false);
  const auto last = ticked;
  bool over = false;
  QtTimer later(loop, milliseconds(50), true);
  later.SetHandler([&over] { over = true; });
  while (!over) loop.WaitForEvent();
  EXPECT_EQ(ticked, last);
}

}  // namespace
}  // namespace kelvo
