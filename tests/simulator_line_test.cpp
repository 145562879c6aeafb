#include <gtest/gtest.h>

#include <cmath>

#include "simulator/line.h"
#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

/// A host on a line, with a clock that goes from event to event.
class Wire {
 public:
  explicit Wire(const TerminalSetup& setup = {}) {
    Add(setup);
    line.SetHostFraming({19200, 1});
  }
  void Add(const TerminalSetup& setup) { bus.Add(setup, TestFonts())->PowerOn(now); }

  void Write(const std::string& bytes) { line.FromHost(bytes, now); }
  /// Goes to the next event and returns what arrives at the host with it; empty when all is quiet.
  std::string Next() {
    while (const auto next = line.NextEvent()) {
      now = std::max(now, *next);
      const std::string heard = line.Advance(now);
      if (!heard.empty()) return heard;
    }
    return {};
  }
  std::string Exchange(const std::string& bytes) {
    Write(bytes);
    std::string heard;
    for (std::string more = Next(); !more.empty(); more = Next()) heard += more;
    return heard;
  }

  /// Nanoseconds.
  double Since(Time start) const { return static_cast<double>((now - start).count()); }

  Time now = 5s;
  Bus bus;
  Line line{bus};
};

// Nanoseconds of so many characters of ten bits; the clock's own rounding is below one of them
// each.
constexpr double Characters(int count, int baud = 19200) { return count * 1e10 / baud; }

TEST(SimulatorLine, AnswersAfterTheLastCharacterAndTakesTimeItself) {
  for (const auto& [baud, stopBits] : {std::pair(1200, 1), {9600, 2}, {14400, 1}, {19200, 1}}) {
    Wire wire({.baud = baud});
    wire.line.SetHostFraming({baud, stopBits});
    const double longer = 3 * (stopBits - 1) * 1e9 / baud;  // of the three that go out
    for (const Time idle : {0s, 1s}) {
      const Time start = wire.now += idle;
      wire.Write(Esc + "?A");
      for (int i = 4; i <= 7; ++i) {
        EXPECT_EQ(wire.Next().size(), 1u);
        EXPECT_NEAR(wire.Since(start), Characters(i, baud) + longer, 10.0) << baud;
      }
      EXPECT_EQ(wire.Next(), "");
    }
  }
}

TEST(SimulatorLine, NoErrorAddsUp) {
  Wire wire;
  const Time start = wire.now;
  wire.Write(std::string(10'000, 'x'));
  // A caller who comes late each time shifts nothing.
  while (const auto next = wire.line.NextEvent()) wire.line.Advance(*next + 150us);
  EXPECT_EQ(wire.bus.At(0).LogCount(), 10'000u);
  wire.now = start + Time(std::llround(Characters(10'000))) - 50us;
  wire.Write(Esc + "?A");
  while (wire.Next() != ";") {
  }
  EXPECT_NEAR(wire.Since(start), Characters(10'007), 20'000.0);
}

TEST(SimulatorLine, EchoIsThereHalfACharacterEarly) {
  Wire wire;
  wire.line.SetEcho(true);
  const Time start = wire.now;
  wire.Write(Esc + "?A");
  EXPECT_EQ(wire.Next(), Esc);
  EXPECT_NEAR(wire.Since(start), Characters(1) / 2, 10.0);
  EXPECT_EQ(wire.Exchange(""), "?A?A0;");
}

TEST(SimulatorLine, WithoutPacingEverythingIsThereAtOnce) {
  Wire wire;
  wire.line.SetPaced(false);
  wire.Write(Esc + "?A");
  EXPECT_EQ(wire.line.Advance(wire.now), "?A0;");
}

TEST(SimulatorLine, AnotherRateGivesGarbage) {
  for (const auto& [host, terminal] : {std::pair(9600, 19200), {19200, 9600}, {1200, 19200}}) {
    Wire wire({.baud = terminal});
    wire.line.SetHostFraming({host, 1});
    EXPECT_EQ(wire.Exchange(Esc + "?A").find("?A0;"), std::string::npos);
    // What comes back is heard at the host's rate.
    wire.bus.At(0).Type('A', wire.now);
    EXPECT_NE(wire.Next(), "A") << host;
  }
  for (int byte = 0; byte < 256; ++byte) {
    const auto character = static_cast<unsigned char>(byte);
    EXPECT_EQ(Resampled(character, {19200}, {19200}), character);
    EXPECT_EQ(Resampled(character, {19200}, {18900}), character) << "as near as crystals are";
    EXPECT_EQ(Resampled(character, {0}, {19200}), character);
  }
}

// The host's bits and parity number, and whether "?V" is understood by a Terminal with 7 bits and
// even parity.
TEST(SimulatorLine, AnotherFrameGivesGarbage) {
  const std::pair<HostFraming, bool> cases[] = {
      {{19200, 1, 7, 3}, true},  {{19200, 2, 7, 3}, true},  {{19200, 1}, true},
      {{19200, 1, 8, 0}, false}, {{19200, 1, 7, 2}, false}, {{19200, 1, 8, 3}, false}};
  for (const auto& [host, understood] : cases) {
    Wire wire;
    wire.Exchange(Esc + "!B19200,3,7,1,0;" + Esc + "R");
    wire.line.SetHostFraming(host);
    EXPECT_EQ(wire.Exchange(Esc + "?V") == "2.10F;", understood) << host.bits << host.parity;
  }
  EXPECT_EQ(Resampled(0xE4, {19200, 7}, {19200, 7}), 0x64) << "there are only 7 bits";
  EXPECT_EQ(Resampled('A', {19200, 8, 0}, {19200, 7, 1}), 'A') << "no bit of it differs";
  // Who knows no parity sees its bit: of space, odd and even.
  for (const auto& [parity, seen] : {std::pair(1, 0), {2, 0x80}, {3, 0}}) {
    EXPECT_EQ(Resampled('A', {19200, 7, parity}, {19200, 8, 0}), 'A' | seen) << parity;
    EXPECT_EQ(Resampled('C', {19200, 7, parity}, {19200, 8, 0}), parity == 3 ? 'C' | 0x80 : 'C');
  }
}

TEST(SimulatorLine, TheHostCanGiveUpWhatHasNotLeft) {
  Wire wire;
  wire.Write("abcdef");
  wire.now += Time(std::llround(Characters(2))) + 10us;
  wire.line.Advance(wire.now);
  wire.line.DiscardFromHost(wire.now);
  EXPECT_EQ(wire.Exchange(Esc + "T?P"), "4,1;") << "two have arrived, one was on its way";
}

TEST(SimulatorLine, HostThatHeedsTheHandshakeLosesNothing) {
  struct Case {
    HostHandshake host;
    const char* terminal;
    bool kept;
  };
  const Case cases[] = {{HostHandshake::XonXoff, "0", true},
                        {HostHandshake::RtsCts, "1", true},
                        {HostHandshake::RtsCts, "0", false},
                        {HostHandshake::XonXoff, "1", false},
                        {HostHandshake::None, "0", false}};
  for (const bool paced : {true, false}) {
    for (const Case& c : cases) {
      Wire wire;
      wire.line.SetPaced(paced);
      wire.line.SetHostFraming({19200, 1, 0, 0, c.host});
      wire.Exchange(Esc + "!B19200,0,8,1," + c.terminal + ";" + Esc + "!S1024;" + Esc + "R");
      wire.Exchange(Esc + "EE" + std::string(3000, 'x') + Esc + "?A");
      EXPECT_EQ(wire.bus.At(0).LogCount() > 3000U, c.kept) << c.terminal << paced;
    }
  }
}

TEST(SimulatorLine, BothDirectionsClashOnOnePairOfWires) {
  Wire wire;
  wire.line.SetTurnAround(2ms);
  const Time start = wire.now;
  wire.Write(Esc + "?A");
  EXPECT_EQ(wire.Next(), "?");
  EXPECT_NEAR(wire.Since(start), Characters(4) + 2e6, 10.0);
  wire.Write(Esc);  // against the second character
  EXPECT_EQ(wire.Exchange(""), "\xBE" + std::string("0;")) << "it is wrong at the host";
  wire.now += 2ms;
  EXPECT_EQ(wire.Exchange("?A"), "") << "and ESC is at the Terminal";
  EXPECT_EQ(wire.Exchange(Esc + "?A"), "?A0;");
  wire.now += 1ms;
  EXPECT_EQ(wire.Exchange(Esc + "?A"), "") << "its driver is still on";
  EXPECT_EQ(wire.Exchange(Esc + "?A"), "?A0;");
}

TEST(SimulatorLine, AnEraseGoesOnWhileTheLineIsBusy) {
  Wire wire({.eepromBytes = 512});
  EXPECT_EQ(wire.Exchange(Esc + "Ee" + Esc + "?A"), "2\r1\r0\r" + Ack + "?A0;");
}

TEST(SimulatorBus, EachTerminalAnswersAtItsAddress) {
  Wire wire({.address = 1});
  wire.Add({.address = 2});
  wire.Add({.version = "3.5", .flash = false, .address = 2});
  EXPECT_EQ(wire.Exchange(Esc + "!A1;" + Esc + "?A"), "?A1;");
  EXPECT_EQ(wire.Exchange(Esc + "!A7;" + Esc + "?A"), "");
  const std::string collision = wire.Exchange(Esc + "!A2;" + Esc + "?A");
  // The second one begins a character later, and its end is heard alone.
  EXPECT_EQ(collision.size(), 5u);
  EXPECT_TRUE(collision.ends_with(";"));
  EXPECT_EQ(collision.find("A2"), std::string::npos) << "both answer at once";
  EXPECT_EQ(wire.Exchange(Esc + "!A255;" + Esc + "!P6;"), "");
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(wire.bus.At(i).P0(), 6);
}

}  // namespace
}  // namespace kelvo::sim
