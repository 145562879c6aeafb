#include <gtest/gtest.h>

#include "cli/options.h"
#include "cli/progress.h"
#include "cli/table.h"
#include "inventory/journal_text.h"
#include "store/recordset.h"
#include "tests/cli_program.h"

namespace kelvo {
namespace {

using cli::ParsedArguments;
using cli::ReadArguments;
using testing_world::CliProgram;
using testing_world::Contains;
using testing_world::ReadFile;

const std::string kMacro = "\x1bGC\x1bGP8,40;\x1bGTHallo\x04";

TEST(CliArguments, WhatMakesNoSenseIsRefusedInGermanWithStatus2) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{}, "genau ein Befehl"},
      {{"tanzen"}, "tanzen"},
      {{"scan", "--laut"}, "--laut"},
      {{"scan", "--to"}, "--to braucht genau einen Wert"},
      {{"scan", "--from", "9", "--to", "8"}, "--from liegt hinter --to"},
      {{"scan", "--from", "1", "--quick"}, "--quick sucht immer ab Adresse 0"},
      {{"scan", "--json", "--csv"}, "schließen einander aus"},
      {{"scan", "--rate", "9601"}, "--rate kennt \"9601\" nicht"},
      {{"scan", "--frame", "9N1"}, "--frame"},
      {{"scan", "--handshake", "dtr"}, "--handshake"},
      {{"info"}, "--to fehlt"},
      {{"info", "--to", "1,,2"}, "nicht \"1,,2\""},
      {{"info", "--to", "7..3"}, "nicht \"7..3\""},
      {{"info", "--to", "255"}, "nicht \"255\""},
      {{"write", "--to", "1"}, "DATEI fehlt"},
      {{"write", "a.txt"}, "--to fehlt"},
      {{"write", "--continue", "--to", "1"}, "--continue setzt fort"},
      {{"check", "a", "--eeprom", "viel"}, "--eeprom braucht eine Zahl"},
      {{"check", "a", "--display", "240"}, "--display"},
      {{"render", "a"}, "--png fehlt"},
      {{"export", "a", "b"}, "genau eine DATEI"},
      {{"import", "a", "--laut"}, "--laut"},
      {{"import", "a", "--different", "maybe"}, "--different"}};
  for (const auto& [arguments, words] : cases) {
    const ParsedArguments parsed = ReadArguments(arguments);
    EXPECT_FALSE(parsed.options) << words;
    EXPECT_EQ(parsed.status, cli::WrongUse) << words;
    EXPECT_TRUE(Contains(parsed.text, words)) << parsed.text;
  }
}

TEST(CliArguments, ListsHelpAndOptionsAreUnderstood) {
  EXPECT_EQ(cli::AddressesIn("1,3,7..9,8,0"), (std::vector<int>{1, 3, 7, 8, 9, 0}));
  EXPECT_TRUE(ReadArguments({"info", "--to", "aktiv"}).options->to->active);
  const auto write = ReadArguments({"write", "--to", "5", "7=a.txt", "--prove", "--rate", "9600"});
  EXPECT_EQ(write.options->files, std::vector<std::string>{"7=a.txt"});
  EXPECT_TRUE(write.options->prove);
  EXPECT_EQ(write.options->line.rate, "9600");
  for (const std::vector<std::string>& asked :
       {std::vector<std::string>{"--help"}, {"write", "--help"}, {"--version"}}) {
    const ParsedArguments help = ReadArguments(asked);
    EXPECT_EQ(help.status, cli::AllWell);
    EXPECT_FALSE(help.text.empty());
    EXPECT_FALSE(Contains(help.text, "Options")) << help.text;
  }
  EXPECT_TRUE(Contains(ReadArguments({"import", "--help"}).text, " DATEI\n"));
  EXPECT_TRUE(Contains(ReadArguments({"check", "--help"}).text, " [DATEI...]\n"));
}

TEST(CliTable, JsonKeepsEveryCharacterAndTheOthersOneLineARow) {
  const cli::Table table{{{"a", "Größe"}, {"b", ""}, {"c", "Grund"}},
                         {{std::int64_t{7}, true, std::string("x, \"y\"\nz")},
                          {std::monostate(), false, std::string("ä\n\"ö\"")}}};
  EXPECT_EQ(TableText(table, cli::Form::Table),
            "Größe  Grund\n7      x, \"y\" z\n       ä \"ö\"\n");
  EXPECT_EQ(TableText(table, cli::Form::Csv),
            "a,b,c\n7,ja,\"x, \"\"y\"\" z\"\n,nein,\"ä \"\"ö\"\"\"\n");
  const auto json = nlohmann::json::parse(TableText(table, cli::Form::Json));
  EXPECT_EQ(json[0]["a"], 7);
  EXPECT_EQ(json[0]["c"], "x, \"y\"\nz");
  EXPECT_TRUE(json[1]["a"].is_null());
  EXPECT_EQ(json[1]["b"], false);
}

TEST(CliProgress, IsSeenOnATerminalAloneAndNeverLongerThanItsLine) {
  std::ostringstream piped;
  cli::Progress(piped, 0).Show("Adresse 1");
  EXPECT_EQ(piped.str(), "");
  std::ostringstream terminal;
  { cli::Progress(terminal, 5).Show("größer als die Zeile"); }
  EXPECT_EQ(terminal.str(), "\r\x1b[Kgröß\r\x1b[K");
}

TEST(CliCheck, MistakesAndTooLittleRoomEndWith1) {
  CliProgram program;
  const std::string& folder = program.folder.Path();
  program.Write("gut.txt", kMacro + "\r\n");
  program.Write("lang.txt", std::string(70000, 'x'));
  program.Write("tabelle.txt",
                "\x1b"
                "EWK999,80,31;");
  program.Write("leer.txt", "");
  const auto check = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"check", "--json"});
    return program.Run(more);
  };
  EXPECT_EQ(check({"7=" + folder + "/gut.txt"}), cli::AllWell) << program.out;
  EXPECT_EQ(program.Rows().size(), 0U) << program.out;
  EXPECT_EQ(check({"7=" + folder + "/gut.txt", "--eeprom", "40"}), cli::AllWell) << program.out;
  EXPECT_EQ(check({"7=" + folder + "/gut.txt", "--eeprom", "39"}), cli::SomethingFailed);
  EXPECT_EQ(check({folder + "/gut.txt", "--display", "30x30"}), cli::AllWell);
  EXPECT_GT(program.Rows().size(), 0U);  // it draws beside that display
  EXPECT_EQ(check({"8=" + folder + "/lang.txt"}), cli::SomethingFailed);
  ASSERT_EQ(program.Rows().size(), 1U) << program.out;
  EXPECT_EQ(program.Rows()[0]["laenge"], 70000 - 1023);
  for (const char* name : {"tabelle.txt", "leer.txt", "fehlt.txt"}) {
    EXPECT_EQ(check({folder + "/" + name}), cli::SomethingFailed) << name;
  }
  program.Write("auch.txt", kMacro);
  EXPECT_EQ(check({"7=" + folder + "/gut.txt", "7=" + folder + "/auch.txt"}), cli::SomethingFailed);
  EXPECT_EQ(program.Rows()[0]["datei"], folder + "/gut.txt, " + folder + "/auch.txt");
  // A text that begins like a picture's file is none.
  program.Write("bm.txt", "BM und mehr Text dahinter");
  EXPECT_EQ(check({"7=" + folder + "/bm.txt"}), cli::AllWell) << program.out;
  // Of a table what its command says counts.
  program.Write("codes.txt",
                "\x1b"
                "EWK4,80,1FF;");
  check({folder + "/codes.txt"});
  ASSERT_EQ(program.Rows().size(), 1U) << program.out;
  EXPECT_EQ(program.Rows()[0]["text"], "AT-Tabelle 4 codes");
  EXPECT_EQ(check({"256=" + folder + "/gut.txt"}), cli::WrongUse);
  EXPECT_EQ(check({"--record", "Begrüßung"}), cli::AllWell);
  EXPECT_EQ(check({"--record", "Bergrüßung"}), cli::WrongUse);
}

TEST(CliCheck, AFileWithReadableControlCharactersIsTheSameText) {
  EXPECT_EQ(cli::AddressesIn(""), std::nullopt);
  CliProgram program;
  program.Write("a.txt", kMacro);
  program.Write("b.txt", "\\eGC\\eGP8,40;\\eGTHallo\\x04\n");
  for (const char* name : {"a", "b"}) {
    const std::string file = program.folder.Path(name);
    ASSERT_EQ(program.Run({"render", file + ".txt", "--png", file + ".png"}), cli::AllWell);
  }
  const std::string png = ReadFile(program.folder.Path("a.png"));
  EXPECT_EQ(png.substr(1, 3), "PNG");
  EXPECT_EQ(png, ReadFile(program.folder.Path("b.png")));
  // On the standard output, each pixel four, and of a text that shows nothing another picture.
  program.Write("c.txt", "\x1bGC");
  ASSERT_EQ(program.Run({"render", program.folder.Path("c.txt"), "--png", "-"}), cli::AllWell);
  EXPECT_NE(program.out, png);
  EXPECT_EQ(program.Run({"render", "--record", "Rahmen", "--png", "/nowhere/x.png"}),
            cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "/nowhere/x.png"));
}

TEST(CliProject, ComesBackEqualAndIsWrittenOverNothingUnasked) {
  CliProgram program;
  const std::string file = program.folder.Path("a.kelvo");
  const auto change = [&](const std::string& text) {
    Database database(program.folder.Path("kelvo.mdb"));
    Recordset records(database, "Makro");
    records.Edit();
    records.Set("wert", text);
    records.Update();
  };
  ASSERT_EQ(program.Run({"export", file}), cli::AllWell) << program.err;
  const std::string exported = ReadFile(file);
  EXPECT_EQ(program.Run({"import", file, "--json"}), cli::AllWell);
  EXPECT_EQ(program.Rows().size(), 0U);
  change("\x1bGC");
  EXPECT_EQ(program.Run({"import", file, "--json"}), cli::SomethingFailed);
  EXPECT_EQ(program.Rows()[0]["bezeichnung"], "Begrüßung");
  EXPECT_TRUE(Contains(program.err, "Ein Satz ist hier anders")) << program.err;
  EXPECT_EQ(program.Run({"import", file, "--different", "take", "--dry-run"}), cli::AllWell);
  program.Run({"export", "-"});
  EXPECT_NE(program.out, exported);
  EXPECT_EQ(program.Run({"import", file, "--different", "take"}), cli::AllWell);
  program.Run({"export", "-"});
  EXPECT_EQ(program.out, exported);
  program.Run({"export", "-"});
  EXPECT_TRUE(Contains(program.out, "\"Andere Sätze\": []")) << "as the window does";
  EXPECT_FALSE(Contains(program.out, "Bestände")) << "nothing was written yet";
  program.Write("bestand.txt",
                JournalLine({{}, {"/dev/ttyS0", 3}, Event::FreeBytes, {}, {}, {}, 900}));
  program.Run({"export", "-"});
  EXPECT_TRUE(Contains(program.out, "Bestände"));
  program.Write("b.kelvo", exported.substr(0, exported.size() / 2));
  EXPECT_EQ(program.Run({"import", program.folder.Path("b.kelvo")}), cli::SomethingFailed);
  EXPECT_TRUE(Contains(program.err, "Zeile")) << program.err;
  EXPECT_EQ(program.Run({"export", "-", "--kind", "Quatsch"}), cli::WrongUse);
  program.outFails = true;
  EXPECT_EQ(program.Run({"export", "-"}), cli::SomethingFailed);
  program.outFails = false;
  // A folder that was mistyped is not made.
  const std::string nowhere = program.folder.Path("nowhere");
  EXPECT_EQ(program.Run({"export", "-", "--data", nowhere}), cli::SomethingFailed);
  EXPECT_FALSE(std::filesystem::exists(nowhere));
}

}  // namespace
}  // namespace kelvo
