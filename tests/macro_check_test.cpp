#include "settings/macro_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "base/wire_text.h"
#include "graphics/create_pic.h"
#include "keyboards/at_table.h"
#include "keyboards/matrix_table.h"
#include "link/commands.h"
#include "settings/macro_text.h"
#include "settings/text_mode.h"
#include "store/database.h"
#include "store/recordset.h"
#include "tests/drawing_samples.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

// "^" is ESC, "~" the text end, "#" ETX.
std::string Wire(std::string text) {
  for (char& c : text) c = c == '^' ? '\x1b' : c == '~' ? '\x04' : c == '#' ? '\x03' : c;
  return text;
}

bool HasGlyph(int font, unsigned char character) {
  const DeviceFont& glyphs = TestFonts().Font(font);
  for (int y = 0; y < glyphs.Height(); ++y) {
    if (glyphs.Row(character, y) != 0) return true;
  }
  return character == ' ' || character == 160 || glyphs.Empty();
}

MacroContext Context(std::map<int, std::string> others = {}) {
  MacroContext context;
  context.macroText = [others = std::move(others)](int number) -> std::optional<std::string> {
    const auto found = others.find(number);
    return found == others.end() ? std::nullopt : std::optional(Wire(found->second));
  };
  context.hasGlyph = HasGlyph;
  return context;
}

constexpr auto Hint = Severity::Hint;
constexpr auto Warning = Severity::Warning;
constexpr auto Error = Severity::Error;

TEST(MacroCheck, FaultyTextsAreToldWithPlaceAndReason) {
  const struct {
    const char* text;
    Severity severity;
    std::size_t position, length;
    const char* reason;
  } rows[] = {
      {"^GP10,10", Error, 0, 8, "was nach dem Makro kommt"},
      {"^GP10,10^GC", Error, 0, 8, "fehlt „;“; das Terminal übergeht"},
      {"^GM1^GC", Error, 0, 4, "fehlt „;“"},
      {"^GTHallo", Warning, 0, 3, "Textende ♦"},
      {"^GP;", Error, 0, 4, "braucht 2 Parameter, hier stehen 0; es fehlt: X"},
      {"^GP10;", Error, 0, 6, "hier steht 1; es fehlt: Y"},
      {"^GB1,2,3;", Error, 0, 9, "es fehlt: Höhe"},
      {"^!c 1;", Error, 0, 6, "Form oder Größe"},
      {"^EWK1,80;", Hint, 0, 9, "es fehlt: Codes"},
      {"^GP1,2,3;", Warning, 7, 1, "hat höchstens 2 Parameter"},
      {"^TF1,2,3;", Warning, 5, 3, "„2“ wird übergangen"},
      {"^GM01;", Warning, 4, 1, "hat keine Parameter"},
      {"^GP,5;", Error, 3, 0, "X fehlt"},
      {"^GP1,;", Error, 5, 0, "Y fehlt"},
      {"^GP1O,5;", Error, 3, 2, "„1O“ ist keine Zahl"},
      {"^GP1.5,5;", Error, 3, 3, "ist keine Zahl"},
      {"^GP10,10Hallo;", Error, 6, 7, "Y: „10Hallo“"},
      {"^TF10;", Error, 3, 2, "Schrift 10 liegt nicht im Bereich 0 bis 9"},
      {"^TA-1;", Error, 3, 2, "im Bereich 0 bis 7"},
      {"^TM4;", Error, 3, 1, "Modus 4"},
      {"^TZ0,9;", Error, 3, 1, "im Bereich 1 bis 4"},
      {"^TZ1,9;", Error, 5, 1, "im Bereich 1 bis 8"},
      {"^!C7;", Error, 3, 1, "im Bereich 0 bis 6"},
      {"^!P256;", Error, 3, 3, "im Bereich 0 bis 255"},
      {"^GP40000,0;", Error, 3, 5, "im Bereich -32768 bis 32767"},
      {"^GP240,0;", Hint, 3, 3, "im Bereich 0 bis 239 dieses Displays"},
      {"^GL0,128;", Hint, 5, 3, "im Bereich 0 bis 127 dieses Displays"},
      {"^TP61,1;", Hint, 3, 2, "im Bereich 1 bis 60 dieses Displays"},
      {"^GB0,0,-9,2,80FF8;", Error, 12, 5, "8 hexadezimale Ziffern, hier stehen 5"},
      {"^GB0,0,1,1,8x;", Error, 12, 1, "„x“ ist keine hexadezimale Ziffer"},
      {"^EWK1,8G,1;", Error, 6, 2, "„8G“ ist kein hexadezimaler Code"},
      {"^EWK1,80,1,,3;", Error, 11, 0, "ein Code fehlt"},
      {"^GZ1,1;^XX5;", Hint, 7, 3, "nicht bekannt"},
      {"^GC^G", Hint, 3, 2, "noch nicht vollständig"},
      {"a^GC; b", Warning, 4, 1, "„GC“ braucht kein „;“"},
      {"abc~", Warning, 3, 1, "außerhalb eines Grafiktexts"},
      {"ab#cd", Error, 2, 1, "beendet das Makro"},
      {"x^EWM3,abc", Error, 1, 4, "kann nicht in einem Makro stehen"},
      {"^EDM3;", Warning, 0, 4, "EEPROM bei jedem Ausführen"},
      {"^Ee", Warning, 0, 3, "„Ee“ ändert das EEPROM"},
      {"^?V", Hint, 0, 3, "antwortet bei jedem Ausführen"},
      {"^GC^Rnie", Warning, 3, 2, "startet neu"},
      {"^ECM9;", Hint, 0, 6, "Makro 9 ist hier kein Satz"},
      {"^TF4;1^GCx", Hint, 9, 1, "„x“ (Code 120) hat in Schrift 4 kein Zeichenbild"},
      {"^GTa\tb~", Hint, 4, 1, "(Code 9) ist kein gewöhnliches Zeichen"},
  };
  for (const auto& row : rows) {
    const auto remarks = CheckMacro(Wire(row.text), Context());
    const bool told = std::any_of(remarks.begin(), remarks.end(), [&row](const Remark& remark) {
      return remark.severity == row.severity && remark.position == row.position &&
             remark.length == row.length && remark.text.find(row.reason) != std::string::npos;
    });
    EXPECT_TRUE(told) << row.text << ": " << (remarks.empty() ? "-" : remarks[0].text);
  }
  EXPECT_EQ(CheckMacro(std::string(1025, 'a'), Context()).at(0).length, 2u);
}

TEST(MacroCheck, MacrosThatNeverEndAreTold) {
  const std::map<int, std::string> others = {
      {3, "^ECM5;"}, {5, "x^ECM3;"}, {6, "^ECM7;"}, {7, "y"}};
  const auto first = [&others](const char* text, std::optional<int> number) {
    MacroContext context = Context(others);
    context.number = number;
    const auto remarks = CheckMacro(Wire(text), context);
    return remarks.empty() ? std::string() : remarks[0].text;
  };
  EXPECT_NE(first("^ECM3;", 3).find("Makro 3 → 3"), std::string::npos);
  EXPECT_NE(first("^ECM5;", 3).find("Makro 3 → 5 → 3"), std::string::npos);
  EXPECT_NE(first("^ECM5;", 1).find("Makro 5 → 3 → 5"), std::string::npos);
  EXPECT_NE(first("^ECM5;", std::nullopt).find("Makro 5 → 3 → 5"), std::string::npos);
  EXPECT_EQ(first("^ECM6;^ECM7;^ECM6;", 5), "");  // twice the same is no ring
  EXPECT_EQ(first("^ECM3;", 5).substr(0, 13), "Es kommt nie ");
  EXPECT_NE(first("^R", 0).find("beim Start läuft es wieder"), std::string::npos);
}

// What the program itself makes must not be found fault with, however odd it is.
void ExpectNoFault(const std::string& text, bool isMacro = true) {
  MacroContext context = Context();
  context.isMacro = isMacro;
  for (const Remark& remark : CheckMacro(text, context)) {
    EXPECT_EQ(remark.severity, Severity::Hint)
        << remark.text << " at " << remark.position << " of " << ReadableText(text);
  }
}

TEST(MacroCheck, DeliveredRecordsAreFaultless) {
  testing_world::TemporaryFolder folder;
  folder.AddDatabase();
  Database database(folder.Path("kelvo.mdb"));
  Recordset records(database, "Makro");
  EXPECT_GT(records.RecordCount(), 0u);
  for (const std::string& wert : records.Column("wert")) {
    EXPECT_TRUE(CheckMacro(WireText(wert).value(), Context()).empty()) << wert;
  }
}

TEST(MacroCheck, WhatTheBuildersMakeIsFaultless) {
  RandomDrawings drawings(7);
  TerminalTraits terminal;
  terminal.displayHeight = 128;
  terminal.blackThreshold = 0x800000;
  terminal.pixelWidthVersion = 2;
  for (int i = 0; i < 500; ++i) {
    terminal.terminalVersion = i % 2 == 0 ? 2.1 : 1.9;
    ExpectNoFault(CreatePic(drawings.Next(), terminal).text, false);
  }
  for (int kind = CursorOff; kind < CursorKindCount; ++kind) {
    ExpectNoFault(CreateCursor({kind, kind % 2, "8", "10", "3"}));
  }
  for (int font = 0; font < 10; ++font) {
    ExpectNoFault(CreateTextMode({font, font % 8, font % 4, "1", "8"}));
  }
  ExpectNoFault(Sequence({ClearDisplay(), SetGraphicPosition("1", "2")}) + OpenGraphicText("a") +
                SetGraphicPosition("8", "9").Text());
}

TEST(MacroCheck, KeyboardTablesAreFaultless) {
  std::minstd_rand random(11);
  for (int i = 0; i < 50; ++i) {
    MatrixTable table;
    AtPairs pairs;
    for (auto* lines : {&table.rows, &table.columns}) {
      for (bool& wired : *lines) wired = random() % 2 == 0;
    }
    table.columns[3] = true;
    for (std::string& cell : table.cells) cell = CellText(static_cast<double>(random() % 256));
    for (int pair = 0; pair < 5; ++pair) {
      EnterPair(pairs, {static_cast<int>(random() % 256), static_cast<int>(random() % 256)});
    }
    ExpectNoFault(CreateTastTab(i, table).Text(), false);
    ExpectNoFault(CreateMatrixMode(table.rows, table.columns), false);
    ExpectNoFault(CreateATTab(i, pairs).Text(), false);
  }
}

TEST(MacroText, PiecesLieInOrderAndCoverWhatIsNoPlainText) {
  const std::string text = Wire("a^GP 1,2;b\r\n^GTc;d~^XY7;^EWK1,80,1,2;^GM0;");
  std::string seen;
  std::size_t behind = 0;
  for (const Piece& piece : PiecesOf(text)) {
    ASSERT_GE(piece.begin, behind);
    behind = piece.begin + piece.length;
    seen += ReadableText(text.substr(piece.begin, piece.length)) + "|";
  }
  EXPECT_EQ(seen, "←GP| 1|,|2|;|♪◙|←GT|c;d|♦|←XY7|;|←EWK|1|,|80|,|1,2|;|←GM0|;|");
}

TEST(MacroText, LettersAreProposedBehindAnEsc) {
  const auto proposed = [](const char* before) {
    const std::string text = Wire(before);
    std::string letters;
    for (const CommandRow* row : CompletionAt(text, text.size()).rows) {
      letters += std::string(row->letters) + " ";
    }
    return letters;
  };
  EXPECT_EQ(proposed("x"), "");
  EXPECT_EQ(proposed("^GC^T?"), "T?P T?F T?A T?M T?Z ");
  EXPECT_EQ(proposed("^Gf"), "GfR GfE ");
  EXPECT_EQ(proposed("^GP"), "");
  EXPECT_EQ(CompletionAt(Wire("^"), 1).rows.size(), CommandTable().size());
}

}  // namespace
}  // namespace kelvo
