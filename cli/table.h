#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/options.h"

namespace kelvo::cli {

/// Nothing, a text (UTF-8), a number, yes or no.
using Cell = std::variant<std::monostate, std::string, std::int64_t, bool>;

struct Column {
  const char* key;    ///< for programs
  const char* title;  ///< for people, German; empty: not in their table
};

struct Table {
  std::vector<Column> columns;
  std::vector<std::vector<Cell>> rows;
};

/// As text for people, as an array of objects, or as lines with a head and "," between the fields;
/// with a line end. Where a row is a line, line ends within a text become blanks. Without rows
/// people see nothing. UTF-8.
std::string TableText(const Table& table, Form form);

/// How many columns of a terminal a text takes.
std::size_t WidthOf(std::string_view utf8);

}  // namespace kelvo::cli
