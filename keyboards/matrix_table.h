#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/commands.h"

// A keypad wired as a matrix: up to 8 rows on the output lines of port P0 and 8 columns on the
// input lines of port P1, and what each of its 64 keys sends.

namespace kelvo {

inline constexpr int kMatrixLines = 8;
inline constexpr int kMatrixKeys = kMatrixLines * kMatrixLines;

/// The key at the crossing of a row and a column (0..7 each).
constexpr int KeyIndex(int row, int column) { return kMatrixLines * column + row; }

/// The wired lines, by row or column.
using WiredLines = std::array<bool, kMatrixLines>;

/// The grid of the page. A cell is the wire text of its box:
///
///   empty            no key, code 255
///   one character    the character's code
///   "#" decimal      0..255
///   "&" hex digits   one or two of them
///   "$" hex digits   the position code that a pressed key has left there
struct MatrixTable {
  WiredLines rows{};
  WiredLines columns{};
  std::array<std::string, kMatrixKeys> cells;
  bool operator==(const MatrixTable&) const = default;
};

/// 0..255. Row 0 is the most significant bit (it is wired to line 7), column 0 the least.
std::int16_t OutputMask(const WiredLines& rows);
std::int16_t InputMask(const WiredLines& columns);
/// The same backwards, for any number that a record may hold; below 1 nothing is wired, above 255
/// everything.
WiredLines RowsOf(double outputMask);
WiredLines ColumnsOf(double inputMask);

/// The code that a cell sends, in hexadecimal, as it stands in the command.
std::string CellCode(std::string_view cell);
/// A cell that sends `code`; empty for 255 and for what is no code.
std::string CellText(double code);

/// Why the text of a cell is refused.
enum class CellRefusal { None, DecimalRange, NoHexCode, UnknownForm };
/// What becomes of the text of a cell when its box is left.
struct CheckedCell {
  CellRefusal refusal = CellRefusal::None;
  std::string text;  ///< in its final form; empty when refused
};
CheckedCell CheckCell(std::string_view text);

/// ESC "EWK" number "," start ("," code)* ";" for all eight columns of every row from the first to
/// the last wired one. Without any row: start "B8" and no codes.
Command CreateTastTab(double number, const MatrixTable& table);

/// The cells of a stored command, for the rows from the first to the last wired one. Missing codes
/// leave their cells empty; a text that is no code counts as 0.
std::array<std::string, kMatrixKeys> ReadMatrixTable(std::string_view command,
                                                     const WiredLines& rows);

/// Matrix size, configuration and "scanning on" in one text:
///   ESC "MS" columns "," rows ";" ESC "MC" "2,10,35," inputs "," outputs ",5;" ESC "ME"
/// inputs and outputs are the masks of the lines that are not wired. Throws std::runtime_error
/// (German) when no column is wired.
std::string CreateMatrixMode(const WiredLines& rows, const WiredLines& columns);

}  // namespace kelvo
