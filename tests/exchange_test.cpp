#include <gtest/gtest.h>

#include "tests/fakes/exchange_world.h"

namespace kelvo {
namespace {

using testing_world::ExchangeWorld;
using testing_world::milliseconds;

class ExchangeTest : public testing::Test, protected ExchangeWorld {};

TEST_F(ExchangeTest, AnswerToAnAcknowledgedCommandIsClassified) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x06", ""},        {"\x15", "EEPROM"},      {"", "keine Reaktion"},
      {"A", "unknown 65"}, {"\xFF", "unknown 255"}, {"\x06\x06", ""}};
  for (const auto& [answer, error] : cases) {
    terminal.Answer("\033EDC", answer, milliseconds(30));
    EXPECT_EQ(Send("\033EDC"), !error.empty()) << error;
    EXPECT_EQ(exchange.CommandBuffer, error);
    EXPECT_EQ(port.ReceiveThreshold(), 1);
    port.DiscardInput();
  }
}

TEST_F(ExchangeTest, AcknowledgeTimeIsTheIntervalFromTheLastBitOn) {
  port.characterTime = milliseconds(8);  // 1200 baud
  tmrTimeout.SetInterval(milliseconds(500));
  const std::string text(125, 'x');  // one second on the line
  EXPECT_DOUBLE_EQ(Duration([&] { EXPECT_TRUE(Send(text)); }), 1000 + 500);
  EXPECT_EQ(exchange.CommandBuffer, "keine Reaktion");
  // An answer just within the interval counts, though the command itself took far longer.
  terminal.Answer(text, "\x06", milliseconds(499));
  EXPECT_FALSE(Send(text));
}

TEST_F(ExchangeTest, WhatArrivesWhileTheCommandLeavesIsNotTakenForTheAnswer) {
  port.characterTime = milliseconds(1);
  port.ArriveAfter(milliseconds(2), "echo");
  terminal.Answer("\033EWC", "\x06", milliseconds(10));
  EXPECT_FALSE(Send("\033EWC"));
}

TEST_F(ExchangeTest, LongTextGoesInPiecesEachAfterTheOneBeforeHasLeft) {
  port.characterTime = milliseconds(1);
  std::string text(12001, 'a');
  exchange.SendString(text, Pending::Keep, Acknowledge::None);
  ASSERT_EQ(port.writes.size(), 3u);
  EXPECT_EQ(port.writes[0].size(), 5000u);
  EXPECT_EQ(port.writes[1].size(), 5000u);
  EXPECT_EQ(port.writes[2].size(), 2001u);
  EXPECT_EQ(port.writeTimes[1] - port.writeTimes[0], milliseconds(5000));
  EXPECT_EQ(port.writeTimes[2] - port.writeTimes[1], milliseconds(5000));
}

TEST_F(ExchangeTest, PlainSendWaitsForEarlierTextUnlessItIsDiscarded) {
  port.characterTime = milliseconds(1);
  Send(std::string(100, 'a'), Acknowledge::None);
  EXPECT_DOUBLE_EQ(Duration([&] { Send("b", Acknowledge::None); }), 100);
  Send(std::string(100, 'c'), Acknowledge::None);
  std::string text = "d";
  EXPECT_DOUBLE_EQ(
      Duration([&] { exchange.SendString(text, Pending::Discard, Acknowledge::None); }), 0);
  EXPECT_EQ(text, "d");
}

TEST_F(ExchangeTest, LeftOverTickSkipsTheWaitForEarlierText) {
  port.characterTime = milliseconds(100);
  Send(std::string(50, 'a'), Acknowledge::None);
  loop.RunFor(tmrTimeout.Interval());
  EXPECT_DOUBLE_EQ(Duration([&] { Send("b", Acknowledge::None); }), 0);
}

TEST_F(ExchangeTest, HeldHandshakeEndsAsNoReactionInsteadOfFreezing) {
  port.held = true;
  port.characterTime = milliseconds(1);
  tmrTimeout.SetInterval(milliseconds(500));
  EXPECT_LT(Duration([&] { EXPECT_TRUE(Send("\033EWC")); }), 10000);
  EXPECT_EQ(exchange.CommandBuffer, "keine Reaktion");
}

TEST_F(ExchangeTest, QueryReplyLosesEchoAndEndMark) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x1b?A5;", "5"}, {"5;", "5"}, {"?A5;", "?A5"}, {";", ""}, {"x\x1b?A5;", "x\x1b?A5"}};
  for (const auto& [answer, reply] : cases) {
    terminal.Answer("\x1b?A", answer, milliseconds(3));
    EXPECT_EQ(Query("?A"), reply);
    EXPECT_EQ(exchange.LastStatus, 0);
  }
  EXPECT_EQ(port.writes.front(), "\x1b?A");
}

TEST_F(ExchangeTest, QueryWithoutCompleteReplyTimesOutAfterHalfASecond) {
  exchange.SetReplyTimeout(milliseconds(10000));
  terminal.Answer("\x1b?V", "2.1", milliseconds(1));
  const double duration = Duration([&] { EXPECT_EQ(Query("?V"), "TimeOut"); });
  EXPECT_GE(duration, 500);
  EXPECT_LE(duration, 520);  // and the pause of the bus, at most one interval
  EXPECT_EQ(exchange.LastStatus, -1);
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(500));
  EXPECT_EQ(port.ReceiveThreshold(), 1);
}

TEST_F(ExchangeTest, QueryTimeDoesNotRunWhileTheQueryIsOnTheLine) {
  port.characterTime = milliseconds(200);
  terminal.Answer("\x1b?V", "2.1;", milliseconds(450));
  EXPECT_EQ(Query("?V"), "2.1");
}

TEST_F(ExchangeTest, CollectionByTimeTakesWhatComesIn100Milliseconds) {
  for (int ms : {10, 60, 99, 130}) port.ArriveAfter(milliseconds(ms), "x");
  tmrTimeout.SetInterval(milliseconds(1000));
  std::string reply;
  const double duration = Duration([&] { EXPECT_FALSE(exchange.WaitAnswer(reply, "")); });
  EXPECT_EQ(reply, "xxx");
  EXPECT_GE(duration, 100);
  EXPECT_LE(duration, 120);
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
  EXPECT_FALSE(tmrTimeout.Enabled());
}

TEST_F(ExchangeTest, CollectionByTimeDoesNotStartBeforeTheCommandHasLeft) {
  port.characterTime = milliseconds(10);
  const std::string command(50, 'c');
  terminal.Answer(command, "late answer", milliseconds(20));
  Send(command, Acknowledge::None);
  std::string reply;
  exchange.WaitAnswer(reply, "");
  EXPECT_EQ(reply, "late answer");
}

TEST_F(ExchangeTest, SilentLineThatNeverFallsSilentCannotKeepTheTimeOutAway) {
  std::function<void()> flood = [&] {
    port.Arrive("z");
    loop.After(std::chrono::microseconds(10), flood);
  };
  flood();
  std::string reply;
  EXPECT_TRUE(exchange.WaitAnswer(reply, ";"));
  EXPECT_EQ(reply, "TimeOut");
}

TEST_F(ExchangeTest, ClosedPortIsNeverWrittenToNorWaitedFor) {
  port.Close();
  EXPECT_DOUBLE_EQ(Duration([&] {
                     EXPECT_FALSE(Send("\x1bR", Acknowledge::None));
                     EXPECT_TRUE(Send("\033EWC"));
                     EXPECT_EQ(exchange.CommandBuffer, "keine Reaktion");
                     EXPECT_EQ(Query("?V"), "TimeOut");
                     EXPECT_EQ(exchange.LastStatus, -1);
                     std::string reply = "old";
                     EXPECT_FALSE(exchange.WaitAnswer(reply, ""));
                     EXPECT_EQ(reply, "");
                   }),
                   0);
}

TEST_F(ExchangeTest, EveryWaitEndsWhenTheDeviceGoesAwayOrTheProgramCloses) {
  std::string reply;
  const std::function<void()> waits[] = {
      [&] { Send("\033EWC"); },
      [&] { Query("?V"); },
      [&] { exchange.WaitAnswer(reply, ""); },
      [&] { exchange.WaitRS485(); },
  };
  for (const auto& wait : waits) {
    loop.After(milliseconds(5), [&] { port.Lose(); });
    EXPECT_DOUBLE_EQ(Duration(wait), 5);
    port.Open();
    loop.After(milliseconds(5), [&] { loop.closing = true; });
    EXPECT_DOUBLE_EQ(Duration(wait), 5);
    loop.closing = false;
  }
}

TEST_F(ExchangeTest, ExchangeStartedDuringAWaitRunsFirstAndTheOuterOneStillEnds) {
  terminal.Answer("\x1b?V", "2.1;", milliseconds(5));
  std::string inner;
  loop.After(milliseconds(10), [&] { inner = Query("?V"); });
  EXPECT_TRUE(Send("\033EWC"));
  EXPECT_EQ(inner, "2.1");
  EXPECT_EQ(exchange.CommandBuffer, "keine Reaktion");

  std::string outer;
  loop.After(milliseconds(10), [&] { inner = Query("?V"); });
  EXPECT_TRUE(exchange.WaitAnswer(outer, ";"));
  EXPECT_EQ(outer, "TimeOut");
}

TEST_F(ExchangeTest, ListenerHearsOfTheOutermostExchangeOnly) {
  std::vector<std::string> heard;
  exchange.SetActivityListener([&](std::string_view text) { heard.emplace_back(text); });
  terminal.Answer("\x1b?V", "2.1;");
  Query("?V");
  EXPECT_EQ(heard, (std::vector<std::string>{"\x1b?V", ""}));
}

TEST(StringSumTest, WrapsIntoTheSigned16BitRange) {
  EXPECT_EQ(StringSum(""), 0);
  EXPECT_EQ(StringSum("AB"), 131);
  EXPECT_EQ(StringSum(std::string(129, '\xFF')), -32641);
  EXPECT_EQ(StringSum(std::string(128, '\xFF') + '\x7F'), 32767);
  EXPECT_EQ(StringSum(std::string(257, '\xFF') + '\x01'), 0);
}

}  // namespace
}  // namespace kelvo
