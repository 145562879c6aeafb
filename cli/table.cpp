#include "cli/table.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace kelvo::cli {
namespace {

constexpr std::size_t kGap = 2;  // between the columns

std::string PlainText(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  if (const auto* number = std::get_if<std::int64_t>(&cell)) return std::to_string(*number);
  if (const auto* yes = std::get_if<bool>(&cell)) return *yes ? "ja" : "nein";
  return {};
}

// A row is one line, for people and for programs that read line by line.
std::string OneLine(std::string text) {
  for (const char space : {'\r', '\n', '\t'}) std::replace(text.begin(), text.end(), space, ' ');
  return text;
}

using Line = std::vector<std::string>;

std::string Joined(const Line& line, const std::vector<std::size_t>& widths) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    text += line[i];
    if (i + 1 < line.size()) text.append(widths[i] + kGap - WidthOf(line[i]), ' ');
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

std::string ForPeople(const Table& table) {
  if (table.rows.empty()) return {};
  std::vector<Line> lines(table.rows.size() + 1);
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    const std::string title = table.columns[column].title;
    if (title.empty()) continue;
    lines[0].push_back(title);
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      lines[row + 1].push_back(OneLine(PlainText(table.rows[row][column])));
    }
    std::size_t width = 0;
    for (const Line& line : lines) width = std::max(width, WidthOf(line.back()));
    widths.push_back(width);
  }
  std::string text;
  for (const Line& line : lines) text += Joined(line, widths);
  return text;
}

nlohmann::ordered_json JsonOf(const Cell& cell) {
  return std::visit(
      [](const auto& value) -> nlohmann::ordered_json {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>) {
          return nullptr;
        } else {
          return value;
        }
      },
      cell);
}

std::string Json(const Table& table) {
  std::string text = "[";
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    nlohmann::ordered_json object;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      object[table.columns[i].key] = JsonOf(table.rows[row][i]);
    }
    using nlohmann::ordered_json;
    text += (row == 0 ? "\n" : ",\n") +
            object.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  }
  return text + "\n]\n";
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"") == std::string::npos) return text;
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
  return field + "\"";
}

std::string Csv(const Table& table) {
  std::string text;
  const auto add = [&text](std::size_t i, const std::string& field) {
    text += (i == 0 ? "" : ",") + CsvField(field);
  };
  for (std::size_t i = 0; i < table.columns.size(); ++i) add(i, table.columns[i].key);
  text += "\n";
  for (const std::vector<Cell>& row : table.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) add(i, OneLine(PlainText(row[i])));
    text += "\n";
  }
  return text;
}

}  // namespace

std::size_t WidthOf(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

std::string TableText(const Table& table, Form form) {
  switch (form) {
    case Form::Json:
      return Json(table);
    case Form::Csv:
      return Csv(table);
    case Form::Table:
      break;
  }
  return ForPeople(table);
}

}  // namespace kelvo::cli
