#include <gtest/gtest.h>

#include <random>

#include "link/traffic_capture.h"
#include "simulator/recorder.h"
#include "simulator/replay.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/test_fonts.h"

namespace kelvo::sim {
namespace {

using namespace std::chrono_literals;

const std::string Esc = "\x1B";

/// Terminals on a line in a time that the test advances.
struct World {
  explicit World(int baud = 19200, Fault fault = Fault::None) {
    for (const int address : {0, 3}) {
      bus.Add({.address = address, .fault = fault, .baud = baud}, TestFonts())->PowerOn(now);
    }
    line.SetHostFraming({.baud = baud});
    for (const char byte : Esc + "!A0;") bus.Receive(static_cast<unsigned char>(byte), {}, now);
  }
  Time now = 1s;
  Bus bus;
  Line line{bus};
};

/// A host that records what it says and hears.
class Conversation : public World {
 public:
  explicit Conversation(int baud = 19200, Fault fault = Fault::None) : World(baud, fault) {}

  void Say(const std::string& text, Time wait) {
    recorder_->Add(Direction::ToTerminal, text, now);
    line.FromHost(text, now);
    Pass(wait);
  }
  void Pass(Time span) {
    const Time end = now + span;
    while (now < end) {
      now = std::min(end, line.NextEvent().value_or(end));
      recorder_->Add(Direction::FromTerminal, line.Advance(now), now);
      recorder_->Advance(now);
    }
  }
  /// Until nothing more comes.
  void Listen() {
    do Pass(100ms);
    while (line.NextEvent());
  }
  void Press(const std::string& keys) {
    for (const char key : keys) bus.At(0).Type(static_cast<unsigned char>(key), now);
  }
  std::string Capture() {
    recorder_.reset();
    return testing_world::ReadFile(folder_.Path("capture.txt"));
  }

 private:
  testing_world::TemporaryFolder folder_;
  std::optional<Recorder> recorder_{std::in_place, folder_.Path("capture.txt"), now};
};

// Everyday work: queries, acknowledged commands, plain ones, a selection, a slow erasure.
void Work(Conversation& host) {
  host.Say(Esc + "!A0;", 20ms);
  host.Say(Esc + "?V", 60ms);
  host.Say(Esc + "GC" + Esc + "GP10,10;" + std::string(400, 'x'), 300ms);
  host.Say(Esc + "EWM7,abc" + Esc + "?P\x03", 60ms);
  host.Say(Esc + "?A" + Esc + "?P", 60ms);
  host.Say(Esc + "EE", 7s);
  host.Say(Esc + "EPM7;" + Esc + "??", 200ms);
  host.Say(Esc + "!A3;", 1ms);
  host.Say(Esc + "?A", 100ms);
  host.Say(Esc + "E?F", 100ms);
}

ReplayPlan Plan(const std::string& capture) {
  ReplayPlan plan;
  EXPECT_EQ(ReadReplay(capture, plan), std::nullopt);
  return plan;
}

// Played in steps of time of the caller's choice, or from event to event.
ReplayReport Play(const std::string& capture, World&& world, Time step = Time::zero()) {
  Replay replay(Plan(capture), world.bus, world.line, world.now);
  for (Time now = world.now; !replay.Done();) {
    now = step > Time::zero() ? now + step : *replay.NextEvent();
    replay.Advance(now);
  }
  return replay.Report();
}

TEST(SimulatorReplay, WhatWasRecordedIsAnsweredAgainInAnyPaceOfTime) {
  Conversation host;
  Work(host);
  const std::string capture = host.Capture();
  for (const Time step : {Time(0), Time(1ms), Time(333ms)}) {
    const ReplayReport report = Play(capture, World(), step);
    EXPECT_EQ(ReplayText(report), "Antworten: 7, davon verschieden: 0\n");
  }
  // At another rate everything comes later, and is still the same.
  EXPECT_TRUE(Play(capture, World(1200)).differences.empty());
  EXPECT_FALSE(Play(capture, World(19200, Fault::Nak)).differences.empty());
  // The program shows it with a result at each answer.
  const Capture read = ReadCapture(capture);
  EXPECT_EQ(read.notUnderstood, 0u);
  std::size_t answered = 0;
  for (auto at = read.record.Begin(); at < read.record.End(); ++at) {
    answered += read.record.At(at).result == ReplyKind::Answered ? 1 : 0;
  }
  EXPECT_EQ(answered, 7u);
}

TEST(SimulatorReplay, EachWrongByteOfAnAnswerIsNamedWithItsLine) {
  Conversation host;
  Work(host);
  const std::string capture = host.Capture();
  int flipped = 0;
  EachCaptureLine(capture, [&](std::string_view text, std::size_t number) {
    CaptureLine line = *ReadCaptureLine(text);
    const auto at = static_cast<std::size_t>(text.data() - capture.data());
    for (char& byte : line.characters) {
      if (line.direction == Direction::ToTerminal) continue;
      byte ^= 1;
      const std::string wrong =
          std::string(capture).replace(at, text.size() + 1, CaptureLineText(line));
      const ReplayReport report = Play(wrong, World());
      ASSERT_EQ(report.differences.size(), 1u) << number;
      EXPECT_EQ(report.differences[0].line, number);
      EXPECT_EQ(report.differences[0].recorded, line.characters);
      byte ^= 1;
      ++flipped;
    }
  });
  EXPECT_GT(flipped, 60);
}

TEST(SimulatorReplay, WhatCameUnaskedIsCountedAndNoDifference) {
  Conversation host;
  host.Pass(100ms);
  host.Press("a");
  host.Pass(100ms);
  host.Say(Esc + "GC", 100ms);
  host.Press("bc");
  host.Pass(100ms);
  host.Say(Esc + "?V", 5ms);
  host.Press("d");  // stands in the answer's line
  host.Pass(200ms);
  host.Press("2");
  host.Pass(100ms);
  host.Say(Esc + "?V", 100ms);
  const ReplayReport report = Play(host.Capture(), World());
  EXPECT_EQ(ReplayText(report),
            "Antworten: 2, davon verschieden: 0\nUnverlangt aufgezeichnete Zeichen, die nicht "
            "verglichen wurden: 5 (Zeilen 2, 4, 6, 7)\n");
}

TEST(SimulatorReplay, AnswersThatComeBehindTheNextTextBelongToTheirOwn) {
  // Half a second late, when the next question is long asked.
  Conversation host(19200, Fault::Late);
  for (int i = 0; i < 4; ++i) host.Say(Esc + (i % 2 == 0 ? "?V" : "?A"), 500ms);
  host.Pass(1s);
  EXPECT_EQ(ReplayText(Play(host.Capture(), World(19200, Fault::Late))),
            "Antworten: 3, davon verschieden: 0\n");  // the last two came to the same text
}

// In whatever haste, with faults, an echo, another rate and keys that are pressed. Only where two
// Terminals send at once it is a matter of less than the milliseconds that a capture knows.
TEST(SimulatorReplay, AnyConversationPlaysAgain) {
  const std::string texts[] = {"?V", "?A",           "?P",    "E?F",   "??",        "GC",
                               "C?", "EWM1,abc\x03", "ECM1;", "EDM1;", "GTabc\x04", "R"};
  const Fault faults[] = {Fault::None, Fault::Late, Fault::Slow, Fault::Nak, Fault::Silent};
  for (unsigned conversation = 0; conversation < 200; ++conversation) {
    std::mt19937 random(conversation);
    const auto any = [&random](std::size_t below) { return random() % below; };
    const int baud = any(2) == 0 ? 19200 : 1200;
    const Fault fault = faults[any(std::size(faults))];
    const bool echo = any(3) == 0;
    Conversation host(baud, fault);
    host.line.SetEcho(echo);
    for (int i = 0; i < 40; ++i) {
      if (any(10) == 0) {
        host.Listen();
        host.Pass(100ms);
        host.Press("k");
        host.Listen();
        host.Say(Esc + (any(2) == 0 ? "!A0;" : "!A3;"), 10ms);
      }
      const std::string more = any(4) == 0 ? Esc + texts[any(std::size(texts))] : "";
      host.Say(Esc + texts[any(std::size(texts))] + more,
               std::chrono::milliseconds(any(3) == 0 ? any(20) : any(800)));
    }
    host.Pass(3s);
    World world(baud, fault);
    world.line.SetEcho(echo);
    const std::string capture = host.Capture();
    const ReplayReport report = Play(capture, std::move(world));
    EXPECT_TRUE(report.differences.empty()) << conversation << '\n'
                                            << ReplayText(report) << capture;
  }
}

// Lines of a capture, half a second apart.
std::string Lines(std::initializer_list<CaptureLine> lines) {
  std::string text;
  WallTime time{1'795'000'000'000ms};
  for (CaptureLine line : lines) {
    line.time = time += 500ms;
    text += CaptureLineText(line);
  }
  return text;
}
CaptureLine Sent(const std::string& text, const char* result = "") {
  return {.direction = Direction::ToTerminal, .characters = Esc + text, .result = result};
}
CaptureLine Came(const std::string& text, const char* result = "beantwortet") {
  return {.direction = Direction::FromTerminal, .characters = text, .result = result};
}

TEST(SimulatorReplay, AnAnswerThatIsMissingHereOrThereIsADifference) {
  const struct {
    std::string capture;
    std::size_t line;
    std::string recorded;
    std::string replayed;
  } cases[] = {{Lines({Sent("?V", "keine Antwort"), Sent("?V"), Came("2.10F;")}), 1, "", "2.10F;"},
               {Lines({Sent("GC"), Came("2.1;")}), 2, "2.1;", ""},
               {Lines({Sent("!A9;" + Esc + "?V"), Came("2.10F;", "")}), 2, "2.10F;", ""},
               {Lines({Sent("?V"), Came("2.10F", ""), Came("X;")}), 3, "2.10FX;", "2.10F;"},
               {Lines({Sent("?V")}), 1, "", "2.10F;"}};
  for (const auto& one : cases) {
    const ReplayReport report = Play(one.capture, World());
    ASSERT_EQ(report.differences.size(), 1u) << one.capture;
    EXPECT_EQ(report.differences[0].line, one.line);
    EXPECT_EQ(report.differences[0].recorded, one.recorded);
    EXPECT_EQ(report.differences[0].replayed, one.replayed);
  }
  // Nobody can say what would have come when the line went away.
  const ReplayReport away =
      Play(Lines({Sent("?V", "Anschluss geschlossen"), Sent("?V"), Came("2.10F;")}), World());
  EXPECT_EQ(
      ReplayText(away),
      "Antworten: 1, davon verschieden: 0\nNicht verglichen, weil der Anschluss weg war: 1\n");
}

TEST(SimulatorReplay, WhatIsNoCaptureIsRefusedWithItsLine) {
  ReplayPlan plan;
  const std::string good = Lines({Sent("?V")});
  EXPECT_EQ(ReadReplay(good + "\nx\n", plan), "Zeile 3 ist keine Zeile einer Mitschrift");
  // Behind the characters, too: what was noted of them would be missing.
  const std::string two = Lines({Sent("?V"), Came("2.10F;")});
  for (const std::size_t missing : {1U, 9U, 12U}) {
    const auto reason = ReadReplay(two.substr(0, two.size() - missing), plan);
    EXPECT_EQ(reason, missing == 1 ? std::nullopt
                                   : std::optional<std::string>("Zeile 2 ist abgeschnitten"));
  }
  for (const auto& [year, reason] :
       {std::pair{"1970", ""}, {"0001", "Zeile 2 liegt mehr als 100 Jahre hinter der ersten"}}) {
    const std::string line = CaptureLineText({.characters = "x"});
    EXPECT_EQ(
        ReadReplay(year + line.substr(4) + "2026" + line.substr(4) + year + line.substr(4), plan)
            .value_or(""),
        reason);
  }
  EXPECT_EQ(ReadReplay("", plan), "darin ist nichts gesendet worden");
  EXPECT_EQ(ReadReplay(Lines({Came("x")}), plan), "darin ist nichts gesendet worden");
}

}  // namespace
}  // namespace kelvo::sim
