#include "project/project_text.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/wire_text.h"
#include "inventory/journal_text.h"
#include "project/notation.h"
#include "tests/drawing_samples.h"
#include "tests/random_project.h"

namespace kelvo {
namespace {

Project ReadBack(const std::string& text) {
  const ReadResult read = ReadProject(text);
  const auto* const fault = std::get_if<ProjectFault>(&read);
  if (fault != nullptr) ADD_FAILURE() << FaultText(*fault);
  return fault != nullptr ? Project() : std::get<Project>(read);
}

ProjectRecord Macro(int number, std::string name, const std::string& wire) {
  return {ProjectKind::Macro,
          {std::int64_t{number}, std::move(name), Value(), Value(), ScreenText(wire)}};
}

Project ProjectWith(std::vector<ProjectRecord> records) {
  Project project;
  project.records = std::move(records);
  return project;
}

std::string TextOf(const Project& project) { return ProjectText(project).value_or("stopped"); }

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines{""};
  for (const char c : text) c == '\n' ? lines.emplace_back() : lines.back().append(1, c);
  return lines;
}

TEST(ProjectTextTest, ReadsAsItIsDocumented) {
  Project project = ProjectWith(
      {Macro(7, "Begrüßung \\e", "\x1bGC\x1bGP8,40;Zeile\r\n\x1bGT\xe4\\\"\x04"),
       {ProjectKind::Terminal, {std::int64_t{3}, "Halle", std::int64_t{1}, std::int64_t{0}}}});
  project.partly = {ProjectKind::Macro};
  EXPECT_EQ(TextOf(project), R"({
  "kelvo": 1,
  "Auszug": ["Makros"],
  "Makros": [
    {
      "Nummer": 7,
      "Bezeichnung": "Begrüßung \\\\e",
      "Inhalt": [
        "\\eGC",
        "\\eGP8,40;",
        "Zeile\\x0D\\x0A",
        "\\eGTä\\\\\"\\x04"
      ]
    }
  ],
  "Terminals": [
    {"Adresse": 3, "Bezeichnung": "Halle", "Prüfsumme": true, "aktiv": false}
  ]
}
)");
}

TEST(ProjectTextTest, EveryTextComesBackWhateverItHolds) {
  RandomProject random(7);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = random.AnyText(80);
    std::string joined;
    for (const std::string_view piece : CommandPieces(text)) joined += piece;
    ASSERT_EQ(joined, text);
    ASSERT_EQ(PlainNotation(Notation(text)), text);
  }
}

TEST(ProjectTextTest, SameContentGivesSameBytesInWhateverOrderItCame) {
  RandomProject random(3);
  Project project = random.Next(600);
  project.drawings = {{"b.wmf", RandomDrawings(1).Next()}, {"a.wmf", RandomDrawings(2).Next()}};
  const std::string text = TextOf(project);
  std::reverse(project.records.begin(), project.records.end());
  std::reverse(project.drawings.begin(), project.drawings.end());
  EXPECT_EQ(TextOf(project), text);
  EXPECT_EQ(TextOf(ReadBack(text)), text);
}

TEST(ProjectTextTest, OneChangedCommandChangesOneLine) {
  const auto lines = [](const char* last) {
    return LinesOf(
        TextOf(ProjectWith({Macro(1, "eins", std::string("\x1bGC\x1bGP1,1;\x1bGL") + last)})));
  };
  const auto before = lines("2,2;");
  const auto after = lines("9,9;");
  ASSERT_EQ(before.size(), after.size());
  int changed = 0;
  for (std::size_t i = 0; i < before.size(); ++i) changed += before[i] != after[i] ? 1 : 0;
  EXPECT_EQ(changed, 1);
}

TEST(ProjectTextTest, DrawingsComeBackObjectForObjectOneLineEach) {
  RandomDrawings random(11);
  for (int round = 0; round < 100; ++round) {
    Project project;
    project.kinds = {ProjectKind::Drawing};
    project.drawings = {{"Plan.wmf", random.Next()}};
    const std::string text = TextOf(project);
    ASSERT_EQ(ReadBack(text), project) << text;
  }
  DrawingObject picture = PictureAt({3, 9}, Picture(2, 2, {1, 1, 0xFFFFFF, 0x0000FF}));
  picture.source = PictureSource(Picture(3, 1, {kBlack, 0x102030, kWhite}));
  picture.preparation.threshold = 0;
  picture.preparation.margins = {1, 0, 0, 0};
  picture.preparation.dithering = Dithering::Ordered;
  picture.preparation.contrast = -30;
  picture.preparation.grey = true;
  Project project;
  project.kinds = {ProjectKind::Drawing};
  project.drawings = {{"Bild.wmf", {GroupOf({picture, picture}), Erasing(picture)}}};
  const Project read = ReadBack(TextOf(project));
  EXPECT_EQ(read, project);
  const Drawing& members = read.drawings.front().drawing.front().members;
  EXPECT_TRUE(members[0].source.Shares(members[1].source));
}

TEST(ProjectTextTest, EntriesOfTheJournalComeBackInTheirOrder) {
  Project project;
  project.kinds = {ProjectKind::Inventory};
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  const auto time = JournalTime(std::chrono::milliseconds(1'800'000'000'123));
  const ItemChange macro{ItemChange::Kind::Written, {ItemKind::Macro, 7}};
  project.inventory = {{time, {"/dev/tty\tS0", 255}, Event::Acknowledged, macro, "Größe \\", all},
                       {time, {"com", kUnknownAddress}, Event::FreeBytes, {}, {}, {}, 512}};
  EXPECT_EQ(ReadBack(TextOf(project)), project);
}

// A text that is damaged, and what the reader says of it.
struct Damaged {
  std::string text;
  const char* said;
};

std::string Whole(const std::string& macro) {
  return "{\n\"kelvo\": 1,\n\"Makros\": [\n" + macro + "\n]}\n";
}

std::string Content(const std::string& member) {
  return Whole(R"({"Nummer": 7, "Bezeichnung": "x", )" + member + "}");
}

std::string OneObject(const std::string& object) {
  return "{\"kelvo\": 1, \"Zeichnungsdateien\": [{\"Name\": \"a\", \"Objekte\": [\n" + object +
         "]}]}";
}

std::vector<Damaged> DamagedTexts() {
  const std::string deep(300, '[');
  return {
      {"", "Zeile 1, Spalte 1: Die Datei ist leer"},
      {"  \n ", "leer"},
      {"nein", "Zeile 1, Spalte 2: Das ist weder"},
      {"7", "Zeile 1, Spalte 1: Hier muss etwas in { }"},
      {"[]", "Hier muss etwas in { }"},
      {"{", "endet mittendrin"},
      {"{}", "„kelvo“ mit der Version fehlt"},
      {"{\"Makros\": []}", "„kelvo“ mit der Version fehlt"},
      {"{\"kelvo\": 1", "endet mittendrin"},
      {"{\"kelvo\": 1,}", "Spalte 13: Hier ist etwas anderes zu erwarten"},
      {"{\"kelvo\": 1} []", "Spalte 14: Hinter dem Ende"},
      {"{\"kelvo\": 2}", "Version 2 und kommt von einem neueren"},
      {"{\"kelvo\": 2, \"Neues\": 1}", "neueren"},
      {"{\"kelvo\": 0}", "Version 0 gibt es nicht"},
      {"{\"kelvo\": -1}", "Version -1 gibt es nicht"},
      {"{\"kelvo\": \"1\"}", "Spalte 11 (kelvo): Hier muss eine ganze Zahl"},
      {"{\"kelvo\": 1.5}", "(kelvo): Hier muss eine ganze Zahl"},
      {"{\"kelvo\": 1, \"kelvo\": 1}", "Spalte 14: „kelvo“ steht hier zum zweiten Mal"},
      {"{\"kelvo\": 1,\n \"Neues\": []}", "Zeile 2, Spalte 11: „Neues“ ist hier nicht bekannt"},
      {"{\"kelvo\": 1, \"Makros\": {}}", "(Makros): Hier muss eine Liste"},
      {"{\"kelvo\": 1, \"Makros\": [], \"Makros\": []}", "zum zweiten Mal"},
      {"{\"kelvo\": 1, \"Auszug\": [\"Makros\"]}", "„Makros“ enthält die Datei nicht"},
      {"{\"kelvo\": 1, \"Makros\": [], \"Auszug\": [\"Makros\", \"Makros\"]}", "zweiten Mal"},
      {"{\"kelvo\": 1, \"Makros\": [], \"Auszug\": [\"Quatsch\"]}", "enthält die Datei nicht"},
      {"{\"kelvo\": 1, \"Makros\": [], \"Auszug\": true}", "(Auszug): Hier muss eine Liste"},
      {Whole("7"), "Zeile 4, Spalte 1 (Makros, Satz 1): Hier muss etwas in { }"},
      {Whole("{}"), "„Bezeichnung“ fehlt"},
      {Whole("{\"Nummer\": 7}"), "(Makro 7): „Bezeichnung“ fehlt"},
      {Whole("{\"Bezeichnung\": 5}"), "Bezeichnung): Hier muss ein Text"},
      {Whole("{\"Bezeichnung\": \"x\",\n\"Nr\": 5}"), "Zeile 5, Spalte 7 (Makro „x“): „Nr“"},
      {Content("\"Inhalt\": \"x\""), "(Makro 7 „x“, Inhalt): Hier muss eine Liste"},
      {Content("\"Inhalt\": [\n\"a\",\n\"b\",\n5]"),
       "Zeile 7, Spalte 1 (Makro 7 „x“, Inhalt, Befehl 3)"},
      {Content("\"Inhalt\": [null]"), "Befehl 1): Hier muss ein Text"},
      {Content("\"Inhalt\": [\"\\\\q\"]"), "Befehl 1): Hinter \\ steht"},
      {Content("\"Inhalt\": [\"\\\\x4\"]"), "Hinter \\ steht"},
      {Content("\"Inhalt\": [\"\\\\xgg\"]"), "Hinter \\ steht"},
      {Content("\"Inhalt\": [\"\\\\\"]"), "Hinter \\ steht"},
      {Content("\"Inhalt\": [\"\\e\"]"), "umgekehrte Schrägstrich"},
      {Content("\"Inhalt\": [\"\x1bGC\"]"), "Steuerzeichen"},
      {Content("\"Inhalt\": [\"a\nb\"]"), "Zeile 4, Spalte 48: Ein Steuerzeichen"},
      {Content("\"Inhalt\": [\"\xff\"]"), "Zeile 4, Spalte 47: Hier steht kein gültiges UTF-8"},
      {Content("\"Inhalt\": [\"\xc0\xaf\"]"), "kein gültiges UTF-8"},
      {Content("\"Inhalt\": [\"\xed\xa0\x80\"]"), "kein gültiges UTF-8"},
      {Content("\"Inhalt\": [\"\\ud800\"]"), "\\u bezeichnet hier kein Zeichen"},
      {Content("\"Inhalt\": [\"\\u12\"]"), "\\u bezeichnet hier kein Zeichen"},
      {Content("\"Ausgang\": [1]"), "Ausgang): Hier muss ein Text"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": true}"), "Nummer): Hier muss eine ganze Zahl"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 1e999}"), "Die Zahl ist zu groß"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 99999999999999999999}"),
       "Spalte 32: Die Zahl ist zu groß"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 9223372036854775808}"), "Die Zahl ist zu groß"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 07}"), "etwas anderes zu erwarten"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": -}"), "keine gültige Zahl"},
      {"{\"kelvo\": 1, \"Makros\": " + deep, "zu tief verschachtelt"},
      {"{\"kelvo\": 1, \"Terminals\": [{\"Adresse\": 3, \"aktiv\": \"ja\", \"x\": 1}]}",
       "„x“ ist hier"},
      {"{\"kelvo\": 1, \"Terminals\": [{\"aktiv\": true}]}", "„Adresse“ fehlt"},
      {"{\"kelvo\": 1, \"Schnittstellen\": [{\"Satz\": []}]}", "eine ganze Zahl"},
      {"{\"kelvo\": 1, \"Optionen\": [{}]}", "(Optionen): „FensterMitZoomen“ fehlt"},
      {"{\"kelvo\": 1, \"Display\": [{\"Breite\": 240, \"Höhe\": 128}, {}]}", "nur einen Satz"},
      {"{\"kelvo\": 1, \"Display\": [{\"Breite\": \"99999\", \"Höhe\": 2}]}", "von 20 bis 640"},
      {Whole("{\"Bezeichnung\": \"x\",\n\"Nummer\": 300}"),
       "Zeile 5, Spalte 11 (Makro 300 „x“, Nummer): Hier geht es von -1 bis 255."},
      {Whole("{\"Bezeichnung\": \" \"}"), "Bezeichnung): Eine Bezeichnung ist nicht leer"},
      {Whole("{\"Bezeichnung\": \"a\\nb\"}"), "Bezeichnung): Eine Bezeichnung ist nicht leer"},
      {Content("\"Inhalt\": [\"" + std::string(1024, 'x') + "\"]"),
       "Inhalt): Ein Makro hat höchstens 1023 Zeichen; hier sind es 1024."},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": \"300\"}"), "von -1 bis 255"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": \"zwei\"}"),
       "Nummer): Hier muss eine ganze Zahl"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 2.5}"), "Nummer): Hier muss eine ganze Zahl"},
      {Whole("{\"Bezeichnung\": \"x\", \"Nummer\": 1},\n{\"Bezeichnung\": \" x \"}"),
       "Zeile 5, Spalte 17 (Makro „ x “, Bezeichnung): Die Bezeichnung hat schon Makro 1 „x“; "},
      {"{\"kelvo\": 1, \"Anschlüsse\": [{\"Com\": 2}, {\"Com\": 2}]}",
       "(Com 2, Com): Die Nummer hat schon Com 2."},
      {Content("\"Unverändert\": [\"Art\"]"), "Unverändert, Wort 1): „Art“ ist hier nicht bekannt"},
      {Content("\"Unverändert\": true"), "Unverändert): Hier muss eine Liste"},
      {"{\"kelvo\": 1, \"Anschlüsse\": [{\"Com\": 9}]}", "(Com 9, Com): Hier geht es von 1 bis 6"},
      {"{\"kelvo\": 1, \"Terminals\": [{\"Adresse\": 256}]}", "Hier geht es von 0 bis 255"},
      {"{\"kelvo\": 1, \"Terminals\": [{\"Adresse\": 3, \"aktiv\": 7}]}", "true oder false"},
      {"{\"kelvo\": 1, \"Terminals\": [{\"Adresse\": 3, \"aktiv\": \"ja\"}]}", "true oder false"},
      {"{\"kelvo\": 1, \"Bestände\": [[\"a\"]]}",
       "(Bestände, Eintrag 1): Ein Eintrag hat 8 Spalten"},
      {"{\"kelvo\": 1, \"Bestände\": [[\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\"]]}",
       "kein Eintrag"},
      {TextOf({{}, {}, {{{}, {"COM1", 256}, Event::FreeBytes, {}, {}, {}, 9}}, {}, {}}),
       "(Bestände, Eintrag 1): Adressen gehen von 0 bis 255"},
      {"{\"kelvo\": 1, \"Zeichnungsdateien\": [{}]}", "„Name“ fehlt"},
      {OneObject("{}"),
       "Zeile 2, Spalte 1 (Zeichnungsdateien, Zeichnung 1, Objekte, Objekt 1): „Art“"},
      {OneObject("{\"Art\": \"Wolke\"}"), "„Wolke“ ist kein Objekt"},
      {OneObject("{\"Art\": \"Linie\", \"Punkte\": [1, 2, 3]}"), "fehlt das y"},
      {OneObject("{\"Art\": \"Linie\", \"Ecken\": [1]}"), "4 Werte"},
      {OneObject("{\"Art\": \"Linie\", \"Ecken\": [1, 2, 3, 3000000000]}"), "Hier geht es von"},
      {OneObject("{\"Art\": \"Text\", \"Schrift\": [1, 1, 1, \"rosa\"]}"), "„rosa“"},
      {OneObject("{\"Art\": \"Text\", \"Text\": \"\xe2\x82\xac\"}"),
       "das ein Terminal nicht kennt"},
      {OneObject("{\"Art\": \"Bild\", \"Bild\": [2, 2, \"ffffff*3\"]}"), "nicht vollständig"},
      {OneObject("{\"Art\": \"Bild\", \"Bild\": [2, 2, \"ffffff*5\"]}"), "nicht lesbar"},
      {OneObject("{\"Art\": \"Bild\", \"Bild\": [20000, 20000, \"0*1\"]}"), "zu groß"},
      {OneObject("{\"Art\": \"Bild\", \"Quelle\": [2, 2, \"AAAA\"]}"), "Quelle des Bildes"},
      {OneObject("{\"Art\": \"Bild\", \"Aufbereitung\": {\"Drehung\": 4}}"), "von 0 bis 3"}};
}

TEST(ProjectTextTest, WhatIsDamagedIsRefusedWithPlaceAndReason) {
  const std::vector<Damaged> all = DamagedTexts();
  EXPECT_GE(all.size(), 60U);
  for (const auto& [text, said] : all) {
    const ReadResult read = ReadProject(text);
    const auto* const fault = std::get_if<ProjectFault>(&read);
    ASSERT_NE(fault, nullptr) << text;
    EXPECT_NE(FaultText(*fault).find(said), std::string::npos) << text << "\n" << FaultText(*fault);
    EXPECT_GT(fault->line, 0U) << text;
  }
}

// Whatever is cut off or changed: an answer, and never the text for a whole one.
TEST(ProjectTextTest, EveryBeginningOfAFileIsRefused) {
  RandomProject random(5);
  std::string text = TextOf(random.Next(6));
  text.resize(text.rfind('}'));
  for (std::size_t length = 0; length <= text.size(); ++length) {
    ASSERT_TRUE(std::holds_alternative<ProjectFault>(ReadProject(text.substr(0, length))))
        << length;
  }
}

TEST(ProjectTextTest, LongWorkCanBeStopped) {
  RandomProject random(5);
  const Project project = random.Next(2000);
  const auto stop = [](std::size_t, std::size_t) { return false; };
  EXPECT_EQ(ProjectText(project, stop), std::nullopt);
  EXPECT_TRUE(std::holds_alternative<Stopped>(ReadProject(TextOf(project), stop)));
}

TEST(ReadableLines, ShowTheBlanksAroundAName) {
  const auto name = [](const char* text) {
    return ReadableLines({ProjectKind::Macro, {Value(), text, Value(), Value(), Value()}}).front();
  };
  EXPECT_EQ(name("Rahmen"), "Bezeichnung: Rahmen");
  EXPECT_EQ(name("Rahmen "), "Bezeichnung: „Rahmen “");
}

}  // namespace
}  // namespace kelvo
