#include "link/line_state.h"

#include <gtest/gtest.h>

#include "link/failure_cause.h"
#include "tests/fakes/exchange_world.h"

namespace kelvo {
namespace {

using testing_world::ExchangeWorld;
using testing_world::milliseconds;

std::string Number(std::optional<int> number) { return number ? std::to_string(*number) : "?"; }

class LineStateTest : public testing::Test, protected ExchangeWorld {
 protected:
  LineStateTest() {
    state.PortIs(1);
    terminal.Answer("\x1b?V", "2.10F;");
    terminal.Answer("\x03", "\x06");
  }
  std::string Who() {
    switch (state.Listens()) {
      case Listening::Unknown:
        return "unknown";
      case Listening::Nobody:
        return "nobody, " + Number(state.Address());
      case Listening::One:
        return Number(state.Address());
      case Listening::All:
        return "all";
    }
    return {};
  }
  void AskVersion() { Query("?V"); }
  void Silence() { terminal.Answer("\x1b?V", ""); }
  void WriteMakro(int number, const std::string& text) {
    exchange.SendString(kelvo::WriteMakro(number, text));
  }

  LineWatch line{com1, exchange};
  LineState state{line, loop, exchange};
};

TEST_F(LineStateTest, EachWayOfSelectingIsFollowed) {
  const struct {
    const char* name;
    std::vector<std::string> sent;
    const char* who;
  } cases[] = {{"command", {"\x1b!A7;"}, "7"},
               {"in pieces, as typed", {"\x1b!", "A1", "2;"}, "12"},
               {"all", {"\x1b!A255;"}, "all"},
               {"behind a drawing", {"\x1bGC\x1bGT!A3;\x04\x1b!A4;\x1bGP1,2;"}, "4"},
               {"only stored",
                {"\x1b!A7;",
                 "\x1b"
                 "EWM5,\x1b!A9;\x03"},
                "7"},
               {"transfer",
                {"\x1b!A7;\x1b"
                 "C!",
                 "\x1bGC", "\x1b!A254;"},
                "nobody, 254"},
               {"restart of all", {"\x1b!A7;", ";\x03\x04\x1b!A255;\x1bR"}, "unknown"},
               {"no number", {"\x1b!A7;", "\x1b!A300;"}, "7"}};
  for (const auto& row : cases) {
    state.PortLost();
    state.PortIs(1);
    EXPECT_EQ(Who(), "unknown");
    for (const std::string& text : row.sent) exchange.SendString(text);
    EXPECT_EQ(Who(), row.who) << row.name;
  }
}

TEST_F(LineStateTest, AMacroThatSelectsCountsWhenItRuns) {
  exchange.SendString(SelectAddress(7));
  WriteMakro(1, "\x1b!A9;");
  WriteMakro(2, "\x1bGC\x1b!A7;\x1bTH");
  WriteMakro(3,
             "\x1b"
             "ECM1;");
  exchange.SendString(RunMakro(2));
  EXPECT_EQ(Who(), "7");
  exchange.SendString(RunMakro(99));  // not known
  EXPECT_EQ(Who(), "7");
  exchange.SendString(RunMakro(3));
  EXPECT_EQ(Who(), "nobody, 9");
  exchange.SendString(SelectAddress(255));
  WriteMakro(1, "\x1b!A9;");
  exchange.SendString(RunMakro(1));
  EXPECT_EQ(Who(), "9");
}

TEST_F(LineStateTest, SilenceBehindASelectionMeansThatNobodyListensUntilSomebodyAnswers) {
  Silence();
  exchange.SendString(SelectAddress(7));
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  AskVersion();
  EXPECT_EQ(Who(), "nobody, 7");
  Send(Command(CommandName::WriteConfig).Text());
  EXPECT_EQ(state.Unanswered(), 2);
  terminal.Answer("\x1b?V", "2.10F;");
  AskVersion();
  EXPECT_EQ(Who(), "7");
  EXPECT_EQ(state.Version(), "2.10F");
  EXPECT_EQ(state.Unanswered(), 0);
  loop.WaitForEvent(std::chrono::seconds(8));
  EXPECT_EQ(state.SinceAnswer(), std::chrono::seconds(8));
  Silence();
  AskVersion();
  EXPECT_EQ(Who(), "7") << "it has answered before";
  EXPECT_EQ(state.Answers(), Answering::Silent);
  exchange.SendString(SelectAddress(8));
  EXPECT_EQ(state.Version(), "");
}

TEST_F(LineStateTest, WhoIsMeantIsWhomTheOperatorHasSelectedThoughItKeepsSilent) {
  Silence();
  exchange.SendString(SelectAddress(33));
  AskVersion();
  exchange.SendString(SelectAddress(33));
  AskVersion();
  EXPECT_EQ(state.Meant(), 33) << "it erases, perhaps";
  state.SearchEnded();
  EXPECT_EQ(state.Meant(), std::nullopt) << "nobody has chosen whom a search asks last";
  exchange.SendString(SelectAddress(253));
  state.SearchEnded();
  EXPECT_EQ(state.Meant(), std::nullopt) << "and it may have heard of no answer";
  for (const int address : {254, 255}) {
    terminal.Answer("\x1b?V", "2.10F;");
    exchange.SendString(SelectAddress(address));
    AskVersion();
    EXPECT_EQ(Who(), address == 255 ? "all" : "unknown");
    EXPECT_EQ(state.Meant(), std::nullopt);
  }
}

TEST_F(LineStateTest, WhatIsAskedForIsFollowedWhoeverAsks) {
  terminal.Answer("\x1b?A", "?A5;");
  Query("?A");
  EXPECT_EQ(Who(), "5");
  exchange.SendString("\x1b?V");  // as the single command does
  Collect("");
  EXPECT_EQ(state.Version(), "2.10F");
  exchange.SendString("\x1bGC");
  Collect("");
  EXPECT_EQ(state.Answers(), Answering::Answered) << "a drawing has no answer";
  terminal.Answer("\x1b?V", "2.1");
  AskVersion();
  EXPECT_EQ(state.Answers(), Answering::Unclear);
  ASSERT_TRUE(state.LastFailure());
  EXPECT_EQ(state.LastFailure()->received, "2.1");
  terminal.Answer("\x1b?V", "2\x04\x10 F;");  // several at once
  AskVersion();
  EXPECT_EQ(state.Answers(), Answering::Unclear);
  EXPECT_EQ(state.Version(), "2.10F");
  for (int address = 0; address < 3; ++address) {  // a search
    terminal.Answer("\x1b?A", address == 1 ? "1;" : "");
    exchange.SendString(SelectAddress(address).Text(), Pending::Discard);
    Query("?A");
    EXPECT_EQ(Who(), address == 1 ? "1" : "nobody, " + std::to_string(address));
  }
}

TEST_F(LineStateTest, WhatWasHeardCountsForTheSettingsAtWhichItWasHeard) {
  com1.SetUp("9600,N,8,1", Handshaking::XOnXOff);
  AskVersion();
  EXPECT_EQ(state.Answers(), Answering::Answered);
  com1.SetUp("9600,N,8,1", Handshaking::XOnXOff);
  EXPECT_EQ(state.Answers(), Answering::Answered);
  com1.SetUp("19200,N,8,1", Handshaking::XOnXOff);
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  EXPECT_EQ(state.Version(), "");
  Silence();
  AskVersion();
  com1.SetUp("9600,N,8,1", Handshaking::XOnXOff);
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  EXPECT_FALSE(state.LastFailure());
}

TEST_F(LineStateTest, PortThatIsHeldLostOrAnotherOneIsSaid) {
  exchange.SendString(SelectAddress(7));
  AskVersion();
  state.PortIs(0);
  EXPECT_EQ(state.Answers(), Answering::Disconnected);
  state.PortIs(1);
  EXPECT_EQ(Who(), "7") << "opened again";
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  Silence();
  AskVersion();
  state.PortIs(0);
  state.PortIs(1);
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  port.held = true;
  exchange.SendString(AskPort());
  EXPECT_EQ(state.Answers(), Answering::Held);
  port.held = false;
  port.DiscardOutput();
  state.PortLost();
  EXPECT_EQ(state.Answers(), Answering::Lost);
  state.PortIs(1);
  EXPECT_EQ(Who(), "unknown");
  EXPECT_EQ(state.Answers(), Answering::NotAsked);
  exchange.SendString(SelectAddress(7));
  state.PortIs(2);
  EXPECT_EQ(Who(), "unknown");
}

TEST_F(LineStateTest, OfWhatWasSentCountsOnlyWhatTheOpenPortHasSent) {
  EXPECT_FALSE(state.SentAny());
  AskVersion();
  EXPECT_TRUE(state.SentAny());
  state.PortLost();
  EXPECT_TRUE(state.SentAny()) << "that may be lost, too";
  EXPECT_NE(CauseWords(FailureCause::DeviceGone, state).find("gesendet"), std::string::npos);
  state.PortIs(1);
  state.PortLost();
  EXPECT_EQ(CauseWords(FailureCause::DeviceGone, state).find("gesendet"), std::string::npos);
}

}  // namespace
}  // namespace kelvo
