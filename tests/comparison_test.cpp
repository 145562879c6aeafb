#include "inventory/comparison.h"

#include <gtest/gtest.h>

#include "link/commands.h"
#include "link/line_state.h"
#include "tests/fakes/bus_world.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;

const TerminalId Tor{"/dev/ttyUSB0", 3};

class ComparisonTest : public testing::Test, protected BusWorld {
 protected:
  ComparisonTest() {
    Add({.version = "2.10", .address = 3});
    Add({.address = 4, .fault = sim::Fault::Silent});
  }
  ReadRun::Result Read(Readings& readings, std::vector<int> addresses = {3}) {
    ReadRun run({exchange, loop, readings});
    return run.Run(Tor.device, addresses, {}, [](int) {});
  }
  /// An item that was written and acknowledged, or proven.
  void Written(const Item& item) {
    JournalEntry entry{
        JournalTime(), Tor, Event::Begun, {ItemChange::Kind::Written, item.key}, item.name,
        item.command,  0};
    journal.Add(entry);
    entry.event = Event::Acknowledged;
    journal.Add(entry);
  }
  /// The row of that name: what the comparison says of it.
  std::string Words(const std::string& what, const Readings& readings = {}) {
    for (const ComparisonRow& row : Compare(Tor, journal.Of(Tor), readings, records)) {
      if (row.what == what) return row.words + (row.order ? ", " + row.order->item.name : "");
    }
    return "-";
  }

  testing_world::TemporaryFolder folder;
  WriteJournal journal;
  std::vector<StoredRecord> records;
};

TEST_F(ComparisonTest, WhatWasWrittenIsHeldAgainstTheDatabaseAndOnlyWhatChangedIsOffered) {
  const auto macro = [](int number, const std::string& text) { return WriteMakro(number, text); };
  Written({{ItemKind::Macro, 1}, macro(1, "alt").Text(), "Pumpe"});
  Written({{ItemKind::Macro, 2}, macro(2, "gleich").Text(), "Logo"});
  Written({{ItemKind::Macro, 5}, macro(5, "fremd").Text(), "weg"});
  records = {{1, "Makro", "Pumpe", 1, "neu"},
             {2, "Makro", "Logo", 2, "gleich"},
             {3, "Makro", "Start", 0, "nirgends"},
             {4, "Makro", "ohne Nummer", -1, "x"}};
  EXPECT_EQ(Words("Makro 1"), "geändert, Pumpe");
  EXPECT_EQ(Words("Makro 2"), "gleich");
  EXPECT_EQ(Words("Makro 5"), "nicht in der Datenbank");
  EXPECT_EQ(Words("Makro 0"), "unbekannt");
  EXPECT_EQ(Words("Version"), "hier nicht gelesen");
  // What cannot be written is not offered.
  records[0].wire = std::string("a\x03", 2);
  EXPECT_EQ(Words("Makro 1"), "geändert");
}

// Of what a Terminal has not, or not for all that is known, it is only offered.
TEST_F(ComparisonTest, WhatIsNotThereIsOffered) {
  Written({{ItemKind::Macro, 5}, WriteMakro(5, "anderes").Text(), "Logo"});
  records = {{1, "Makro", "Pumpe", 5, "neu"},
             {2, "Makro", "Start", 0, "x"},
             {3, "Makro", "ohne Nummer", -1, "x"},
             {4, "Makro", "ETX", 2, "a\x03"}};
  std::string offered;
  for (const ComparisonRow& row : Compare(Tor, journal.Of(Tor), {}, records)) {
    EXPECT_FALSE(row.order) << row.what;
    if (row.offer) offered += row.what + ": " + row.words + ", " + row.offer->item.name + "; ";
  }
  EXPECT_EQ(offered, "Makro 0: unbekannt, Start; Makro 5: nicht im Terminal, Pumpe; ");
}

// Writing it anew is what makes it known again.
TEST_F(ComparisonTest, WhatIsUncertainIsShownAsItWasAndOffered) {
  Written({{ItemKind::Macro, 1}, WriteMakro(1, "alt").Text(), "Pumpe"});
  Written({{ItemKind::Macro, 2}, WriteMakro(2, "gleich").Text(), "Logo"});
  records = {{1, "Makro", "Pumpe", -1, "neu"},
             {2, "Makro", "Logo", 2, "gleich"},
             {3, "Makro", "Start", 2, "x"},
             {4, "Makro", "Ende", 3, "y"},
             {5, "Makro", "Anfang", 0, "z"}};
  const auto uncertain = [this] {
    std::string rows;
    for (const ComparisonRow& row : Compare(Tor, journal.Of(Tor), {}, records)) {
      if (row.compared != Compared::Unknown) continue;
      rows += row.what + ": " + row.words + ", " + row.database;
      rows += row.written ? ", " + row.written->item.name : "";
      rows += row.offer ? " <- " + row.offer->item.name : "";
      rows += row.uncertain ? "\n" : ".\n";
    }
    return rows;
  };
  journal.Add({JournalTime(), Tor, Event::Silent, {ItemChange::Kind::Erased, {}}, {}, {}, 0});
  EXPECT_EQ(uncertain(),
            "Makro 0: unbekannt, Anfang <- Anfang.\n"
            "Makro 1: ungewiss: Löschen: keine Antwort, Pumpe, Pumpe <- Pumpe\n"
            "Makro 2: ungewiss: Löschen: keine Antwort, Logo, Logo <- Logo\n"
            "Makro 2: unbekannt, Start <- Start.\n"
            "Makro 3: unbekannt, Ende <- Ende.\n");
  journal.Add({JournalTime(),
               Tor,
               Event::Refused,
               {ItemChange::Kind::Written, {ItemKind::Macro, 3}},
               {},
               {},
               0});
  EXPECT_NE(uncertain().find("Makro 3: ungewiss: abgelehnt, Ende <- Ende\n"), std::string::npos)
      << uncertain();
}

TEST_F(ComparisonTest, TheFreeBytesAreTheOnesReadLastWhereverThatWas) {
  const auto at = [](int second) { return JournalTime(std::chrono::seconds(second)); };
  Readings readings;
  const auto read = [&] {
    for (const ComparisonRow& row : Compare(Tor, journal.Of(Tor), readings, records)) {
      if (row.what == "Freier Platz im EEPROM") return row.read + (row.silentAt ? "!" : row.words);
    }
    return std::string("-");
  };
  EXPECT_EQ(read(), "hier nicht gelesen");
  readings.AddSilence(Tor, CommandName::AskFreeBytes, {at(1), "keine Antwort"});
  journal.Add({at(2), Tor, Event::FreeBytes, {}, {}, {}, 8113});
  EXPECT_EQ(read(), "8113");
  readings.AddSilence(Tor, CommandName::AskFreeBytes, {at(3), "keine Antwort"});
  EXPECT_EQ(read(), "8113!") << "it was silent since, and the newest known stays";
  readings.Add({at(4), Tor, CommandName::AskFreeBytes, "8000"});
  EXPECT_EQ(read(), "8000");
  Written({{ItemKind::Macro, 1}, WriteMakro(1, "neu").Text(), "Pumpe"});
  EXPECT_EQ(read(), "8000seither geschrieben");
}

// Where it was read after it was sent.
TEST_F(ComparisonTest, WhoKeepsSilentToTheReadingIsKnownToDoSo) {
  LineWatch watch(com1, exchange);
  LineState state(watch, loop, exchange);
  state.PortIs(1);
  Readings readings;
  ReadRun run({exchange, loop, readings});
  run.Run(Tor.device, {3, 4}, 4, [](int) {});
  EXPECT_EQ(state.Address(), 4);
  EXPECT_EQ(state.Answers(), Answering::Silent);
  run.Run(Tor.device, {4}, 3, [](int) {});
  EXPECT_EQ(state.Address(), 3) << "it is selected again as before";
}

TEST_F(ComparisonTest, CursorAndTextModeAreHeldAgainstWhatWasSentLast) {
  const auto at = [](int second) { return JournalTime(std::chrono::seconds(second)); };
  Settings settings;
  settings.Take("\x1bTF3;\x1bTA 1;\x1bTZ2,3;\x1b!c 3,5;\x1b!c 2,1;\x1b!C 2;", at(10));
  Readings readings;
  const auto words = [&](CommandName query, const std::string& reply, int second) {
    readings.Add({at(second), Tor, query, reply});
    for (const ComparisonRow& row : Compare(Tor, {}, readings, {}, settings)) {
      if (row.readAt == at(second)) return row.sent + ": " + row.words;
    }
    return std::string("-");
  };
  using enum CommandName;
  EXPECT_EQ(words(AskTextFont, "3", 20), "3: wie zuletzt gesendet");
  EXPECT_EQ(words(AskTextFont, "4", 21), "3: anders als zuletzt gesendet");
  EXPECT_EQ(words(AskTextFont, "4", 9), "3: seit dem Lesen neu gesendet");
  EXPECT_EQ(words(AskTextAttribute, "1", 22), "1: wie zuletzt gesendet");
  EXPECT_EQ(words(AskTextZoom, "2,3", 23), "2,3: wie zuletzt gesendet");
  EXPECT_EQ(words(AskTextZoom, "2,2", 24), "2,3: anders als zuletzt gesendet");
  EXPECT_EQ(words(AskTextMode, "0", 25), ": ") << "never sent";
  EXPECT_EQ(words(AskCursor, "2", 26), "2: wie zuletzt gesendet");
  EXPECT_EQ(words(AskCursorShape, "0", 27), "2,1: anders als zuletzt gesendet");
  EXPECT_EQ(words(AskCursor, "3", 28), "2: anders als zuletzt gesendet");
  EXPECT_EQ(words(AskCursorShape, "1,5", 29), "3,5: wie zuletzt gesendet");
}

TEST_F(ComparisonTest, OnlyWhatWasWrittenFromTheRecordIsAnOlderTextOfIt) {
  const auto under5 = [this](const std::string& text, const std::string& name) {
    Written({{ItemKind::Macro, 5}, WriteMakro(5, text).Text(), name});
  };
  const auto state = [this](const std::string& name) {
    return StateOf(journal.Of(Tor), {1, "Makro", name, 5, "neu"});
  };
  under5("alt", "Pumpe eins");
  EXPECT_EQ(state("Pumpe eins"), InTerminal::Changed);
  under5("anderes", "Logo");
  EXPECT_EQ(state("Pumpe eins"), InTerminal::Absent);
  under5("Entwurf", "(neuer Name)");
  EXPECT_EQ(state("Pumpe eins"), InTerminal::Absent);
  EXPECT_EQ(state("(neuer Name)"), InTerminal::Absent) << "another one that nobody has named";
  under5("neu", "Logo");
  EXPECT_EQ(state("Pumpe eins"), InTerminal::Same);
}

TEST_F(ComparisonTest, RepliesAreKeptOverRunsAndAnotherOneThanBeforeStandsOut) {
  const std::string path = folder.Path("gelesen.txt");
  {
    Readings readings(path);
    const auto result = Read(readings, {3, 4});
    EXPECT_EQ(result.answered, std::vector<int>{3});
    EXPECT_EQ(result.silent, std::vector<int>{4});
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(readings.Last(Tor, CommandName::AskVersion)->reply, "2.10F");
    EXPECT_EQ(readings.Last(Tor, CommandName::AskFreeBytes)->reply, "8192");
    EXPECT_EQ(Words("Version", readings), "");
    // The silent one was asked nothing but its address.
    EXPECT_TRUE(port.written.ends_with("\x1b!A4;\x1b?A\x1b!A254;"));
  }
  At(0).SetVersion("2.20", true);
  Readings readings(path);
  EXPECT_EQ(readings.Last(Tor, CommandName::AskVersion)->reply, "2.10F");
  Read(readings);
  EXPECT_EQ(Words("Version", readings), "anders als zuvor gelesen");
  EXPECT_EQ(Words("Aktive Matrix-Tabelle", readings), "wie zuvor gelesen");
  Read(readings);
  EXPECT_EQ(Words("Version", readings), "wie zuvor gelesen");
  At(0).SetFault(sim::Fault::Silent);
  Read(readings);
  EXPECT_EQ(Words("Version", readings), "keine Antwort");
  At(0).SetFault(sim::Fault::None);
  Read(readings);
  EXPECT_EQ(Words("Version", readings), "wie zuvor gelesen");
}

}  // namespace
}  // namespace kelvo
