#include <gtest/gtest.h>

#include <algorithm>

#include "inventory/statement_words.h"
#include "sheet/characters.h"
#include "sheet/keyboard_chapters.h"
#include "sheet/macro_chapters.h"
#include "tests/sheet_samples.h"
#include "tests/test_fonts.h"
#include "twin/preview.h"

namespace kelvo {
namespace {

class SheetTest : public testing::Test, protected SheetSample {
 protected:
  Sheet Now() const { return Made(Sources(), TestFonts()); }
  /// The cells behind the first one with this text, up to the end of its row, joined.
  static std::string Behind(const Sheet& sheet, const std::string& cell) {
    for (const SheetPart& part : sheet.parts) {
      for (const SheetBlock& block : part.blocks) {
        const auto* table = std::get_if<SheetTable>(&block);
        if (table == nullptr) continue;
        for (const auto& row : table->rows) {
          const auto found = std::find(row.begin(), row.end(), cell);
          if (found == row.end()) continue;
          std::string words;
          for (auto next = found + 1; next != row.end(); ++next) words += *next + "|";
          return words;
        }
      }
    }
    return "-";
  }
  static bool Says(const Sheet& sheet, const std::string& words) {
    const auto texts = TextsOf(sheet);
    return std::any_of(texts.begin(), texts.end(), [&words](const std::string& text) {
      return text.find(words) != std::string::npos;
    });
  }
};

// The times of the sample, without their figures.
std::string Timeless(std::string text) {
  for (char& sign : text) {
    if (sign >= '0' && sign <= '9') sign = '#';
  }
  return text;
}

TEST_F(SheetTest, EachStatementSaysWhatItRestsOn) {
  const TerminalId tor = AddTerminal(3, "Tor");
  const TerminalId all{kDevice, 255};
  Written(tor, WriteMakro(1, "eins"), "Gruß");
  Written(tor, WriteMakro(2, "zwei"), "");
  Note(tor, Event::Proven, *ItemOf(WriteMakro(2, "zwei").Text()));
  Written(all, WriteMakro(4, "vier"), "Ruf");
  Note(tor, Event::Silent, *ItemOf(WriteMakro(5, "fünf").Text(), "Fünf"));
  records = {{1, "Makro", "Gruß", 1, "eins"}, {2, "Makro", "Uhr", 9, "neun"}};
  Read(tor, CommandName::AskVersion, "2.10F");
  const Sheet sheet = Now();
  EXPECT_EQ(Timeless(Behind(sheet, "Gruß")),
            "#|geschrieben und bestätigt ##.##.#### ##:##|gleich|");
  EXPECT_EQ(Timeless(Behind(sheet, "2")),
            "ohne Namen|#|geschrieben und geprüft ##.##.#### ##:##|nicht in der Datenbank|");
  EXPECT_EQ(Timeless(Behind(sheet, "Ruf")),
            "#|an alle geschrieben und bestätigt ##.##.#### ##:##|unbekannt|");
  EXPECT_EQ(Timeless(Behind(sheet, "5")),
            "nicht bekannt|–|ungewiss: keine Antwort, ##.##.#### ##:##|–|");
  EXPECT_EQ(Timeless(Behind(sheet, "Version")), "#.##F|gelesen ##.##.#### ##:##|");
  EXPECT_EQ(Behind(sheet, "Eingänge P1"), "nicht gelesen|nicht gelesen|");
  EXPECT_EQ(Behind(sheet, "Baudrate"), "19200 Bit/s|Datenbank|");
  EXPECT_EQ(Behind(sheet, "Uhr"), "4|Datenbank|") << "in no Terminal";
  EXPECT_FALSE(Says(sheet, "Zu lang für ein Makro"));
  EXPECT_TRUE(Says(sheet, "Was sonst im EEPROM liegt, ist nicht bekannt"));
  EXPECT_TRUE(Says(sheet, "Freier Platz: nicht gelesen."));
  EXPECT_TRUE(Says(sheet, "Die aktive Tabelle ist nicht gelesen."));
  EXPECT_TRUE(Says(sheet, "Nicht bekannt: Von hier wurde keine gespeichert"));

  records.push_back({3, "Makro", "lang", 10, std::string(1024, 'x')});
  EXPECT_TRUE(Says(Now(), "Zu lang für ein Makro"));
  // A Terminal that tells what cannot be.
  for (const int bytes : {8000, 100}) {
    Journal().Add(
        {JournalTime(std::chrono::minutes(30'000'000)), tor, Event::FreeBytes, {}, {}, {}, bytes});
  }
  EXPECT_NE(Behind(Now(), "Gruß").find("gilt als unbekannt"), std::string::npos);
  Journal().Add({{}, tor, Event::Acknowledged, {ItemChange::Kind::Erased, {}}, {}, {}, 0});
  EXPECT_TRUE(Says(Now(), "Sonst liegt im EEPROM nichts: Es wurde von hier gelöscht"));
  EXPECT_EQ(Behind(Now(), "Gruß"), "4|Datenbank|") << "lies there no more";
}

TEST_F(SheetTest, SameSourcesGiveTheSameSheetAndTheDateOnlyWhenWanted) {
  const TerminalId tor = AddTerminal(3, "Tor");
  Written(tor, WriteMakro(1, "\x1BGC\x1BGP3,4;\x1BGL30,40;"), "Strich");
  EXPECT_EQ(Now(), Now());
  EXPECT_FALSE(Says(Now(), "Erstellt am"));
  SheetSources dated = Sources();
  dated.made = JournalTime();
  EXPECT_TRUE(Says(Made(dated, TestFonts()), "Erstellt am " + LocalMoment({})));
}

TEST_F(SheetTest, KeypadShowsWiringAndCodesOfItsKeys) {
  // Row 2 is the first one of the table; P0's lines count the other way.
  const auto blocks = KeypadBlocks("3,90,31,FF,D,FF,FF,FF,FF,FF,FF,FF,AD,FF,FF,FF,FF,FF",
                                   SheetWiring{0x30, 0x05}, "Datenbank");
  const auto& grid = std::get<SheetGrid>(blocks[0]);
  EXPECT_EQ(grid.rows[2].first, (SheetGrid::Cell{"Zeile 2", "P0, Leitung 5"}));
  EXPECT_EQ(grid.columns[2], (SheetGrid::Cell{"Spalte 2", "P1, Leitung 2"}));
  EXPECT_EQ(grid.rows[2].second[0], (SheetGrid::Cell{"1", "49 · $31"}));
  EXPECT_EQ(grid.rows[2].second[2], (SheetGrid::Cell{"CR", "13 · $0D"}));
  EXPECT_EQ(grid.rows[3].second[2], (SheetGrid::Cell{"weicher Trennstrich", "173 · $AD"}));
  EXPECT_EQ(grid.rows[3].second[0].sign, "–") << "no key";
  EXPECT_EQ(grid.rows[3].second[1].sign, "·") << "not wired";
  EXPECT_EQ(std::get<SheetText>(blocks[1]).text,
            "Zeilen an den Ausgängen P0: 2 (Leitung 5), 3 (Leitung 4).");
  EXPECT_EQ(std::get<SheetText>(blocks[2]).text,
            "Spalten an den Eingängen P1: 0 (Leitung 0), 2 (Leitung 2).");
  // Without a record the codes tell which are wired.
  const auto guessed = KeypadBlocks("3,90,31,FF,D,FF,FF,FF,FF,FF", std::nullopt, {});
  EXPECT_EQ(std::get<SheetText>(guessed[2]).text, std::get<SheetText>(blocks[2]).text);
  EXPECT_NE(std::get<SheetText>(guessed[3]).text.find("errechnet"), std::string::npos);
  EXPECT_NE(std::get<SheetText>(KeypadBlocks("unfug", {}, {})[0]).text.find("unfug"),
            std::string::npos);
  const auto recoded = RecodingBlocks("4,41,61,42,1B");
  EXPECT_EQ(std::get<SheetTable>(recoded[0]).rows,
            (std::vector<std::vector<std::string>>{{"A", "65 · $41", "a", "97 · $61"},
                                                   {"C", "67 · $43", "ESC", "27 · $1B"}}));
}

TEST_F(SheetTest, WithoutAnActiveTableThereIsNoneToShow) {
  const TerminalId tor = AddTerminal(3, "Tor");
  Read(tor, CommandName::AskMatrixTable, "leer");
  EXPECT_TRUE(Says(Now(), "Es ist keine Tabelle aktiv."));
  EXPECT_FALSE(Says(Now(), "hat nicht die Form"));
}

TEST_F(SheetTest, SavedConfigurationTellsItsSettingsAndTheWiring) {
  const TerminalId tor = AddTerminal(3, "Tor");
  Written(tor, WriteKeyTable("3", "80", ",31,FF,FF,FF,FF,FF,FF,FF"), "Feld");
  Note(tor, Event::Acknowledged,
       {{ItemKind::Config, 0},
        "\x1BMS2,1;\x1BMC2,10,35,252,127,5;\x1B"
        "EWC",
        {}});
  const Sheet sheet = Now();
  EXPECT_EQ(Timeless(Behind(sheet, "Matrix: 2 Spalten, 1 Zeilen")),
            "←MS#,#;|geschrieben und bestätigt ##.##.#### ##:##|");
  EXPECT_TRUE(Says(sheet, "P1: 0 (Leitung 0), 1 (Leitung 1)."));
  EXPECT_TRUE(Says(sheet, "Verdrahtung: aus der gespeicherten Konfiguration."));
}

TEST_F(SheetTest, MacroIsPrintedWithItsPictureAndEachOfItsCommands) {
  const TerminalId tor = AddTerminal(3, "Tor");
  const std::string text =
      "vorn\x1BGP3,4;\x1BGTHallo\x04hinten\x1BXy\x1B"
      "ECM2;";
  Written(tor, WriteMakro(7, text), "Gruß");
  const SheetSources sources = Sources();
  const TextPrinter printer(sources, TestFonts());
  const auto blocks = printer.Macro(text, TextsIn(sources.inventories[0]));
  const auto& picture = std::get<SheetPicture>(blocks[0]);
  EXPECT_EQ(picture.pixels, Preview(TestFonts()).Run(text, {}).picture);
  EXPECT_NE(picture.caption.find("Nicht bekannt ist Makro 2"), std::string::npos);
  EXPECT_EQ(std::get<SheetTable>(blocks[1]).rows,
            (std::vector<std::vector<std::string>>{
                {"1", "vorn", "Text „vorn“"},
                {"2", "←GP3,4;", "Grafikposition 3,4"},
                {"3", "←GTHallo♦hinten", "Grafiktext „Hallo“; Text „hinten“"},
                {"4", "←Xy", "unbekannter Befehl „Xy“"},
                {"5", "←ECM2;", "Makro 2 ausführen"}}));

  const auto bitmap = printer.Bitmap("-10,2,8000FFC0");
  const PixelMap& pixels = std::get<SheetPicture>(bitmap[0]).pixels;
  EXPECT_EQ(std::pair(pixels.Width(), pixels.Height()), std::pair(10, 2));
  EXPECT_TRUE(pixels.At(0, 0) && !pixels.At(1, 0) && pixels.At(9, 1));
  for (const char* const damaged : {"", "1", "1,x,80", "9999,2,80", "0,1,"}) {
    EXPECT_TRUE(std::holds_alternative<SheetText>(printer.Bitmap(damaged)[0])) << damaged;
  }
}

TEST_F(SheetTest, EveryCharacterCanBeSeenAndToldFromTheOthers) {
  std::set<std::string> texts;
  for (int code = 0; code < 256; ++code) {
    const std::string text = PrintedText(std::string(1, static_cast<char>(code)));
    texts.insert(text);
    EXPECT_FALSE(text.empty() || text == "\xC2\xA0" || text == "\xC2\xAD") << code;
    EXPECT_TRUE(static_cast<unsigned char>(text[0]) >= ' ') << code;
    EXPECT_FALSE(CharacterName(code).empty());
  }
  EXPECT_EQ(texts.size(), 256u);
  EXPECT_EQ(PrintedWords("Tor\n\"Süd\"\t"), "Tor◙\"Süd\"○") << "in one line";
}

}  // namespace
}  // namespace kelvo
