#include "link/traffic_record.h"

#include <gtest/gtest.h>

#include "link/line_watch.h"
#include "tests/fakes/exchange_world.h"

namespace kelvo {
namespace {

using namespace std::chrono_literals;
using testing_world::milliseconds;
using testing_world::nanoseconds;

constexpr auto kOut = Direction::ToTerminal;
constexpr auto kIn = Direction::FromTerminal;

WallTime At(nanoseconds time) { return WallTime(std::chrono::duration_cast<milliseconds>(time)); }

// The traffic of a real exchange, in virtual time.
class TrafficRecordTest : public testing::Test, public testing_world::ExchangeWorld {
 protected:
  TrafficRecordTest() { RecordTraffic(watch, loop, record); }
  // "characters:result:milliseconds" of the newest entry with a result, and of its question.
  std::string Result() const {
    auto number = record.End() - 1;
    while (record.At(number).result == ReplyKind::Sent) --number;
    const auto& entry = record.At(number);
    std::string text = record.Characters(number) + ':' +
                       std::to_string(static_cast<int>(entry.result)) + ':' +
                       std::to_string((entry.took.count() + 500) / 1000);
    if (const auto sent = record.Sent(number)) text = record.Characters(*sent) + '|' + text;
    return text;
  }
  LineWatch watch{com1, exchange};
  TrafficRecord record;
};

TEST_F(TrafficRecordTest, JoinsAnAnswerWithItsQuestionAndTheTimeItTook) {
  terminal.Answer("?V", "2.1;", milliseconds(30));
  Query("?V");
  EXPECT_EQ(Result(), "\x1b?V|2.1;:1:30");
  Send("?V", Acknowledge::None);
  Collect("");  // listens on for 100 ms, whatever comes
  EXPECT_EQ(Result(), "?V|2.1;:1:30");
  // Another question is asked while this one waits: each gets its own answer.
  terminal.Answer("?P", "255;", milliseconds(200));
  loop.After(milliseconds(20), [this] { Query("?V"); });
  Query("?P");
  EXPECT_EQ(Result(), "\x1b?P|255;:1:200");
  Query("?A");
  EXPECT_EQ(Result(), "\x1b?A:2:500");
  terminal.Answer("EDM", "\x15", milliseconds(7));
  Send(
      "\x1b"
      "EDM5;");
  EXPECT_EQ(Result(),
            "\x1b"
            "EDM5;|\x15:4:7");
}

TEST_F(TrafficRecordTest, WhatWasNotSentAnyMoreIsNotTakenForWhatWasAskedBefore) {
  terminal.Answer("?V", "2.1;");
  Query("?V");
  com1.Close();
  Query("?V");
  EXPECT_EQ(Result(), ":6:0");
  EXPECT_EQ(record.At(0).result, ReplyKind::Sent);
}

TEST_F(TrafficRecordTest, ALongTextIsOneEntryAndSoIsWhatComesTogether) {
  const std::string text(12'001, 'x');
  Send(text, Acknowledge::None);
  Send(text.substr(0, 5000), Acknowledge::None);
  EXPECT_EQ(record.Characters(0), text);
  ASSERT_EQ(record.End(), 2u);
  const auto base = At(loop.Now());
  for (const auto later : {5ms, 30ms, 69ms, 110ms}) record.Add(base + later, kIn, "k");
  EXPECT_EQ(record.Characters(2), "kkk");
  EXPECT_EQ(record.Characters(3), "k");
  record.Add(base, kIn, "k");  // the clock was set back
  record.Add(base, kIn, "");
  EXPECT_EQ(record.End(), 5u);
}

// 24 hours at 19200 baud, and the line that makes most entries of its characters.
TEST_F(TrafficRecordTest, KeepsTheLastHundredThousandCharactersInBoundedMemory) {
  constexpr std::size_t kKept = 100'000;
  std::size_t most = 0;
  WallTime now{};
  const std::string second(1920, 'x');
  for (int i = 0; i < 24 * 60 * 60; ++i) {
    record.Add(now += 1s, i % 2 == 0 ? kOut : kIn, second);
    most = std::max(most, record.Bytes());
  }
  EXPECT_GT(record.Bytes(), kKept);
  for (int i = 0; i < 300'000; ++i) {
    record.Add(now += 1ms, i % 2 == 0 ? kOut : kIn, "x");
    most = std::max(most, record.Bytes());
    ASSERT_TRUE(i < 200'000 || record.End() - record.Begin() >= kKept);
  }
  EXPECT_LE(most, TrafficRecord::kUsualLimit);
  EXPECT_EQ(record.Characters(record.Begin()), "x");
  record.Add(now, kOut, std::string(3'000'000, 'y'));  // a drawing with many pictures
  EXPECT_LE(record.Bytes(), TrafficRecord::kUsualLimit);
}

}  // namespace
}  // namespace kelvo
