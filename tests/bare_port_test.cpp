#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>
#include <utility>

#include "adapters/device_lock.h"
#include "adapters/qt_serial_port.h"

// The port and the event loop on a pseudo-terminal whose other end is the test itself.

namespace kelvo {
namespace {

using std::chrono::milliseconds;

constexpr char kXOn = 17;
constexpr char kXOff = 19;

class BarePortTest : public testing::Test {
 protected:
  BarePortTest() : master(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
    grantpt(master);
    unlockpt(master);
    port.SetDevices([device = std::string(ptsname(master))](int) { return device; });
    port.SetPortNumber(1);
    port.SetTrafficListener([this](Direction direction, std::string_view characters) {
      if (direction == Direction::FromTerminal) arrived += characters.size();
    });
    port.SetLostHandler([this] { ++lost; });
    port.SetErrorHandler([](const std::string& error) { ADD_FAILURE() << error; });
    port.SetInputLen(0);
    EXPECT_EQ(port.Open(), PortOk);
    SetLine("19200,N,8,1");
  }
  ~BarePortTest() override { close(master); }

  void SetLine(const std::string& settings, Handshaking handshaking = Handshaking::XOnXOff) {
    EXPECT_EQ(port.SetUp(settings, handshaking), "") << settings;
  }
  void Arrive(std::string_view text) {
    ASSERT_EQ(write(master, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void WaitUntilSent() {
    while (port.OutBufferCount() > 0) loop.WaitPaintingOnly(port.OutBufferTime());
  }
  // All that is in the input buffer once `count` characters are.
  std::string Received(std::size_t count) {
    while (port.InBufferCount() < count) loop.WaitForEvent();
    return port.Input();
  }
  // What has come out at the other end by now, and at least `count` characters.
  std::string Sent(std::size_t count) {
    std::string text;
    std::array<char, 4096> buffer;
    while (text.size() < count) {
      const ssize_t length = read(master, buffer.data(), buffer.size());
      if (length > 0) text.append(buffer.data(), static_cast<std::size_t>(length));
      loop.WaitForEvent(milliseconds(1));
    }
    return text;
  }
  // The Terminal takes nothing any more; what follows the handshake's character shows that it has
  // been seen.
  void Hold() {
    Arrive(std::string(1, kXOff) + "x");
    Received(1);
  }
  void WaitUntilHeld() {
    while (!port.Held()) loop.WaitPaintingOnly(port.OutBufferTime());
  }

  int master;
  QtEventLoop loop;
  QtSerialPort port{loop};
  std::size_t arrived = 0;
  int lost = 0;
};

TEST_F(BarePortTest, CharactersThatArriveUnaskedWhileTextIsSentDoNoHarm) {
  const std::string command = "\x1bGC";
  constexpr std::size_t count = 2000;
  SetLine("4000000,N,8,1");
  std::atomic<bool> stop = false;
  std::size_t keys = 0;
  std::string sent;
  std::thread terminal([&] {
    std::array<char, 4096> buffer;
    while (!stop || sent.size() < count * command.size()) {
      if (!stop && write(master, "key", 3) == 3) keys += 3;
      const ssize_t length = read(master, buffer.data(), buffer.size());
      if (length > 0) sent.append(buffer.data(), static_cast<std::size_t>(length));
    }
  });
  for (std::size_t i = 0; i < count; ++i) {
    port.Write(command);
    WaitUntilSent();
  }
  stop = true;
  terminal.join();
  ASSERT_TRUE(port.IsOpen());
  while (arrived < keys) loop.WaitForEvent();
  EXPECT_EQ(arrived, keys);
  EXPECT_EQ(sent.size(), count * command.size());
}

TEST_F(BarePortTest, HeldLineIsToldAndLosesNothingAlsoWhenItsEchoComesLate) {
  const std::string selection = "\x1b!A5;";
  const std::string command =
      "\x1b"
      "EWC";
  Hold();
  port.Write(selection);
  EXPECT_FALSE(port.Held());
  WaitUntilHeld();
  port.Write(command);
  EXPECT_EQ(port.OutBufferCount(), selection.size() + command.size());
  Arrive(std::string(1, kXOn));
  const std::string sent = Sent(selection.size() + command.size());
  EXPECT_EQ(sent, selection + command);
  EXPECT_FALSE(port.Held());
  WaitUntilSent();
  Arrive(sent + "\x06");
  EXPECT_EQ(Received(1), "\x06");
}

TEST_F(BarePortTest, MoreThanTheDriverTakesGoesOnWhenTheLineIsReleased) {
  SetLine("4000000,N,8,1");
  std::string text(300000, 'a');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i % 26);
  Hold();
  port.Write(text);
  EXPECT_GE(port.OutBufferCount(), text.size());
  WaitUntilHeld();
  Arrive(std::string(1, kXOn));
  EXPECT_EQ(Sent(text.size()), text);
  EXPECT_TRUE(port.IsOpen());
  Hold();
  port.Write(text);
  port.DiscardOutput();
  EXPECT_EQ(port.OutBufferCount(), 0U);
  EXPECT_FALSE(port.Held());
}

TEST_F(BarePortTest, WithRtsCtsTheCharactersOfXOnXOffArrive) {
  SetLine("19200,N,8,1", Handshaking::RtsCts);
  Arrive("\x13\x11x");
  EXPECT_EQ(Received(3), "\x13\x11x");
  port.Write("y");
  EXPECT_EQ(Sent(1), "y");
}

TEST_F(BarePortTest, DeviceThatGoesAwayIsToldOnce) {
  Hold();
  port.Write("\x1bGC");
  close(std::exchange(master, -1));
  while (port.IsOpen()) loop.WaitPaintingOnly(std::chrono::seconds(1));
  EXPECT_EQ(lost, 0) << "only from the event loop";
  while (lost == 0) loop.WaitForEvent();
  for (int i = 0; i < 10; ++i) loop.ProcessPending();
  EXPECT_EQ(lost, 1);
  port.Write("\x1bGC");
  EXPECT_EQ(port.OutBufferCount(), 0U);
  EXPECT_EQ(port.Open(), PortNotAvailable);
}

TEST_F(BarePortTest, EchoIsDroppedInWhateverPiecesItComesAndTheAnswerStays) {
  const std::string selection = "\x1b!S1024;";
  const std::string command =
      "\x1b"
      "EWC";
  for (std::size_t early = 0; early <= command.size(); ++early) {
    port.Write(selection);
    port.Write(command);
    Arrive(selection + command.substr(0, early));
    WaitUntilSent();
    Arrive(command.substr(early) + "\x06");
    EXPECT_EQ(Received(1), "\x06") << early;
  }
  port.Write(command);
  Arrive("\x06");  // sooner than the line could have carried the command
  EXPECT_EQ(Received(1), "\x06");
}

TEST_F(BarePortTest, WhatArrivesUnaskedIsRaisedAlsoWhenItBeginsLikeAnEcho) {
  std::string raised;
  port.SetReceiveHandler([&] { raised += port.Input(); });
  port.SetReceiveThreshold(1);
  port.Write("\x1bGC");
  Arrive("\x1b");  // a key
  while (raised.empty()) loop.WaitForEvent();
  EXPECT_EQ(raised, "\x1b");
  Arrive("a");
  while (port.InBufferCount() == 0) loop.WaitPaintingOnly(std::chrono::seconds(1));
  EXPECT_EQ(raised, "\x1b") << "not inside the wait";
  while (raised.size() < 2) loop.WaitForEvent();
  EXPECT_EQ(raised,
            "\x1b"
            "a");
}

TEST_F(BarePortTest, EveryRateOfTheListIsAcceptedAndCounted) {
  for (const char* rate : {"1200", "2400", "4800", "9600", "14400", "19200", "4000000"}) {
    for (const char* frame : {",N,8,1", ",S,7,2", ",E,7,1", ",O,8,2"}) {
      SetLine(std::string(rate) + frame, Handshaking::RtsCts);
    }
    SetLine(std::string(rate) + ",N,8,1");
    const auto begin = loop.Now();
    port.Write("0123456789");
    const auto line = std::chrono::nanoseconds(std::chrono::seconds(100)) / std::atoi(rate);
    const auto left = port.OutBufferTime();
    const auto passed = loop.Now() - begin;
    EXPECT_GE(left, line - passed - std::chrono::nanoseconds(10)) << rate;
    EXPECT_LE(left, std::max<std::chrono::nanoseconds>(line, milliseconds(1))) << rate;
    port.DiscardOutput();
  }
  EXPECT_EQ(port.SetUp("fast,N,8,1", Handshaking::XOnXOff),
            std::string("Einstellung fast,N,8,1: ") + std::strerror(EINVAL));
}

TEST_F(BarePortTest, WaitsThatOnlyPaintRepaintHoweverShortTheyAreAndTakeNoTick) {
  QtTimer timer(loop, milliseconds(1), true);
  int ticks = 0;
  timer.SetHandler([&ticks] { ++ticks; });
  bool painted = false;
  for (int i = 0; i < 2; ++i) {
    painted = false;
    QMetaObject::invokeMethod(
        &loop, [&painted] { painted = true; }, Qt::QueuedConnection);
    while (!painted) loop.WaitPaintingOnly(milliseconds(2));
  }
  EXPECT_EQ(ticks, 0);
  while (ticks == 0) loop.WaitForEvent();
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

TEST(DeviceLockTest, LockOfAnyProgramThatRunsIsHonoured) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString();
  DeviceLock lock(path);
  EXPECT_TRUE(lock.Take("/dev/ttyX1"));
  EXPECT_FALSE(DeviceLock(path).Take("/dev/ttyX1"));
  lock.Release();
  EXPECT_TRUE(DeviceLock(path).Take("/dev/ttyX1"));
  for (const char* family : {"\n", " minicom root\n"}) {
    std::ofstream(path + "/LCK..ttyX2") << "     " << getppid() << family;
    EXPECT_FALSE(lock.Take("/dev/ttyX2"));
    std::ofstream(path + "/LCK..ttyX2") << " 999999999" << family;  // beyond every process
    EXPECT_TRUE(lock.Take("/dev/ttyX2"));
    lock.Release();
  }
  EXPECT_TRUE(DeviceLock(path + "/missing").Take("/dev/ttyX1"));
}

}  // namespace
}  // namespace kelvo
