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
  // Each text begins the interval anew.
  for (const int passed : {1900, 2000}) {
    loop.RunFor(milliseconds(700));
    Send(std::string(50, 'a'), Acknowledge::None);
    loop.RunFor(milliseconds(passed));
    EXPECT_DOUBLE_EQ(Duration([&] { Send("b", Acknowledge::None); }), passed < 2000 ? 3100 : 0);
    exchange.WaitUntilSent();
  }
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
    EXPECT_FALSE(tmrTimeout.Enabled());
  }
  EXPECT_EQ(port.writes.front(), "\x1b?A");
}

TEST_F(ExchangeTest, QueryWithoutCompleteReplyTimesOutAfterHalfASecond) {
  exchange.SetInterval(milliseconds(10000));
  terminal.Answer("\x1b?V", "2.1", milliseconds(1));
  // And the pause of the bus, up to the next of its ticks.
  EXPECT_DOUBLE_EQ(Duration([&] { EXPECT_EQ(Query("?V"), "TimeOut"); }), 520);
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

// An acknowledge that comes too late, while the next command waits for its own.
TEST_F(ExchangeTest, OverdueAcknowledgeIsNotTakenForTheNextOne) {
  tmrTimeout.SetInterval(milliseconds(500));
  for (const bool refused : {true, false}) {
    terminal.Answer("\033EWM1,a\x03", "\x06", milliseconds(520));
    terminal.Answer("\033EWM2,b\x03", refused ? "\x15" : "\x06", milliseconds(60));
    EXPECT_TRUE(Send("\033EWM1,a\x03"));
    EXPECT_EQ(Send("\033EWM2,b\x03"), refused);
    EXPECT_FALSE(refused && reply.kind != ReplyKind::Refused);
    // It is in front of a reply as well.
    EXPECT_TRUE(Send("\033EWM1,a\x03"));
    terminal.Answer("\033E?F", "800;", milliseconds(40));
    EXPECT_EQ(Query("E?F"), "800");
    // The next one is not delayed any more.
    EXPECT_LT(Duration([&] { EXPECT_EQ(Send("\033EWM2,b\x03"), refused); }), 70);
  }
}

TEST_F(ExchangeTest, RepliesThatComeTooLateDoNotShiftToTheNextQuestion) {
  const char* const queries[] = {"T?F", "T?A", "T?M", "T?Z", "?C", "?c", "?A"};
  for (const int late : {501, 510, 520, 700, 990}) {
    for (const char* query : queries) {
      terminal.Answer("\x1b" + std::string(query), query + std::string(";"), milliseconds(late));
      Query(query);
      EXPECT_TRUE(reply.text == "TimeOut" || reply.text == query) << late << ' ' << reply.text;
    }
    loop.RunFor(milliseconds(6000));
    port.DiscardInput();
  }
}

TEST_F(ExchangeTest, ATerminalThatHasMissedAQuestionIsUnderstoodAfterwards) {
  EXPECT_EQ(Query("?V"), "TimeOut");
  terminal.Answer("\x1b?V", "2.1;", milliseconds(5));
  EXPECT_EQ(Query("?V"), "2.1");
  EXPECT_LT(Duration([&] { EXPECT_EQ(Query("?V"), "2.1"); }), 40);
  // A reply is no acknowledge.
  terminal.Answer("\x1b?V", "2.1;", milliseconds(540));
  terminal.Answer("\033EWC", "\x06", milliseconds(60));
  EXPECT_EQ(Query("?V"), "TimeOut");
  EXPECT_FALSE(Send("\033EWC"));
  // But a key is one that says nothing, always.
  EXPECT_EQ(Query("?V"), "TimeOut");
  loop.RunFor(milliseconds(1000));
  terminal.Answer("\033EWC", "k", milliseconds(5));
  EXPECT_TRUE(Send("\033EWC"));
  EXPECT_EQ(reply.text, "unknown 107");
  // Silence takes no longer than ever, nor does a Terminal that is selected anew.
  terminal.Answer("\x1b?V", "");
  EXPECT_LE(Duration([&] { Query("?V"), Query("?V"); }), 1040);
  Send("\x1b!A5;", Acknowledge::None);
  terminal.Answer("\x1b?V", "2.1;", milliseconds(5));
  EXPECT_LT(Duration([&] { EXPECT_EQ(Query("?V"), "2.1"); }), 40);
}

// A busy program serves the tick that is overdue before the characters that came in time.
TEST_F(ExchangeTest, ReplyThatIsThereWhenAnOverdueTickComesIsNoTimeOut) {
  for (const char* answer : {"2.1;", "2.1"}) {
    const auto busyUntil = loop.Now() + milliseconds(700);
    loop.After(milliseconds(400), [&, answer] {
      port.ArriveAfter(milliseconds(50), answer);
      while (loop.Now() < busyUntil) loop.WaitPaintingOnly(busyUntil - loop.Now());
    });
    EXPECT_EQ(Query("?V"), std::string(answer).ends_with(";") ? "2.1" : "TimeOut");
  }
}

// A machine that has not let the program run has kept what came.
TEST_F(ExchangeTest, WhatTheSystemHoldsWhenTheTimeRunsOutCameInTime) {
  std::string held;
  exchange.SetTickListener([&] { port.ArriveUnserved(std::exchange(held, {})); });
  held = "\x06";
  EXPECT_FALSE(Send("\033EWC"));
  held = "2.10F;";
  EXPECT_EQ(Query("?V"), "2.10F");
  held = "Terminal";
  EXPECT_EQ(Collect(""), "Terminal");
  // Not even an event tells of it.
  loop.After(milliseconds(10), [&] {
    while (loop.Now() < milliseconds(700)) loop.WaitPaintingOnly(milliseconds(700) - loop.Now());
    port.ArriveUnserved("?A3;");
  });
  EXPECT_EQ(exchange.SendQuickQuery(AskAddress(), milliseconds(60)).text, "?A3");
}

TEST_F(ExchangeTest, CollectionByTimeTakesWhatComesIn100Milliseconds) {
  for (int ms : {10, 60, 99, 130}) port.ArriveAfter(milliseconds(ms), "x");
  tmrTimeout.SetInterval(milliseconds(1000));
  EXPECT_DOUBLE_EQ(Duration([&] { EXPECT_EQ(Collect(""), "xxx"); }), 120);
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

TEST_F(ExchangeTest, WhatCameOfEachQuestionIsToldWithItsText) {
  std::string heard;
  exchange.SetOutcomeListener([&](const Outcome& outcome) {
    heard += std::string(outcome.sent) + "=" + outcome.reply.text + "|";
  });
  terminal.Answer("\x1b?V", "2.1;");
  loop.After(milliseconds(10), [&] { Query("?V"); });
  Send("\x1b!E1;");
  Send("text", Acknowledge::None);
  Collect("");
  com1.Close();
  Query("?V");
  Send("\x1b!E2;");
  EXPECT_EQ(heard,
            "\x1b?V=2.1|\x1b!E1;=keine Reaktion|text=|\x1b?V=TimeOut|\x1b!E2;=keine Reaktion|");
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
