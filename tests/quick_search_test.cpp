#include "bus/quick_search.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "base/wire_text.h"
#include "bus/search_meaning.h"
#include "tests/fakes/bus_world.h"
#include "tests/fire/fire_count.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::ExchangeWorld;
using testing_world::milliseconds;
using testing_world::nanoseconds;

constexpr double kChecksumFrom = 2.1;

/// What stands at one address of a bus: what it answers, and how late.
struct Station {
  std::string toAddress;
  std::string toVersion;
  milliseconds delay{2};
  milliseconds heldUp{0};  ///< the answer to "?A", by the machine
};

/// Answers come in their time even when another address has been selected since.
struct RandomBus : ExchangeWorld {
  explicit RandomBus(std::map<int, Station> all) : stations(std::move(all)) {
    port.characterTime = nanoseconds(520'833);
    port.onCharacter = [this](char c) { Receive(c); };
  }
  void Receive(char c) {
    heard += c;
    if (c == ';') {
      const auto at = heard.rfind("\x1b!A");
      if (at != std::string::npos) selected = std::atoi(heard.c_str() + at + 3);
      heard.clear();
    }
    const auto station = stations.find(selected);
    if (station == stations.end()) return;
    if (heard.ends_with("\x1b?A"))
      Answer(station->second, station->second.toAddress, station->second.heldUp);
    if (heard.ends_with("\x1b?V")) Answer(station->second, station->second.toVersion);
  }
  void Answer(const Station& station, const std::string& text, milliseconds heldUp = {}) {
    nanoseconds at = station.delay + heldUp;
    if (unserved) return loop.After(at, [this, text] { port.ArriveUnserved(text); });
    for (const char c : text) port.ArriveAfter(at += port.characterTime, {c});
  }
  // The program does not get to run.
  void BusyFor(nanoseconds time) {
    const nanoseconds end = loop.Now() + time;
    while (loop.Now() < end) loop.WaitPaintingOnly(end - loop.Now());
  }
  bool Reopen() {
    port.Close();
    return port.Open() == PortOk;
  }
  // Of either search, an address a line.
  template <typename Search>
  std::string Found(Search&& search, int last) {
    std::map<int, std::string> rows;
    results.resize(static_cast<std::size_t>(last) + 1);
    seconds = Duration([&] {
                const auto end = search.Run(last, kChecksumFrom, [&](const SearchResult& result) {
                  results[static_cast<std::size_t>(result.address)] = result;
                  rows[result.address] = ResultVerdict(result) + '|' + ReadableText(result.reply) +
                                         '|' + YesNoText(result.checksum) + '\n';
                  if (whenTold) whenTold(result.address);
                });
                EXPECT_EQ(end, TerminalSearch::End::Complete);
              }) /
              1000;
    std::string all;
    for (const auto& [address, row] : rows) all += std::to_string(address) + ' ' + row;
    return all;
  }
  std::string Quick(int last) {
    return Found(QuickSearch({exchange, com1, loop, state, [this] { return Reopen(); }}), last);
  }
  std::string Usual(int last) {
    return Found(TerminalSearch({exchange, state, [this] { return Reopen(); }}), last);
  }

  const std::map<int, Station> stations;
  bool unserved = false;  ///< the machine lets the program find an answer only when it looks
  std::function<void(int address)> whenTold;
  std::string heard;
  int selected = -1;
  double seconds = 0;
  std::vector<SearchResult> results;
  TerminalState state;
};

class RandomBuses {
 public:
  explicit RandomBuses(int number) : random_(static_cast<unsigned>(number)) {}

  std::map<int, Station> Make(int last) {
    std::map<int, Station> stations;
    const int present = Number(0, 100);
    for (int address = 0; address <= last; ++address) {
      if (Number(0, 99) < present) stations[address] = MakeStation(address);
    }
    return stations;
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  Station MakeStation(int address) {
    const std::string own = "?A" + std::to_string(address) + ";";
    const milliseconds delay(Number(0, 2) > 0 ? Number(1, 40) : Number(41, 200));
    switch (Number(0, 9)) {
      case 0:
        return {"\x80\x81\x82;", "\x80;", delay};  // several at once
      case 1:
        return {own, "2\xC1\x80;", delay};  // these tell by their version alone
      case 2:
        return {"?A" + std::to_string(address + 1) + ";", "2.10;", delay};
      case 3:
        return {"\x80\x80", "", delay};  // without an end
      case 4:
        return {own, "1.95;", delay};
      default:
        return {own, "2.10F;", delay};
    }
  }
  std::mt19937 random_;
};

TEST(QuickSearchTest, SaysWhatTheUsualSearchSays) {
  constexpr int kLast = 24;
  for (int number = 0; number < testing_world::FireCount(300); ++number) {
    const auto stations = RandomBuses(number).Make(kLast);
    RandomBus quick(stations);
    RandomBus usual(stations);
    ASSERT_EQ(quick.Quick(kLast), usual.Usual(kLast)) << number;
  }
}

TEST(QuickSearchTest, TheWholeBusTakesLittleTime) {
  RandomBus silent({});
  silent.Quick(255);
  EXPECT_LE(silent.seconds, 25);
  EXPECT_EQ(silent.tmrTimeout.Interval(), milliseconds(1000));
  EXPECT_EQ(silent.port.ReceiveThreshold(), 1);
  std::map<int, Station> some;
  for (int address = 0; address < 256; address += 20) {
    some[address] = {"?A" + std::to_string(address) + ";", "2.10;", milliseconds(30)};
  }
  RandomBus bus(some);
  bus.Quick(255);
  EXPECT_LE(bus.seconds, 25);
}

TEST(QuickSearchTest, AnAnswerThatTheMachineHasHeldUpMakesTheRestNoSlower) {
  std::map<int, Station> some;
  for (int address = 0; address < 100; address += 20) {
    some[address] = {"?A" + std::to_string(address) + ";", "2.10;", milliseconds(5),
                     milliseconds(45)};
  }
  RandomBus bus(some);
  bus.Quick(255);
  EXPECT_LE(bus.seconds, 24);
}

TEST(QuickSearchTest, AnAnswerThatIsFoundOnlyWhenTheNextAddressIsAskedIsNotLost) {
  const std::map<int, Station> some{{1, {"?A1;", "2.10;"}}, {9, {"?A9;", "2.10;"}}};
  RandomBus quick(some);
  quick.unserved = true;
  RandomBus usual(some);
  EXPECT_EQ(quick.Quick(12), usual.Usual(12));
}

// The answer is slower than the first ones are waited for, and found much later.
TEST(QuickSearchTest, WhoAnswersWhileTheMachineIsBusyIsFound) {
  RandomBus bus({{1, {"?A1;", "2.10;", milliseconds(100)}}});
  bus.whenTold = [&bus](int address) {
    if (address == 1) bus.BusyFor(milliseconds(900));
  };
  EXPECT_NE(bus.Quick(5).find("1 ok"), std::string::npos);
}

// One that answers nothing while another address is selected, and is slower than the others.
TEST(QuickSearchTest, AbsentAddressBetweenPresentOnesIsAskedWithTheFullTime) {
  BusWorld world;
  for (const int address : {0, 1, 3, 4}) world.Add({.address = address});
  world.Add({.address = 2, .fault = sim::Fault::Slow});
  TerminalState state;
  QuickSearch search({world.exchange, world.com1, world.loop, state, [&] {
                        world.port.Close();
                        return world.port.Open() == PortOk;
                      }});
  std::map<int, bool> found;
  search.Run(6, kChecksumFrom, [&](const SearchResult& r) { found[r.address] = r.Found(); });
  EXPECT_EQ(found,
            (std::map<int, bool>{
                {0, true}, {1, true}, {2, true}, {3, true}, {4, true}, {5, false}, {6, false}}));
}

TEST(QuickSearchTest, EndsWhenItIsStoppedOrTheLineIsLost) {
  RandomBus bus({});
  QuickSearch search(
      {bus.exchange, bus.com1, bus.loop, bus.state, [&bus] { return bus.Reopen(); }});
  int results = 0;
  const auto count = [&results](const SearchResult&) { ++results; };
  bus.loop.After(milliseconds(100), [&search] { search.Stop(); });
  EXPECT_EQ(search.Run(255, kChecksumFrom, count), TerminalSearch::End::Stopped);
  EXPECT_EQ(results, 2);
  bus.loop.After(milliseconds(100), [&bus] { bus.port.Lose(); });
  EXPECT_EQ(search.Run(255, kChecksumFrom, count), TerminalSearch::End::LineLost);
  EXPECT_EQ(results, 3);
}

TEST(QuickSearchTest, TheWholeRunIsExplained) {
  SearchResult silent;
  SearchResult garbled;
  garbled.address = 3;
  garbled.heard = Heard::Garbled;
  SearchResult good;
  good.address = 4;
  good.heard = Heard::Itself;
  good.versionUsable = true;
  EXPECT_NE(SearchMeaning({silent}).find("Kabel"), std::string::npos);
  EXPECT_NE(SearchMeaning({silent, garbled}).find("Jede Antwort"), std::string::npos);
  EXPECT_TRUE(SearchMeaning({silent, garbled, good}).starts_with("Adresse 3: "));
  EXPECT_EQ(SearchMeaning({silent, good}), "");
}

// Both searches over a line that brings back what is sent, until it fails.
TEST(QuickSearchTest, WhatTheEchoMeansIsToldAtTheEnd) {
  const struct {
    int terminal;
    int echoEnds;  ///< in milliseconds; 0 for never
    const char* meaning;
  } cases[] = {{-1, 0, "Es kam nur zurück, was gesendet wurde"},
               {3, 0, ""},
               {3, 3200, " kam das Echo der Leitung nicht mehr"},
               {-1, 3200, "Es kam nur zurück"}};
  for (const bool quick : {false, true}) {
    for (const auto& c : cases) {
      std::map<int, Station> stations;
      if (c.terminal >= 0) stations[c.terminal] = {"?A3;", "2.10;", milliseconds(5)};
      RandomBus bus(stations);
      bus.port.echo = milliseconds(1);
      if (c.echoEnds > 0) {
        bus.loop.After(milliseconds(c.echoEnds), [&bus] { bus.port.echo.reset(); });
      }
      quick ? bus.Quick(60) : bus.Usual(60);
      const std::string meaning = SearchMeaning(bus.results);
      EXPECT_NE(meaning.find(c.meaning), std::string::npos) << meaning;
      EXPECT_EQ(meaning.empty(), *c.meaning == '\0') << meaning;
      EXPECT_EQ(meaning.find("Ab Adresse") != std::string::npos, c.echoEnds > 0) << meaning;
    }
  }
}

}  // namespace
}  // namespace kelvo
