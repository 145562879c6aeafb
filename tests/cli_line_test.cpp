#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "inventory/journal.h"
#include "link/addresses.h"
#include "link/commands.h"
#include "store/recordset.h"
#include "tests/cli_program.h"

// kelvo-cli and its Terminals.

namespace kelvo {
namespace {

using sim::Fault;
using testing_world::CliProgram;
using testing_world::Contains;
using testing_world::milliseconds;

/// The program dies here.
struct Killed {};

std::map<int, nlohmann::json> ByAddress(const nlohmann::json& rows) {
  std::map<int, nlohmann::json> sorted;
  for (const auto& row : rows) sorted[row["adresse"]] = row;
  return sorted;
}

TEST(CliWrite, OfFiftyExactlyTheThreeThatMisbehaveAreNamedWithTheirReasons) {
  CliProgram program;
  const std::map<int, std::pair<Fault, const char*>> faults{
      {7, {Fault::Silent, "Es antwortet nicht."}},
      {23, {Fault::Nak, "NAK"}},
      {41, {Fault::Garbled, "antwort"}}};
  for (int address = 1; address <= 50; ++address) {
    const auto fault = faults.find(address);
    program.world.Add(
        {.address = address, .fault = fault == faults.end() ? Fault::None : fault->second.first});
  }
  program.Write("gruss.txt", "\x1bGC\x1bGTHallo\x04");
  const std::string file = "7=" + program.folder.Path("gruss.txt");
  EXPECT_EQ(program.Run({"write", "--prove", "--to", "1..50", file, "--record", "gruss", "--json"}),
            cli::SomethingFailed);
  const auto rows = ByAddress(program.Rows());
  ASSERT_EQ(rows.size(), 50U);
  for (const auto& [address, row] : rows) {
    const auto fault = faults.find(address);
    EXPECT_EQ(row["fertig"], fault == faults.end()) << address << program.out;
    const std::string words = fault == faults.end() ? "" : fault->second.second;
    EXPECT_TRUE(Contains(row["grund"], words)) << row;
    EXPECT_EQ(row["grund"] == "", words.empty()) << row;
    EXPECT_EQ(row["geprueft"], fault == faults.end() ? 1 : 0);
  }

  // The window knows of it: it is recorded at the line's device, with its proof.
  WriteJournal journal(program.folder.Path(kJournalFile));
  journal.Refresh();
  const std::string device = program.folder.Path("simulator.tty");
  const Inventory inventory = journal.Of({device, 8});
  const Held* const held = inventory.At({ItemKind::Macro, 7});
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(held->proof, Proof::Checksum);
  EXPECT_EQ(held->item.name, "gruss");
  EXPECT_EQ(journal.Of({device, 7}).At({ItemKind::Macro, 7}), nullptr);

  // What was missing comes once they behave, and nothing else is written again.
  for (const auto& [address, fault] : faults) {
    program.world.At(static_cast<std::size_t>(address - 1)).SetFault(Fault::None);
  }
  const auto entries = journal.Entries().size();
  EXPECT_EQ(program.Run({"write", "--continue", "--prove"}), cli::AllWell) << program.out;
  journal.Refresh();
  std::set<int> since;
  for (std::size_t i = entries; i < journal.Entries().size(); ++i) {
    since.insert(journal.Entries()[i].terminal.address);
  }
  EXPECT_EQ(since, (std::set<int>{7, 23, 41}));
  EXPECT_EQ(program.Run({"write", "--continue"}), cli::SomethingFailed);
}

TEST(CliWrite, WithoutAProofSilenceAboutItIsNoFailureAndWithOneItIs) {
  CliProgram program;
  program.world.Add({.version = "1.9", .checksum = false, .address = 3});
  program.world.Add({.address = 4});
  for (const bool prove : {false, true}) {
    std::vector<std::string> arguments{"write", "--to", "3,4", "--record", "Begrüßung", "--json"};
    if (prove) arguments.emplace_back("--prove");
    EXPECT_EQ(program.Run(arguments), prove ? cli::SomethingFailed : cli::AllWell);
    auto rows = ByAddress(program.Rows());
    EXPECT_EQ(Contains(rows[3]["grund"], "keine Prüfsumme"), prove) << program.out;
    EXPECT_EQ(rows[4]["geprueft"], prove ? 1 : 0);
  }
  EXPECT_TRUE(program.world.At(0).Memory().Read(sim::Eeprom::Kind::Macro, 1).has_value());
  EXPECT_TRUE(program.world.port.written.ends_with(SelectAddress(kClosingAddress).Text()));
}

TEST(CliWrite, AProjectGoesWithoutItsPicturesAndABitmapFileBecomesABitmap) {
  using Kind = sim::Eeprom::Kind;
  CliProgram program;
  const sim::Terminal& terminal = program.world.Add({.address = 3});
  const std::string project = program.folder.Path("a.kelvo");
  program.Write("a.kelvo", R"({"kelvo": 1, "Auszug": ["Makros", "Grafiken"], "Makros": [
      {"Nummer": 7, "Bezeichnung": "mit", "Inhalt": ["\\eGC"]}],
      "Grafiken": [{"Bezeichnung": "Bild", "Inhalt": ["\\eGC"]}]})");
  // Two rows of one pixel each, of which the lower one is black.
  const std::string head("BM\x3e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x01\0\0\0\x02\0\0\0\x01\0\x18\0",
                         30);
  program.Write("b.bmp", head + std::string(28, '\0') + std::string("\xff\xff\xff\0", 4));
  EXPECT_EQ(program.Run({"write", "--to", "3", project, "9=" + program.folder.Path("b.bmp")}),
            cli::AllWell)
      << program.err;
  EXPECT_EQ(terminal.Memory().Read(Kind::Macro, 7), "\x1bGC");
  EXPECT_TRUE(terminal.Memory().Read(Kind::Bitmap, 9).has_value());
  EXPECT_EQ(terminal.Memory().Records().size(), 2U);
  EXPECT_TRUE(Contains(program.world.port.written, "EWB9,1,2,0080;"));
  // Named by itself it is asked for, and has no number.
  EXPECT_EQ(program.Run({"write", "--to", "3", project, "--record", "Bild"}), cli::SomethingFailed);
}

TEST(CliWrite, AMacroOfAProjectThatCannotGoIsSaidAndHoldsAllBack) {
  CliProgram program;
  program.world.Add({.address = 3});
  const std::string project = program.folder.Path("a.kelvo");
  program.Write("a.kelvo", R"({"kelvo": 1, "Auszug": ["Makros"], "Makros": [
      {"Bezeichnung": "ohne", "Inhalt": ["x"]},
      {"Nummer": 7, "Bezeichnung": "mit", "Inhalt": ["x"]},
      {"Nummer": 300, "Bezeichnung": "hoch", "Inhalt": ["x"], "Unverändert": ["Nummer"]}]})");
  EXPECT_EQ(program.Run({"write", "--to", "3", project}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "a.kelvo: Makro „ohne“: „ohne“ hat keine Nummer"));
  EXPECT_TRUE(Contains(program.err, "„hoch“ hat die Nummer 300")) << program.err;
  EXPECT_EQ(program.Run({"write", "--to", "3", project, "--record", "hoch"}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "die Nummer 300")) << program.err;
  EXPECT_EQ(program.Run({"check", project}), cli::SomethingFailed);
  EXPECT_EQ(program.world.port.written, "");
  EXPECT_EQ(program.Run({"write", "--to", "3", project, "--record", "mit"}), cli::AllWell);
}

TEST(CliWrite, WhatTheListSaysCannotBeProvenIsSaidBeforeAnythingIsSent) {
  CliProgram program;
  program.world.Add({.address = 3});
  program.Write("a.txt", "x");
  {
    Database database(program.folder.Path("kelvo.mdb"));
    Recordset terminals(database, "DOVU");
    terminals.AddNew();
    terminals.Set("Adresse", std::int64_t{3});
    terminals.Set("Bezeichnung", std::string("Tor"));
    terminals.Set("Checksum", std::int64_t{0});
    terminals.Update();
  }
  std::vector<std::string> write{"write", "--to", "3", "7=" + program.folder.Path("a.txt")};
  EXPECT_EQ(program.Run(write), cli::AllWell);
  program.world.port.written.clear();
  write.emplace_back("--prove");
  EXPECT_EQ(program.Run(write), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "Tor, Adresse 3: Die Liste")) << program.err;
  EXPECT_TRUE(Contains(program.err, "Es wurde nichts gesendet")) << program.err;
  EXPECT_EQ(program.world.port.written, "");
}

TEST(CliWrite, AnUnpluggedLineIsNoStop) {
  CliProgram program;
  program.world.Add({.address = 3});
  program.Write("a.txt", std::string(300, 'x'));
  program.After(150, [&] { program.world.port.Lose(); });
  EXPECT_EQ(program.Run({"write", "--to", "3", "7=" + program.folder.Path("a.txt")}),
            cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "simulator.tty ist verloren gegangen")) << program.err;
  EXPECT_FALSE(Contains(program.err, "Angehalten")) << program.err;
  EXPECT_EQ(program.Run({"write", "--continue", "--prove"}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "ohne --prove begonnen")) << program.err;
  EXPECT_EQ(program.Run({"write", "--continue"}), cli::AllWell) << program.err;
}

TEST(CliWrite, WhatCannotBeWrittenWholeIsNotBegun) {
  CliProgram program;
  program.world.Add({.address = 3});
  program.Write("gruss.txt", "Hallo");
  const std::string file = program.folder.Path("gruss.txt");
  EXPECT_EQ(program.Run({"write", "--to", "3", file}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "keine Nummer")) << program.err;
  EXPECT_EQ(
      program.Run({"write", "--to", "3", "7=" + file, "--record", "gruss", "--port", "Com 9"}),
      cli::WrongUse);
  EXPECT_EQ(program.Run({"write", "--to", "aktiv", "7=" + file}), cli::WrongUse);
  program.world.port.openError = PortInUse;
  EXPECT_EQ(program.Run({"write", "--to", "3", "7=" + file}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "Schnittstelle belegt")) << program.err;
  EXPECT_EQ(program.world.port.written, "");
}

TEST(CliWrite, InterruptedAnywhereAndContinuedLeavesTheSameInTheEeproms) {
  std::mt19937 dice(20261122);
  const auto make = [](CliProgram& program) {
    for (const int address : {3, 5}) program.world.Add({.address = address});
    program.Write("lang.txt", std::string(300, 'x'));
    program.Write("tabelle.txt",
                  "\x1b"
                  "EWK4,41,61,42,63;");
  };
  const auto arguments = [](const CliProgram& program) {
    return std::vector<std::string>{"write",
                                    "--prove",
                                    "--to",
                                    "3,5",
                                    "9=" + program.folder.Path("lang.txt"),
                                    program.folder.Path("tabelle.txt")};
  };
  CliProgram whole;
  make(whole);
  ASSERT_EQ(whole.Run(arguments(whole)), cli::AllWell) << whole.err;
  const auto characters = static_cast<int>(whole.world.port.written.size());
  const auto wanted = whole.world.At(0).Memory().Records();
  for (int round = 0; round < 100; ++round) {
    CliProgram program;
    make(program);
    const int kind = round % 3;
    program.After(1 + static_cast<int>(dice() % static_cast<unsigned>(characters - 20)), [&] {
      if (kind == 2) throw Killed();
      program.interrupt();
      if (kind == 1) program.interrupt();
    });
    cli::Status status = cli::SomethingFailed;
    try {
      status = program.Run(arguments(program));
      EXPECT_TRUE(status == cli::AllWell || Contains(program.err, "write --continue"))
          << program.err;
    } catch (const Killed&) {
    }
    program.world.loop.RunFor(milliseconds(dice() % 3000));
    // Before its first entry there is nothing to go on with.
    if (status != cli::AllWell) status = program.Run({"write", "--continue", "--prove"});
    if (Contains(program.err, "nichts fortzusetzen")) status = program.Run(arguments(program));
    ASSERT_EQ(status, cli::AllWell) << round << program.err << program.out;
    for (const std::size_t index : {0U, 1U}) {
      ASSERT_EQ(program.world.At(index).Memory().Records(), wanted) << round;
    }
  }
}

TEST(CliScan, TellsWhoIsThereAndStopsWhenItIsInterrupted) {
  CliProgram program;
  for (const int address : {2, 4, 4}) program.world.Add({.address = address});
  EXPECT_EQ(program.Run({"scan", "--from", "1", "--to", "6", "--json"}), cli::SomethingFailed);
  auto rows = ByAddress(program.Rows());
  EXPECT_EQ(rows[2]["version"], "2.10F");
  EXPECT_EQ(rows[4]["gefunden"], false) << program.out;
  EXPECT_NE(rows[4]["erlaeuterung"], "");
  EXPECT_EQ(rows.count(1), 0U);
  EXPECT_EQ(program.Run({"scan", "--to", "3", "--quick", "--all", "--json"}), cli::AllWell);
  EXPECT_EQ(program.Rows().size(), 4U);
  program.progressWidth = 80;
  program.After(60, [&] { program.interrupt(); });
  EXPECT_EQ(program.Run({"scan"}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "Angehalten nach")) << program.err;
  EXPECT_TRUE(Contains(program.err, "von 253")) << program.err;
  program.After(60, [&] { program.world.port.Lose(); });
  EXPECT_EQ(program.Run({"scan"}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "verloren gegangen")) << program.err;
  EXPECT_TRUE(Contains(program.err, "Abgebrochen nach")) << program.err;
  EXPECT_FALSE(Contains(program.err, "Niemand hat geantwortet")) << program.err;
}

TEST(CliInfo, AsksEachAndNamesTheSilent) {
  CliProgram program;
  program.world.Add({.address = 2});
  program.world.Add({.address = 3, .fault = Fault::Silent});
  EXPECT_EQ(program.Run({"info", "--to", "2,3", "--json"}), cli::SomethingFailed);
  auto rows = ByAddress(program.Rows());
  EXPECT_EQ(rows[2]["version"], "2.10F");
  EXPECT_TRUE(Contains(rows[2]["info"], "240 x 128")) << rows[2];
  EXPECT_EQ(rows[2]["frei"], 8192) << rows[2];
  EXPECT_EQ(rows[2]["textposition"], "1,1");
  EXPECT_EQ(rows[3]["grund"], "keine Antwort");
  EXPECT_EQ(program.Run({"info", "--to", "2"}), cli::AllWell);
}

TEST(CliCompare, WhatIsOtherInTheDatabaseThanInTheTerminalEndsWith1) {
  CliProgram program;
  program.world.Add({.address = 2});
  ASSERT_EQ(program.Run({"write", "--to", "2", "--record", "Begrüßung"}), cli::AllWell);
  EXPECT_EQ(program.Run({"compare", "--read", "--all", "--json"}), cli::AllWell) << program.out;
  const auto all = program.Rows();
  const auto row = std::find_if(all.begin(), all.end(),
                                [](const auto& some) { return some["was"] == "Makro 1"; });
  ASSERT_NE(row, all.end());
  EXPECT_EQ((*row)["ergebnis"], "gleich");
  program.Write("anders.txt", "Hallo");
  program.Run({"write", "--to", "2", "9=" + program.folder.Path("anders.txt")});
  EXPECT_EQ(program.Run({"compare", "--to", "2"}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.out, "nicht in der Datenbank")) << program.out;
}

}  // namespace
}  // namespace kelvo
