#include "link/chronicle.h"

#include <gtest/gtest.h>

#include "tests/fakes/exchange_world.h"

namespace kelvo {
namespace {

using testing_world::ExchangeWorld;

class ChronicleTest : public testing::Test, protected ExchangeWorld {
 protected:
  std::string Last() {
    if (chronicle.Lines().empty()) return {};
    const Chronicle::Line& last = chronicle.Lines().back();
    return (last.failed ? "failed: " : "") + last.text;
  }
  LineWatch line{com1, exchange};
  bool busy = false;
  Chronicle chronicle{line, [] { return Chronicle::Moment(); }, [this] { return busy; }};
};

TEST_F(ChronicleTest, WhatIsConfirmedSaysSoWithWhatWasReadBefore) {
  terminal.Answer("\x03", "\x06");
  terminal.Answer("EWC", "\x06");
  terminal.Answer("E?F", "8142;");
  terminal.Answer(
      "\x1b"
      "EDK3;",
      "\x06");
  Query("E?F");
  EXPECT_EQ(Last(), "") << "a question that is answered is no deed";
  exchange.SendString(WriteMakro(5, std::string(50, 'x')));
  EXPECT_EQ(Last(), "Makro 5 geschrieben: 50 Byte, bestätigt, vorher 8142 Byte frei");
  exchange.SendString(WriteConfig());
  EXPECT_EQ(Last(), "Konfiguration gespeichert, bestätigt");
  exchange.SendString(DeleteKeyTable("3"));
  EXPECT_EQ(Last(), "Tabelle 3 gelöscht, bestätigt");
  exchange.SendString(
      "\x1b"
      "EWC");  // as the single command does
  Collect("");
  EXPECT_EQ(Last(), "Konfiguration gespeichert, bestätigt");
  EXPECT_EQ(chronicle.Lines().size(), 4u);
}

TEST_F(ChronicleTest, WhatMayNotHaveArrivedIsNotCalledDone) {
  std::string doubt = "aber es ist kein Terminal gewählt";
  chronicle.SetDoubt([&doubt] { return doubt; });
  exchange.SendString(RunMakro(1));
  EXPECT_EQ(Last(), "failed: Makro 1 ausführen: gesendet, aber es ist kein Terminal gewählt");
  exchange.SendString(SelectAddress(7));
  EXPECT_EQ(Last(), "Adresse 7 gewählt");
  doubt.clear();
  exchange.SendString(RunMakro(1));
  EXPECT_EQ(Last(), "Makro 1 ausführen: gesendet");
  doubt = "aber das Terminal antwortet nicht";
  const std::pair<const char*, const char*> cases[] = {
      {"Hallo", "Text „Hallo“: gesendet"},
      {"\x1b!P9;", "Ausgänge P0 auf 9 setzen: gesendet"},
      {"\x1bGC\x1bGL1,2;", "Zeichnung gesendet: 10 Zeichen"},
      {"\x1b"
       "2Oabc;",
       "Ausgabe auf zweiter Schnittstelle, 3 Byte: gesendet"},
      {"\x1b"
       "2Oabc",
       "Ausgabe auf zweiter Schnittstelle: „abc“: gesendet, Befehl noch offen: Trennzeichen "
       "fehlt"}};
  for (const auto& [wire, words] : cases) {
    exchange.SendString(wire);
    EXPECT_EQ(Last(), "failed: " + std::string(words) + ", " + doubt);
  }
}

// It is waited for in parts.
TEST_F(ChronicleTest, ACountDownThatIsRefusedSaysSoOnce) {
  terminal.Answer("Ee", "\x15");
  exchange.SendString(EraseEEpromCounting());
  Collect("\r");
  Collect("");
  EXPECT_EQ(Last(), "failed: EEPROM löschen mit Fortschritt: abgelehnt (NAK)");
  EXPECT_EQ(chronicle.Lines().size(), 1u);
}

TEST_F(ChronicleTest, AnUndertakingThatWritesToSeveralNamesEachAddress) {
  terminal.Answer("\x03", "\x06");
  exchange.SendString(SelectAddress(7));
  exchange.SendString(WriteMakro(1, "x"));
  EXPECT_EQ(Last(), "Makro 1 geschrieben: 1 Byte, bestätigt") << "the head says who listens";
  busy = true;
  for (const int address : {5, 6}) {
    exchange.SendString(SelectAddress(address));
    exchange.SendString(WriteMakro(1, "x"));
    EXPECT_EQ(Last(),
              "Adresse " + std::to_string(address) + ": Makro 1 geschrieben: 1 Byte, bestätigt");
  }
}

TEST_F(ChronicleTest, WhatNobodyConfirmsIsSaidWhenItIsSent) {
  const std::pair<std::string, const char*> cases[] = {
      {"\x1b!A7;", "Adresse 7 gewählt"},
      {";\x03\x04\x1b!A255;\x1bR", "alle Terminals gewählt; Neustart: gesendet"},
      {"\x1b"
       "ECM5;",
       "Makro 5 ausführen: gesendet"},
      {"\x1b!P129;", "Ausgänge P0 auf 129 setzen: gesendet"},
      {"\x1bTH", "Textcursor nach Hause: gesendet"},
      {"Hallo", "Text „Hallo“: gesendet"}};
  for (const auto& [wire, words] : cases) {
    exchange.SendString(wire);
    EXPECT_EQ(Last(), words);
  }
  const std::size_t before = chronicle.Lines().size();
  for (int i = 0; i < 3; ++i) {
    exchange.SendString("\x1bGC\x1bGB0,0,75,80," + std::string(12000, 'F') + ";");
  }
  EXPECT_EQ(Last(), "Zeichnung gesendet: 12017 Zeichen");
  EXPECT_EQ(chronicle.Lines().size(), before + 1);
}

TEST_F(ChronicleTest, FailuresAreToldAndOnlyTheLastFiftyLinesAreKept) {
  const std::pair<const char*, const char*> answers[] = {
      {"", "keine Antwort"}, {"\x15", "abgelehnt (NAK)"}, {"k", "statt der Quittung „k“"}};
  for (const auto& [answer, words] : answers) {
    terminal.Answer("EWC", answer);
    exchange.SendString(WriteConfig());
    EXPECT_EQ(Last(), "failed: Konfiguration speichern: " + std::string(words));
  }
  terminal.Answer("?V", "2.1");
  Query("?V");
  EXPECT_EQ(Last(), "failed: Version abfragen: Antwort unvollständig");
  busy = true;  // a search selects, asks and draws
  exchange.SendString(SelectAddress(3));
  Query("?A");
  exchange.SendString("\x1bGC\x1bGTAdresse");
  exchange.SendString(Sequence({SelectAddress(255), ResetChecksum()}));
  EXPECT_EQ(chronicle.Lines().size(), 4u);
  for (int i = 0; i < 60; ++i) chronicle.Note(std::to_string(i));
  EXPECT_EQ(chronicle.Lines().size(), Chronicle::kLines);
  EXPECT_EQ(chronicle.Lines().front().text, "10");
}

}  // namespace
}  // namespace kelvo
