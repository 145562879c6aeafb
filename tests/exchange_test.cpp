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
    EXPECT_EQ(reply.text, error);
    EXPECT_EQ(port.ReceiveThreshold(), 1);
  }
}

TEST_F(ExchangeTest, AcknowledgeTimeIsTheIntervalFromTheLastBitOn) {
  port.characterTime = milliseconds(8);  // 1200 baud
  tmrTimeout.SetInterval(milliseconds(500));
  const std::string text(125, 'x');  // one second on the line
  EXPECT_DOUBLE_EQ(Duration([&] { EXPECT_TRUE(Send(text)); }), 1000 + 500);
  EXPECT_EQ(reply.text, "keine Reaktion");
  // An answer just within the interval counts, though the command itself took far longer.
  terminal.Answer(text, "\x06", milliseconds(499));
  EXPECT_FALSE(Send(text));
}

TEST_F(ExchangeTest, WhatWaitedBeforeTheCommandIsNotTakenForItsAnswer) {
  port.Arrive("\x06");
  EXPECT_TRUE(Send("\033EWC"));
  EXPECT_EQ(reply.kind, ReplyKind::Silent);
  port.Arrive("7;");
  EXPECT_EQ(Query("?V"), "TimeOut");
}

// A bridge that takes no notice of the rate brings the answer while the command is still leaving.
TEST_F(ExchangeTest, AnswerCountsAsSoonAsItIsThere) {
  port.characterTime = milliseconds(1);
  port.unpaced = true;
  port.SetReceiveThreshold(1);
  port.SetReceiveHandler([this] { port.Input(); });
  for (const char* answer : {"\x06", "\x15", "x"}) {
    const std::string command = "\033EWM7," + std::string(1000, 'x') + answer + "\x03";
    terminal.Answer(command, answer, milliseconds(2));
    EXPECT_EQ(Send(command), *answer != '\x06');
    EXPECT_NE(reply.kind, ReplyKind::Silent);
    EXPECT_GT(port.OutBufferCount(), 900u);
  }
  terminal.Answer("\x1b?V", "2.1;", milliseconds(1));
  EXPECT_EQ(Query("?V"), "2.1");
}

TEST_F(ExchangeTest, EchoOfTheLineIsNoAnswerHoweverLateItComes) {
  port.characterTime = milliseconds(1);
  terminal.Answer("\033EWC", "\x06", milliseconds(450));
  terminal.Answer("\x1b?A", "?A5;", milliseconds(320));
  terminal.Answer("\x1b?V", "\x1b?V2.1;", milliseconds(320));  // repeats the query itself
  for (const int late : {0, 1, 40, 300}) {
    port.echo = milliseconds(late);
    EXPECT_FALSE(Send("\033EWC")) << late;
    Send("\x1b!A5;", Acknowledge::None);
    EXPECT_EQ(Query("?A"), "?A5") << late;
    EXPECT_EQ(Query("?V"), "2.1") << late;
  }
}

TEST_F(ExchangeTest, TerminalThatRepeatsAQueryIsUnderstoodOnALineWithoutEcho) {
  port.characterTime = milliseconds(1);
  terminal.Answer("\x1b?V", "\x1b?V2.1;", milliseconds(3));
  Send("\x1b!A5;", Acknowledge::None);  // its echo is expected and never comes
  exchange.WaitUntilSent();
  EXPECT_EQ(Query("?V"), "2.1");
}

TEST_F(ExchangeTest, LongTextGoesInPiecesEachAfterTheOneBeforeHasLeft) {
  port.characterTime = milliseconds(1);
  Send(std::string(12001, 'a'), Acknowledge::None);
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
  EXPECT_DOUBLE_EQ(Duration([&] { exchange.SendString("d", Pending::Discard); }), 0);
}

TEST_F(ExchangeTest, LeftOverTickSkipsTheWaitForEarlierText) {
  port.characterTime = milliseconds(100);
  Send(std::string(50, 'a'), Acknowledge::None);
  loop.RunFor(tmrTimeout.Interval());
  EXPECT_DOUBLE_EQ(Duration([&] { Send("b", Acknowledge::None); }), 0);
}

TEST_F(ExchangeTest, HeldLineEndsAsNoReactionAndGoesOnWhenItIsReleased) {
  port.held = true;
  port.characterTime = milliseconds(1);
  tmrTimeout.SetInterval(milliseconds(500));
  terminal.Answer("\033EWC", "\x06");
  EXPECT_LT(Duration([&] { EXPECT_TRUE(Send("\033EWC")); }), 10000);
  EXPECT_EQ(reply.text, "keine Reaktion");
  EXPECT_TRUE(exchange.LineHeld());
  port.held = false;
  EXPECT_FALSE(Send("\033EWC"));
  EXPECT_FALSE(exchange.LineHeld());
  // Released in the middle of a wait.
  port.held = true;
  loop.After(milliseconds(2000), [this] { port.held = false; });
  EXPECT_FALSE(Send("\033EWC"));
}

TEST_F(ExchangeTest, OperationWithATimeOfItsOwnLeavesTheUsualInterval) {
  EXPECT_NEAR(Duration([&] { exchange.SendString(EraseEEprom(), milliseconds(30000)); }), 30000, 1);
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
  Query("E?F");
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(500));
  exchange.SendQuery(AskFreeBytes(), milliseconds(10000));
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
}

TEST_F(ExchangeTest, QueryReplyLosesEchoAndEndMark) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x1b?A5;", "5"}, {"5;", "5"}, {"?A5;", "?A5"}, {";", ""}, {"x\x1b?A5;", "x\x1b?A5"}};
  for (const auto& [answer, expected] : cases) {
    terminal.Answer("\x1b?A", answer, milliseconds(3));
    EXPECT_EQ(Query("?A"), expected);
    EXPECT_EQ(reply.kind, ReplyKind::Answered);
  }
  EXPECT_EQ(port.writes.front(), "\x1b?A");
}

TEST_F(ExchangeTest, QueryWithoutCompleteReplyTimesOutAfterHalfASecond) {
  exchange.SetInterval(milliseconds(10000));
  terminal.Answer("\x1b?V", "2.1", milliseconds(1));
  const double duration = Duration([&] { EXPECT_EQ(Query("?V"), "TimeOut"); });
  EXPECT_GE(duration, 500);
  EXPECT_LE(duration, 520);  // and the pause of the bus, at most one interval
  EXPECT_EQ(reply.kind, ReplyKind::Unfinished);
  EXPECT_EQ(reply.received, "2.1");
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
  const double duration = Duration([&] { EXPECT_EQ(Collect(""), "xxx"); });
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
  EXPECT_EQ(Collect(""), "late answer");
}

TEST_F(ExchangeTest, SilentLineThatNeverFallsSilentCannotKeepTheTimeOutAway) {
  std::function<void()> flood = [&] {
    port.Arrive("z");
    loop.After(std::chrono::microseconds(10), flood);
  };
  flood();
  EXPECT_EQ(Collect(";"), "TimeOut");
}

TEST_F(ExchangeTest, ClosedPortIsNeverWrittenToNorWaitedFor) {
  port.Close();
  EXPECT_DOUBLE_EQ(Duration([&] {
                     Send("\x1bR", Acknowledge::None);
                     EXPECT_EQ(reply.kind, ReplyKind::PortClosed);
                     EXPECT_TRUE(Send("\033EWC"));
                     EXPECT_EQ(reply.text, "keine Reaktion");
                     EXPECT_EQ(reply.kind, ReplyKind::PortClosed);
                     EXPECT_EQ(Query("?V"), "TimeOut");
                     EXPECT_EQ(reply.kind, ReplyKind::PortClosed);
                     EXPECT_EQ(Collect(""), "");
                   }),
                   0);
}

TEST_F(ExchangeTest, EveryWaitEndsWhenTheDeviceGoesAwayOrTheProgramCloses) {
  const std::function<void()> waits[] = {
      [&] { Send("\033EWC"); },
      [&] { Query("?V"); },
      [&] { Collect(""); },
      [&] { exchange.WaitRS485(); },
  };
  for (const auto& wait : waits) {
    reply.kind = ReplyKind::PortClosed;
    loop.After(milliseconds(5), [&] { port.Lose(); });
    EXPECT_DOUBLE_EQ(Duration(wait), 5);
    port.Open();
    loop.After(milliseconds(5), [&] { loop.closing = true; });
    EXPECT_DOUBLE_EQ(Duration(wait), 5);
    loop.closing = false;
    EXPECT_EQ(reply.kind, ReplyKind::PortClosed);
  }
}

TEST_F(ExchangeTest, ExchangeStartedDuringAWaitRunsFirstAndTheOuterOneStillEnds) {
  terminal.Answer("\x1b?V", "2.1;", milliseconds(5));
  std::string inner;
  loop.After(milliseconds(10), [&] { inner = Query("?V"); });
  EXPECT_TRUE(Send("\033EWC"));
  EXPECT_EQ(inner, "2.1");
  EXPECT_EQ(reply.text, "keine Reaktion");

  loop.After(milliseconds(10), [&] { inner = Query("?V"); });
  EXPECT_EQ(Collect(";"), "TimeOut");
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
