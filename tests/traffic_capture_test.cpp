#include "link/traffic_capture.h"

#include <gtest/gtest.h>

#include <numeric>

#include "base/wire_text.h"
#include "link/traffic_words.h"

namespace kelvo {
namespace {

using namespace std::chrono_literals;
using Number = TrafficRecord::Number;

constexpr auto kOut = Direction::ToTerminal;
constexpr auto kIn = Direction::FromTerminal;

// What an operator reads of an entry.
std::string Read(const TrafficRecord& record, Number number) {
  return TrafficWords(record, number) + "|" + ResultWords(record, number) + "|" +
         DurationWords(record.At(number)) + "|" +
         std::to_string(static_cast<int>(KindOf(record, number))) +
         (IsFailure(record, number) ? "!" : "");
}
std::string ReadAll(const TrafficRecord& record) {
  std::string all;
  for (Number number = record.Begin(); number < record.End(); ++number) {
    all += ClockText(record.At(number).time) + ReadableText(record.Characters(number)) +
           Read(record, number) + "\n";
  }
  return all;
}
std::vector<Number> All(const TrafficRecord& record) {
  std::vector<Number> numbers(record.End() - record.Begin());
  std::iota(numbers.begin(), numbers.end(), record.Begin());
  return numbers;
}

// One of each that can happen.
class TrafficCaptureTest : public testing::Test {
 protected:
  TrafficCaptureTest() {
    const std::string macro = "\033EWM7," + std::string(50, 'x') + "\x03";
    Ask(macro, "\x06", ReplyKind::Answered, 12ms);
    Ask("\x1b?A\x1b?V", "2.1;", ReplyKind::Answered, 30240us);
    Ask("\x1b?V", "", ReplyKind::Silent, 500ms);
    Ask("\033EDM5;", "\x15", ReplyKind::Refused, 7ms);
    Ask("\x1bGC", "", ReplyKind::Silent, 100ms);
    record.Append(now += 1s, kIn, std::string(40, 'k'));  // a key, long afterwards
    record.Append(now += 1s, kOut, "\x1b?P");
    record.Append(now += 50ms, kIn, "25");
    record.Mark(record.Append(now += 50ms, kIn, "5;"), ReplyKind::Answered, 100ms);
    record.Append(now += 50ms, kIn, "x");
    record.Mark(record.Append(now += 50ms, kOut, {}), ReplyKind::PortClosed, 0ms);
  }
  void Ask(const std::string& sent, const std::string& received, ReplyKind kind,
           std::chrono::nanoseconds took) {
    const Number question = record.Append(now += 1s, kOut, sent);
    if (received.empty()) return record.Mark(question, kind, took);
    const Number answer = record.Append(now += 10ms, kIn, received);
    record.Join(answer, question);
    record.Mark(answer, kind, took);
  }
  WallTime now{1'795'000'000'123ms};
  TrafficRecord record;
};

TEST_F(TrafficCaptureTest, EachEntryIsSaidInWordsWithWhatCameOfIt) {
  const char* const expected[] = {"Makro 7 schreiben, 50 Zeichen|||1",
                                  "↳ Makro 7 schreiben, 50 Zeichen|angenommen|12,0 ms|1",
                                  "Adresse abfragen; Version abfragen|||0",
                                  "↳ Version abfragen|beantwortet|30,2 ms|0",
                                  "Version abfragen|keine Antwort|500,0 ms|0!",
                                  "Makro 5 löschen|||1",
                                  "↳ Makro 5 löschen|abgelehnt (NAK)|7,0 ms|1!",
                                  "Display löschen|nichts empfangen|100,0 ms|2",
                                  "unverlangt empfangen „kkkkkkkkkkkkkkkkkkkkkkkkkkkkkk…“|||3",
                                  "Eingänge P1 abfragen|||0",
                                  "↳ Eingänge P1 abfragen|||0",
                                  "↳ Eingänge P1 abfragen|beantwortet|100,0 ms|0",
                                  "unverlangt empfangen „x“|||3",
                                  "nichts gesendet: kein Anschluss war offen|nicht gesendet||2!"};
  ASSERT_EQ(record.End(), std::size(expected));
  for (Number number = 0; number < record.End(); ++number) {
    EXPECT_EQ(Read(record, number), expected[number]);
  }
  EXPECT_EQ(LastFailure(record), 13u);
  EXPECT_EQ(LastFailure(TrafficRecord()), std::nullopt);
}

TEST_F(TrafficCaptureTest, SavedTextIsReadBackLikeTheLiveTraffic) {
  record.Append(now += 1ms, kIn, std::string("\0\t\n\r\xff", 5));
  const std::string lines = CaptureLines(record, All(record));
  Capture read = ReadCapture(std::string(kCaptureHead) + "\r\n" + lines);
  EXPECT_EQ(read.notUnderstood, 0u);
  EXPECT_EQ(ReadAll(read.record), ReadAll(record));
  EXPECT_EQ(CaptureLines(read.record, All(read.record)), lines);
  // Without the last question its answer belongs to nothing that is there.
  const std::vector<Number> some{0, 1, 3, 11};
  read = ReadCapture(CaptureLines(record, some));
  EXPECT_EQ(Read(read.record, 1), Read(record, 1));
  EXPECT_EQ(DurationWords(read.record.At(2)), "30,2 ms");
  // From a machine whose clock goes behind, the same moment was later.
  const auto inZone = [&](const char* zone) {
    return ReadCapture(std::string(lines).replace(24, 5, zone)).record.At(0).time;
  };
  EXPECT_EQ(inZone("-0130") - inZone("+0200"), 3h + 30min);
}

TEST_F(TrafficCaptureTest, WhatIsNoCaptureIsNotUnderstood) {
  const std::string good = CaptureLines(record, std::vector<Number>{1});
  EXPECT_EQ(ReadCapture(good + "\n\n").record.End(), 1u);
  const std::pair<const char*, const char*> faults[] = {
      {":", "x"},    {"→", "-"},     {"06", "0"},           {"06", "0x"},
      {"06", "06 "}, {"12,0", "12"}, {"12,0 ms", "12,0 s"}, {"angenommen", "vielleicht"},
      {"-", "-99"}};
  for (const auto& [what, instead] : faults) {
    std::string bad = good;
    bad.replace(bad.find(what, what == std::string("06") ? bad.find("PC") : 0),
                std::string(what).size(), instead);
    EXPECT_EQ(ReadCapture(bad).notUnderstood, 1u) << bad;
  }
  for (std::size_t length = 1; length < good.find("angenommen"); ++length) {
    const Capture cut = ReadCapture(good.substr(0, length));
    EXPECT_LE(cut.record.End() + cut.notUnderstood, 1u);
  }
}

}  // namespace
}  // namespace kelvo
