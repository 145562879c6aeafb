#include "keyboards/read_table.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace kelvo {
namespace {

constexpr int kCodes = 256;
constexpr int kStartOfMatrix = 128;
constexpr int kEmptyKey = 255;

struct Numbers {
  int number = 0;
  int start = 0;
  std::vector<int> codes;
};

// The whole of a text of at most `digits` digits, 0..255.
std::optional<int> Byte(std::string_view text, int base, std::size_t digits) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value, base);
  const bool whole = read.ec == std::errc() && read.ptr == end && text.size() <= digits;
  if (!whole || value < 0 || value >= kCodes) return std::nullopt;
  return value;
}

std::optional<Numbers> NumbersOf(std::string_view reply) {
  Numbers numbers;
  std::vector<int> values;
  while (true) {
    const std::size_t comma = reply.find(',');
    const bool first = values.empty();
    const auto value = Byte(reply.substr(0, comma), first ? 10 : 16, first ? 3 : 2);
    if (!value) return std::nullopt;
    values.push_back(*value);
    if (comma == std::string_view::npos) break;
    reply.remove_prefix(comma + 1);
  }
  if (values.size() < 3) return std::nullopt;
  numbers.number = values[0];
  numbers.start = values[1];
  numbers.codes.assign(values.begin() + 2, values.end());
  return numbers;
}

std::string CommandOf(const Numbers& numbers) {
  std::string codes;
  for (const int code : numbers.codes) codes += "," + CellCode("#" + std::to_string(code));
  return WriteKeyTable(std::to_string(numbers.number),
                       CellCode("#" + std::to_string(numbers.start)), codes)
      .Text();
}

// Wired is what sends something, and the first and the last row, which the table tells.
MatrixTable WiredTable(const Numbers& numbers) {
  MatrixTable table;
  constexpr std::size_t kColumns = kMatrixLines;
  const std::size_t rows = numbers.codes.size() / kColumns;
  const int firstRow = (numbers.start - kStartOfMatrix) / kMatrixLines;
  const auto first = static_cast<std::size_t>(firstRow);
  for (std::size_t key = 0; key < rows * kColumns; ++key) {
    if (numbers.codes[key] == kEmptyKey) continue;
    table.rows[first + key / kColumns] = true;
    table.columns[key % kColumns] = true;
  }
  table.rows[first] = true;
  table.rows[first + rows - 1] = true;
  return table;
}

}  // namespace

std::optional<ReadMatrix> MatrixTableOf(std::string_view reply) {
  const auto numbers = NumbersOf(reply);
  if (!numbers || numbers->start < kStartOfMatrix) return std::nullopt;
  const auto count = static_cast<int>(numbers->codes.size());
  const int room = kStartOfMatrix + kMatrixKeys - numbers->start;
  const bool rows = (numbers->start % kMatrixLines) == 0 && count % kMatrixLines == 0;
  if (!rows || count > room) return std::nullopt;
  ReadMatrix read{numbers->number, WiredTable(*numbers)};
  const std::string command = CommandOf(*numbers);
  read.table.cells = ReadMatrixTable(command, read.table.rows);
  if (CreateTastTab(read.number, read.table).Text() != command) return std::nullopt;
  return read;
}

std::optional<ReadAt> AtTableOf(std::string_view reply) {
  const auto numbers = NumbersOf(reply);
  if (!numbers) return std::nullopt;
  if (numbers->start + static_cast<int>(numbers->codes.size()) > kCodes) return std::nullopt;
  ReadAt read{numbers->number, ReadAtTable(CommandOf(*numbers))};
  if (read.pairs.empty()) return std::nullopt;
  return read;
}

}  // namespace kelvo
