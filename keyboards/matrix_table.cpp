#include "keyboards/matrix_table.h"

#include <cmath>
#include <stdexcept>

#include "base/val.h"
#include "keyboards/key_codes.h"

namespace kelvo {
namespace {

constexpr int kStartOfKeys = 128;
constexpr std::size_t kLongestCell = 4;

bool Wired(const WiredLines& lines, int line) { return lines[static_cast<std::size_t>(line)]; }

// Neither scan looks at the line it stops at: without any line in their reach they give 7 and 0.
int FirstRow(const WiredLines& rows) {
  int row = 0;
  while (row < kMatrixLines - 1 && !Wired(rows, row)) ++row;
  return row;
}

int LastRow(const WiredLines& rows) {
  int row = kMatrixLines - 1;
  while (row > 0 && !Wired(rows, row)) --row;
  return row;
}

template <typename BitOf>
std::int16_t Mask(const WiredLines& lines, BitOf bitOf) {
  int mask = 0;
  for (int line = 0; line < kMatrixLines; ++line) {
    if (Wired(lines, line)) mask |= 1 << bitOf(line);
  }
  return static_cast<std::int16_t>(mask);
}

template <typename LineOf>
WiredLines LinesOf(double mask, LineOf lineOf) {
  WiredLines lines{};
  for (int bit = kMatrixLines - 1; bit >= 0; --bit) {
    const bool set = mask / (1 << bit) >= 1;
    lines[static_cast<std::size_t>(lineOf(bit))] = set;
    if (set) mask -= 1 << bit;
  }
  return lines;
}

// Row 0 is wired to the highest line of its port; a column has the number of its line.
int Reversed(int line) { return kMatrixLines - 1 - line; }
int Same(int line) { return line; }

// A whole text that reads as one decimal number.
bool IsNumeric(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return false;
  text = text.substr(first, text.find_last_not_of(' ') + 1 - first);
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  return text.find_first_not_of("0123456789.") == std::string_view::npos &&
         text.find_first_of("0123456789") != std::string_view::npos &&
         text.find('.') == text.rfind('.');
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

CheckedCell CheckDecimal(std::string_view text) {
  const std::string_view digits = text.substr(1);
  // Only a number is checked for its range: "#ab" stands, and sends 0. Deliberately so.
  const double value = IsNumeric(digits) ? std::floor(Val(digits)) : 0;
  if (value < 0 || value > 255) return {CellRefusal::DecimalRange, {}};
  return {CellRefusal::None, std::string(text)};
}

CheckedCell CheckHex(std::string_view text) {
  const std::string upper = UpperCase(text);
  const std::string digits = upper.substr(1);
  const double value = HexField(digits);
  // A leading zero does not come back from the number, so "&0F" is refused, even though "&F" is
  // widened to just that. Deliberately so.
  if (value > 255 || HexCode(RoundToEven(value)) != digits) return {CellRefusal::NoHexCode, {}};
  return {CellRefusal::None, digits.size() == 1 ? "&0" + digits : upper};
}

}  // namespace

std::int16_t OutputMask(const WiredLines& rows) { return Mask(rows, Reversed); }
std::int16_t InputMask(const WiredLines& columns) { return Mask(columns, Same); }
WiredLines RowsOf(double outputMask) { return LinesOf(outputMask, Reversed); }
WiredLines ColumnsOf(double inputMask) { return LinesOf(inputMask, Same); }

std::string CellCode(std::string_view cell) {
  if (cell.empty()) return "FF";
  if (cell.size() == 1) return HexCode(static_cast<unsigned char>(cell.front()));
  if (cell.front() == '#') return HexCode(RoundToEven(Val(cell.substr(1))));
  return std::string(cell.substr(1));
}

std::string CellText(double code) {
  const std::int32_t number = RoundToEven(code);
  if (number < 0 || number >= 255) return {};
  if (number >= 32 && number <= 128) return {static_cast<char>(number)};
  return "#" + std::to_string(number);
}

CheckedCell CheckCell(std::string_view text) {
  if (text.size() <= 1) return {CellRefusal::None, std::string(text)};
  if (text.size() <= kLongestCell && text.front() == '#') return CheckDecimal(text);
  if (text.size() <= kLongestCell && text.front() == '&') return CheckHex(text);
  return {CellRefusal::UnknownForm, {}};
}

Command CreateTastTab(double number, const MatrixTable& table) {
  const int first = FirstRow(table.rows);
  const int last = LastRow(table.rows);
  std::string codes;
  for (int row = first; row <= last; ++row) {
    for (int column = 0; column < kMatrixLines; ++column) {
      const auto key = static_cast<std::size_t>(KeyIndex(row, column));
      codes += "," + CellCode(table.cells[key]);
    }
  }
  return WriteKeyTable(NumberText(number), HexCode(first * kMatrixLines + kStartOfKeys), codes);
}

std::array<std::string, kMatrixKeys> ReadMatrixTable(std::string_view command,
                                                     const WiredLines& rows) {
  std::array<std::string, kMatrixKeys> cells;
  const auto fields = TableFields(command);
  std::size_t field = 2;
  const int last = LastRow(rows);
  for (int row = FirstRow(rows); row <= last; ++row) {
    for (int column = 0; column < kMatrixLines && field < fields.size(); ++column) {
      const auto key = static_cast<std::size_t>(KeyIndex(row, column));
      cells[key] = CellText(HexField(fields[field++]));
    }
  }
  return cells;
}

std::string CreateMatrixMode(const WiredLines& rows, const WiredLines& columns) {
  int lastColumn = kMatrixLines - 1;
  // This scan has no other end than a wired column.
  while (lastColumn >= 0 && !Wired(columns, lastColumn)) --lastColumn;
  if (lastColumn < 0) throw std::runtime_error("Es ist keine Spalte angekreuzt");
  return Sequence({SetMatrixSize(lastColumn + 1, LastRow(rows) + 1),
                   SetMatrixConfig(255 - InputMask(columns), 255 - OutputMask(rows)),
                   StartMatrix()});
}

}  // namespace kelvo
