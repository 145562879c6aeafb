#include <asm/termbits.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>
#include <utility>

#include "adapters/machine_ports.h"
#include "adapters/qt_serial_port.h"
#include "link/exchange.h"

// The port and the event loop on a pseudo-terminal whose other end is the test itself.

namespace {

/// The driver of a serial device in place of the pseudo-terminal's, which has no parity and no
/// lines.
struct SerialDriver {
  bool inPlace = false;
  termios2 settings{};
  bool requestToSend = false;
} driver;

}  // namespace

extern "C" int ioctl(int handle, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (driver.inPlace && request == TCGETS2) {
    *static_cast<termios2*>(argument) = driver.settings;
  } else if (driver.inPlace && request == TCSETS2) {
    driver.settings = *static_cast<termios2*>(argument);
  } else if (driver.inPlace && (request == TIOCMBIS || request == TIOCMBIC)) {
    const bool rts = (*static_cast<int*>(argument) & TIOCM_RTS) != 0;
    driver.requestToSend = rts ? request == TIOCMBIS : driver.requestToSend;
  } else {
    return static_cast<int>(syscall(SYS_ioctl, handle, request, argument));
  }
  return 0;
}

// Where the device's name leads to.
extern "C" char* realpath(const char* name, char*) noexcept {
  return driver.inPlace ? strdup("/dev/ttyKelvoTest") : canonicalize_file_name(name);
}

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
  ~BarePortTest() override {
    port.Close();
    driver = {};
    close(master);
  }

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
      const ssize_t taken = stop ? 0 : write(master, "key", 3);
      if (taken > 0) keys += static_cast<std::size_t>(taken);  // a full line takes a part
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

// A key that comes first is told as what it is; an acknowledge is never lost for it.
TEST_F(BarePortTest, EveryAcknowledgedCommandIsAnsweredWhateverIsPressed) {
  const std::string command = std::string("\x1b") + "EWC";
  constexpr std::size_t count = 2000;
  QtTimer tmrTimeout(loop, milliseconds(20000), true);
  QtTimer tmrRS485(loop, milliseconds(1), true, Timer::Ticks::OnDemand);
  Exchange exchange(port, loop, tmrTimeout, tmrRS485);
  SetLine("4000000,N,8,1");
  port.SetInputLen(1);
  std::size_t keys = 0;
  std::thread terminal([&] {
    std::string heard;
    std::array<char, 4096> buffer;
    for (std::size_t answered = 0; answered < count;) {
      const ssize_t length = read(master, buffer.data(), buffer.size());
      if (length > 0) heard.append(buffer.data(), static_cast<std::size_t>(length));
      for (; heard.size() >= (answered + 1) * command.size(); ++answered) {
        // Before the acknowledge, behind it, or not at all.
        const std::string_view answer = std::array{"k\x06", "\x06k", "\x06"}[answered % 3];
        EXPECT_EQ(write(master, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
        keys += answer.size() - 1;
      }
    }
  });
  std::size_t acknowledged = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const Reply reply = exchange.SendString(command, Pending::Keep, Acknowledge::Wait);
    ASSERT_TRUE(reply.text.empty() || reply.text == "unknown 107") << i << reply.text;
    acknowledged += reply.text.empty() ? 1 : 0;
  }
  terminal.join();
  while (arrived < keys + count) loop.WaitForEvent();
  EXPECT_EQ(arrived, keys + count);
  EXPECT_GE(acknowledged, count / 3);
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

// On a busy machine the other end has not taken yet what the line should have carried.
TEST_F(BarePortTest, WhatHasLeftIsNotDiscarded) {
  int on = 1;
  ASSERT_EQ(ioctl(master, TIOCPKT, &on), 0);  // each packet says in front what was done
  port.Write("sent");
  WaitUntilSent();
  port.DiscardOutput();
  EXPECT_EQ(Sent(5), std::string(1, TIOCPKT_DATA) + "sent");
  port.Write("discarded");
  port.DiscardOutput();
  EXPECT_NE(Sent(1).front() & TIOCPKT_FLUSHWRITE, 0);
}

TEST_F(BarePortTest, PortThatIsOpenedAgainIsNotHeldAnyMore) {
  Hold();
  port.Write("lost");
  WaitUntilHeld();
  port.Close();
  ASSERT_EQ(port.Open(), PortOk);
  SetLine("19200,N,8,1");
  EXPECT_FALSE(port.Held());
  port.Write("new");
  EXPECT_EQ(Sent(3), "new");
}

TEST_F(BarePortTest, SerialDeviceIsSetAsTheOperatorChoseAndAskedToSend) {
  port.Close();
  driver.inPlace = true;
  Arrive("old");
  ASSERT_EQ(port.Open(), PortOk);
  constexpr tcflag_t kWatched = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CRTSCTS;
  const std::pair<const char*, tcflag_t> lines[] = {{"9600,N,8,1", CS8},
                                                    {"14400,S,7,2", CS7 | CSTOPB | PARENB | CMSPAR},
                                                    {"1200,O,8,1", CS8 | PARENB | PARODD},
                                                    {"19200,E,7,1", CS7 | PARENB}};
  for (const auto& [line, flags] : lines) {
    SetLine(line);
    EXPECT_EQ(driver.settings.c_cflag & kWatched, flags) << line;
    EXPECT_EQ(driver.settings.c_ospeed, static_cast<speed_t>(std::atoi(line)));
    EXPECT_TRUE(std::exchange(driver.requestToSend, false));
    // With RTS/CTS the driver moves the line by itself.
    SetLine(line, Handshaking::RtsCts);
    EXPECT_EQ(driver.settings.c_cflag & kWatched, flags | CRTSCTS) << line;
    EXPECT_EQ(driver.settings.c_iflag & (IXON | IXOFF), 0u);
    EXPECT_FALSE(driver.requestToSend);
  }
  Arrive("x");
  EXPECT_EQ(Received(1), "x") << "and nothing from before";
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

TEST_F(BarePortTest, DeviceThatGoesAwayIsNoticedBySettingItUp) {
  close(std::exchange(master, -1));
  EXPECT_EQ(port.SetUp("9600,N,8,1", Handshaking::XOnXOff), "Das Gerät ist verschwunden.");
  EXPECT_FALSE(port.IsOpen());
  while (lost == 0) loop.WaitForEvent();
  EXPECT_EQ(lost, 1);
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
  // The echo of a text that is on the line for longer than an adapter holds characters back.
  const std::string text(600, 'x');
  raised.clear();
  port.Write(text);
  Arrive("x");
  WaitUntilSent();
  Arrive(text.substr(1) + "k");
  while (raised.empty()) loop.WaitForEvent();
  EXPECT_EQ(raised, "k");
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
            "Einstellung fast,N,8,1: Das kann das Gerät nicht");
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

}  // namespace
}  // namespace kelvo
