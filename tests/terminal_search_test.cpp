#include "bus/terminal_search.h"

#include <gtest/gtest.h>

#include "tests/fakes/bus_world.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::milliseconds;

TEST(SearchTexts, AreDrawnToTheLetter) {
  EXPECT_EQ(FoundDisplay(5),
            "\x1bGC\x1bGP50,150;\x1bGF8;\x1bGZ3,3;\x1bGA0;\x1bGT Adresse : \x1bGP130,90;\x1bGT5");
  EXPECT_EQ(ConflictDisplay(255),
            "\x1bGC\x1bGP10,150;\x1bGF8;\x1bGZ3,3;\x1bGA0;\x1bGTKonflikt ! \x1bGP20,90;"
            "\x1bGTAdresse : 255");
}

TEST(SearchTexts, AddressRepliesAreReadFromTheirThirdCharacter) {
  struct Case {
    int address;
    Reply reply;
    Heard heard;
  };
  const auto complete = [](const std::string& text) { return CompleteReply(text + ";", ";"); };
  const Case cases[] = {{5, complete("?A5"), Heard::Itself},
                        {5, complete("5"), Heard::Garbled},
                        {12, complete("?A1"), Heard::OtherAddress},
                        {5, complete("?A5xyz"), Heard::Itself},
                        {5, complete("?A-5"), Heard::Garbled},
                        {5, complete(""), Heard::Garbled},
                        // Without a number the value is 0; whether that is Terminal 0, its version
                        // tells.
                        {0, complete("\x80\x81"), Heard::Itself},
                        {5, TimeOutReply("", true), Heard::Silence},
                        {5, TimeOutReply("\x80", true), Heard::Unfinished}};
  for (const Case& c : cases) {
    EXPECT_EQ(ReadAddressReply(c.address, c.reply), c.heard) << c.reply.received;
  }
}

class TerminalSearchTest : public testing::Test, protected BusWorld {
 protected:
  bool Reopen() {
    ++reopened;
    port.Close();
    return port.Open() == PortOk;
  }
  TerminalSearch::End Search(int last, double checksumFrom = 2.1) {
    results.clear();
    return search.Run(last, checksumFrom, [this](const SearchResult& result) {
      results.push_back(result);
      if (afterEach) afterEach();
    });
  }
  std::string Verdicts() const {
    std::string verdicts;
    for (const SearchResult& result : results) {
      verdicts += ResultVerdict(result) + (result.checksum ? "+" : "") + "|";
    }
    return verdicts;
  }

  TerminalState state;
  int reopened = 0;
  std::function<void()> afterEach;
  std::vector<SearchResult> results;
  TerminalSearch search{{exchange, state, [this] { return Reopen(); }}};
};

TEST_F(TerminalSearchTest, TellsPresentAbsentCollidingAndOldTerminalsApart) {
  for (const bool echo : {false, true}) {
    line.bus = {};
    line.line.SetEcho(echo);
    Add({.version = "2.10", .address = 0});
    Add({.version = "1.95", .address = 1});
    Add({.address = 3});
    Add({.address = 3});
    Add({.address = 4, .echoQueries = !echo});
    EXPECT_EQ(Search(5), TerminalSearch::End::Complete);
    EXPECT_EQ(Verdicts(), "ok+|ok|nicht vorhanden|Fehler/Kollision|ok+|nicht vorhanden|") << echo;
    EXPECT_EQ(results[0].reply, "?A0");
    EXPECT_EQ(results[2].reply, "TimeOut");
    EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
  }
}

TEST_F(TerminalSearchTest, CollisionAtAddressZeroIsFoundByTheVersion) {
  Add({.address = 0});
  Add({.address = 0});
  Add({.address = 0});
  Search(0);
  EXPECT_EQ(Verdicts(), "Fehler/Kollision|");
  EXPECT_NE(ResultStory(results[0]).find("Nach der Version gefragt: Empfangen: \""),
            std::string::npos)
      << ResultStory(results[0]);
}

TEST_F(TerminalSearchTest, PresentTerminalsShowTheirAddressAndCollidingOnesTheConflict) {
  Add({.address = 1});
  Add({.address = 2});
  Add({.address = 2});
  Search(2);
  const std::string shown = FoundDisplay(1);
  const std::string conflict = ConflictDisplay(2);
  EXPECT_NE(port.written.find(shown), std::string::npos);
  // The conflict text is through before the port is closed.
  EXPECT_TRUE(port.written.ends_with(conflict));
  for (std::size_t index : {1U, 2U}) {
    std::string texts;
    for (const auto& entry : At(index).Log()) texts += entry.text + "|";
    EXPECT_TRUE(texts.ends_with("Adresse : 2|")) << texts;
  }
  EXPECT_EQ(reopened, 2);
}

TEST_F(TerminalSearchTest, OtherAnswersAreConflictsToo) {
  terminal.Answer("\x1b!A1;", "");
  port.onCharacter = [this](char c) {
    if (c != 'A' || !port.written.ends_with("\x1b?A")) return;
    port.ArriveAfter(milliseconds(2), "?A7;");
  };
  Search(0);
  EXPECT_EQ(Verdicts(), "Fehler/Kollision|");
  EXPECT_EQ(results[0].heard, Heard::OtherAddress);
  EXPECT_NE(ResultStory(results[0]).find("3F 41 37 3B"), std::string::npos);
}

TEST_F(TerminalSearchTest, GarbledAnswerWithoutEndIsAbsentButToldInTheStory) {
  Add({.address = 0, .fault = sim::Fault::Garbled});
  Add({.address = 1, .fault = sim::Fault::Silent});
  Search(1);
  EXPECT_EQ(Verdicts(), "nicht vorhanden|nicht vorhanden|");
  EXPECT_NE(ResultStory(results[0]).find("kamen Zeichen"), std::string::npos);
  EXPECT_NE(ResultStory(results[1]).find("Empfangen: nichts."), std::string::npos);
}

TEST_F(TerminalSearchTest, EndsAfterThePresentAddressWhenStopped) {
  Add({.address = 1});
  loop.After(milliseconds(100), [this] { search.Stop(); });
  EXPECT_EQ(Search(255), TerminalSearch::End::Stopped);
  EXPECT_EQ(results.size(), 1U);
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
  EXPECT_EQ(Search(1), TerminalSearch::End::Complete);
}

TEST_F(TerminalSearchTest, EndsWhenTheLineIsLostAndSaysNothingAboutThatAddress) {
  loop.After(milliseconds(1300), [this] { port.Lose(); });
  EXPECT_EQ(Search(255), TerminalSearch::End::LineLost);
  EXPECT_EQ(results.size(), 2U);
  port.openError = PortNotAvailable;
  EXPECT_EQ(Search(255), TerminalSearch::End::LineLost);
  EXPECT_EQ(results.size(), 0U);
}

TEST_F(TerminalSearchTest, ExchangeOfTheOperatorInItsMiddleSpoilsAtMostOneAddress) {
  Add({.address = 2});
  loop.After(milliseconds(200), [this] { Query("?V"); });
  EXPECT_EQ(Search(2), TerminalSearch::End::Complete);
  EXPECT_TRUE(Verdicts().ends_with("nicht vorhanden|ok+|")) << Verdicts();
}

// The prescribed time of each silent address: its commands on the line, 500 ms, and the pause up
// to the next tick.
TEST_F(TerminalSearchTest, TakesNoLongerThanItsStepsPrescribe) {
  const double ms = Duration([this] { Search(255); });
  double prescribed = 0;
  for (const SearchResult& result : results) {
    const auto characters = 4 + std::to_string(result.address).size() + 3;
    prescribed += static_cast<double>(characters) * 0.520833 + 500 + 20;
  }
  EXPECT_LE(ms, prescribed * 1.02);
  EXPECT_EQ(results.size(), 256U);
}

}  // namespace
}  // namespace kelvo
