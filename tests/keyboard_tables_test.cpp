#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "keyboards/at_table.h"
#include "keyboards/key_codes.h"
#include "keyboards/read_table.h"

namespace kelvo {
namespace {

WiredLines Lines(std::initializer_list<std::size_t> wired) {
  WiredLines lines{};
  for (const std::size_t line : wired) lines[line] = true;
  return lines;
}

WiredLines AllLines() { return Lines({0, 1, 2, 3, 4, 5, 6, 7}); }

std::string Ewk(const std::string& rest) { return "\x1B" + ("EWK" + rest); }

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(MatrixCell, IsCheckedWhenItsBoxIsLeft) {
  using enum CellRefusal;
  const std::pair<const char*, const char*> taken[] = {
      {"", ""},         {"A", "A"},       {"#", "#"},       {"\xE4", "\xE4"},
      {"#0", "#0"},     {"#255", "#255"}, {"#2.5", "#2.5"}, {"#x", "#x"},
      {"#12a", "#12a"}, {"&f", "&0F"},    {"&ff", "&FF"},   {"&0", "&00"}};
  for (const auto& [typed, shown] : taken) {
    EXPECT_EQ(CheckCell(typed).refusal, None) << typed;
    EXPECT_EQ(CheckCell(typed).text, shown);
  }
  const std::pair<CellRefusal, std::vector<const char*>> refused[] = {
      {DecimalRange, {"#256", "#-1"}},
      {NoHexCode, {"&0F", "&00", "&100", "&g", "& 1"}},
      {UnknownForm, {"#1234", "$8A", "AB", "12345"}}};
  for (const auto& [refusal, texts] : refused) {
    for (const char* typed : texts) {
      EXPECT_EQ(CheckCell(typed).refusal, refusal) << typed;
      EXPECT_EQ(CheckCell(typed).text, "");
    }
  }
  // The widened form is refused the second time.
  EXPECT_EQ(CheckCell(CheckCell("&a").text).refusal, NoHexCode);
}

TEST(MatrixCell, SendsItsCode) {
  const std::pair<std::string, std::string> cases[] = {{"", "FF"},    {"1", "31"},  {"\xE4", "E4"},
                                                       {"#13", "D"},  {"#x", "0"},  {"#2.5", "2"},
                                                       {"&0A", "0A"}, {"$9A", "9A"}};
  for (const auto& [cell, code] : cases) EXPECT_EQ(CellCode(cell), code) << cell;
}

TEST(MatrixCell, ShowsAStoredCode) {
  const std::pair<double, std::string> cases[] = {
      {0, "#0"},     {31, "#31"},   {32, " "}, {65, "A"}, {128, "\x80"},
      {129, "#129"}, {254, "#254"}, {255, ""}, {256, ""}, {1e300, ""}};
  for (const auto& [code, text] : cases) EXPECT_EQ(CellText(code), text) << code;
}

TEST(MatrixMasks, CountRowsFromTheTopAndColumnsFromTheBottom) {
  EXPECT_EQ(OutputMask(Lines({0})), 128);
  EXPECT_EQ(OutputMask(Lines({7})), 1);
  EXPECT_EQ(InputMask(Lines({0})), 1);
  EXPECT_EQ(RowsOf(129), Lines({0, 7}));
  EXPECT_EQ(ColumnsOf(6), Lines({1, 2}));
  // Out of range they wire everything or nothing.
  EXPECT_EQ(RowsOf(300), AllLines());
  EXPECT_EQ(RowsOf(1e300), AllLines());
  EXPECT_EQ(RowsOf(-5), WiredLines{});
  EXPECT_EQ(ColumnsOf(0.5), WiredLines{});
}

TEST(MatrixTable, CarriesAllColumnsFromTheFirstToTheLastRow) {
  MatrixTable table{Lines({0, 1}), AllLines(), {}};
  table.cells[0] = "1";
  table.cells[8] = "#13";
  EXPECT_EQ(CreateTastTab(3, table).Text(), Ewk("3,80,31,D" + Repeated(",FF", 14) + ";"));

  table = {Lines({2, 5}), AllLines(), {}};
  EXPECT_EQ(CreateTastTab(0, table).Text(), Ewk("0,90" + Repeated(",FF", 32) + ";"));
  // The last row alone and no row start alike.
  EXPECT_EQ(CreateTastTab(1, {Lines({7}), AllLines(), {}}).Text(),
            Ewk("1,B8" + Repeated(",FF", 8) + ";"));
  EXPECT_EQ(CreateTastTab(1, {}).Text(), Ewk("1,B8;"));
}

TEST(MatrixMode, CountsUpToTheLastWiredLine) {
  EXPECT_EQ(CreateMatrixMode(AllLines(), AllLines()), "\x1BMS8,8;\x1BMC2,10,35,0,0,5;\x1BME");
  EXPECT_EQ(CreateMatrixMode(Lines({2}), Lines({0, 3})),
            "\x1BMS4,3;\x1BMC2,10,35,246,223,5;\x1BME");
  EXPECT_EQ(CreateMatrixMode({}, Lines({0})), "\x1BMS1,1;\x1BMC2,10,35,254,255,5;\x1BME");
  EXPECT_THROW(CreateMatrixMode(AllLines(), {}), std::runtime_error);
}

// A random grid whose cells have passed their check.
MatrixTable RandomTable(std::mt19937& random) {
  const auto below = [&random](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  MatrixTable table;
  for (bool& row : table.rows) row = below(2) == 0;
  for (bool& column : table.columns) column = below(2) == 0;
  for (int row = 0; row < kMatrixLines; ++row) {
    for (int column = 0; column < kMatrixLines; ++column) {
      const auto r = static_cast<std::size_t>(row);
      const auto c = static_cast<std::size_t>(column);
      if (!table.rows[r] || !table.columns[c]) continue;
      std::string& cell = table.cells[static_cast<std::size_t>(KeyIndex(row, column))];
      const int code = below(256);
      const std::string forms[] = {"", std::string(1, static_cast<char>(code)),
                                   "#" + std::to_string(code), "&" + HexCode(code),
                                   "$" + HexCode(128 + code / 2)};
      cell = forms[below(5)];
      if (cell.size() > 1 && cell.front() != '$') cell = CheckCell(cell).text;
    }
  }
  return table;
}

// What a code looks like in a command, without the leading zero that "&0A" sends and that no
// number gives back.
std::string WithoutLeadingZeros(std::string command) {
  for (std::size_t at = 0; (at = command.find(",0", at)) != std::string::npos; ++at) {
    const char next = command[at + 2];
    if (next != ',' && next != ';') command.erase(at + 1, 1);
  }
  return command;
}

TEST(MatrixTable, ShownAndBuiltAgainGivesTheSameCommand) {
  std::mt19937 random(20);
  for (int round = 0; round < 500; ++round) {
    const MatrixTable table = RandomTable(random);
    const std::string command = CreateTastTab(round, table).Text();
    // The check boxes keep their lines, so what is shown is the same wiring.
    MatrixTable shown{RowsOf(OutputMask(table.rows)), ColumnsOf(InputMask(table.columns)),
                      ReadMatrixTable(command, table.rows)};
    EXPECT_EQ(shown.rows, table.rows);
    EXPECT_EQ(shown.columns, table.columns);
    // Two widened digits are the one form that does not come back letter for letter; its code does.
    // A shown code 128 is the single character of that code, and sends it again.
    EXPECT_EQ(CreateTastTab(round, shown).Text(), WithoutLeadingZeros(command));
    // Once shown, a table is stable.
    EXPECT_EQ(ReadMatrixTable(CreateTastTab(round, shown).Text(), shown.rows), shown.cells);
  }
}

TEST(MatrixTable, DamagedShowsWhatCanBeRead) {
  const auto read = [](std::string_view command) { return ReadMatrixTable(command, AllLines()); };
  EXPECT_EQ(read(Ewk("1,80,41,42"))[8], "B");
  EXPECT_EQ(read(Ewk("1,80,41,42"))[16], "");
  EXPECT_EQ(read(Ewk("1,80,ZZ,42;"))[0], "#0");
  EXPECT_EQ(read(Ewk("1,80,ZZ,42;"))[8], "B");
  EXPECT_EQ(read(Ewk("1,80,1FF,42;"))[0], "");
  for (const std::string& nothing : std::initializer_list<std::string>{
           "", ";", ",", "EWK", Ewk("1"), Ewk("1,80;"), "\xFF\xFE"}) {
    for (const std::string& cell : read(nothing)) EXPECT_EQ(cell, "") << nothing;
  }
  // More codes than keys.
  EXPECT_EQ(read(Ewk("1,80" + Repeated(",41", 1000) + ";"))[63], "A");
}

TEST(AtTable, CarriesEveryCodeFromTheFirstToTheLast) {
  EXPECT_EQ(CreateATTab(1, {{65, 97}}).Text(), Ewk("1,41,61;"));
  EXPECT_EQ(CreateATTab(1, {{65, 97}, {67, 99}}).Text(), Ewk("1,41,61,42,63;"));
  EXPECT_EQ(CreateATTab(2, {{0, 255}, {2, 13}}).Text(), Ewk("2,0,FF,1,D;"));
  EXPECT_THROW(CreateATTab(1, {}), std::runtime_error);
}

TEST(AtTable, RowsOutOfOrderFollowTheOrderingPassLiterally) {
  // Codes beyond the number of rows are never exchanged.
  EXPECT_EQ(OrderingPass({{67, 1}, {65, 2}}), (AtPairs{{67, 1}, {65, 2}}));
  EXPECT_EQ(CreateATTab(1, {{67, 99}, {65, 97}}).Text(), Ewk("1,43;"));
  EXPECT_EQ(CreateATTab(1, {{65, 97}, {70, 1}, {67, 99}}).Text(), Ewk("1,41,61,42,43;"));
  // Smaller ones are taken twice, and others lost.
  EXPECT_EQ(OrderingPass({{9, 1}, {0, 2}, {1, 3}}), (AtPairs{{1, 3}, {1, 3}, {1, 3}}));
}

TEST(AtTable, ShownAndBuiltAgainGivesTheSameCommand) {
  std::mt19937 random(21);
  for (int round = 0; round < 300; ++round) {
    AtPairs pairs;
    const int count = 1 + static_cast<int>(random() % 20);
    for (int i = 0; i < count; ++i) {
      EnterPair(pairs, {static_cast<int>(random() % 256), static_cast<int>(random() % 256)});
    }
    // A key that keeps its code is no row of a shown table; at the ends of a table it would be
    // missed.
    std::erase_if(pairs, [](const AtPair& pair) { return pair.oldCode == pair.newCode; });
    if (pairs.empty()) continue;
    pairs = SortedPairs(pairs);
    EXPECT_EQ(ReadAtTable(CreateATTab(round, pairs).Text()), pairs);
  }
}

TEST(AtTable, DamagedShowsWhatCanBeRead) {
  EXPECT_EQ(ReadAtTable(Ewk("1,41,41,42,43;")), AtPairs{}) << "keys that keep their codes";
  EXPECT_EQ(ReadAtTable(Ewk("1,41,61,42")), (AtPairs{{65, 97}}));
  EXPECT_EQ(ReadAtTable(Ewk("1,41,,42;")), (AtPairs{{65, 0}}));
  EXPECT_EQ(ReadAtTable(Ewk("1,A,D;")), (AtPairs{{10, 13}}));
  EXPECT_EQ(ReadAtTable(Ewk("1,FE" + Repeated(",1", 1000))), (AtPairs{{254, 1}, {255, 1}}));
  for (const std::string& nothing :
       std::initializer_list<std::string>{"", ",", ",,;", Ewk("1;"), Ewk("1,41;")}) {
    EXPECT_EQ(ReadAtTable(nothing), AtPairs{}) << nothing;
  }
}

TEST(ReadTable, OnlyWhatCouldHaveBeenWrittenIsTaken) {
  const std::string row = ",41,FF,FF,FF,FF,FF,FF,D";
  const auto matrix = MatrixTableOf("3,90" + row + row);
  ASSERT_TRUE(matrix);
  EXPECT_EQ(CreateTastTab(matrix->number, matrix->table).Text(), "\033EWK3,90" + row + row + ";");
  EXPECT_EQ(AtTableOf("255,41,61,42,63"), (ReadAt{255, {{65, 97}, {67, 99}}}));
  for (const std::string& reply : std::vector<std::string>{
           "", "leer", "TimeOut", "3", "3,90", "3,90,41", "256,90" + row, "-3,90" + row,
           "3,91" + row, "3,78" + row, "3,B8" + row + row, "3,90" + row + ",", "3, 90" + row,
           "3,90" + row + ";", "EWK3,90" + row, "3,90,41,FF,FF,FF,FF,FF,FF,100",
           "3,90,,FF,FF,FF,FF,FF,FF,FF", "3,90,4x,FF,FF,FF,FF,FF,FF,FF",
           "3,90,041,FF,FF,FF,FF,FF,FF,FF"}) {
    EXPECT_FALSE(MatrixTableOf(reply)) << reply;
  }
  for (const char* reply : {"", "leer", "5,41", "5,41,41", "5,FF,1,2", "5,41,61,", "5,41,G"}) {
    EXPECT_FALSE(AtTableOf(reply)) << reply;
  }
}

}  // namespace
}  // namespace kelvo
