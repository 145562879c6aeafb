#include "simulator/keyboards.h"

#include <algorithm>
#include <cstdio>

namespace kelvo::sim {
namespace {

std::string Hex(unsigned char value) {
  char text[3];
  std::snprintf(text, sizeof text, "%X", value);
  return text;
}

// debounce, scan, delay, two masks, repeat
KeyTimes ReadTimes(const Parameters& parameters) {
  KeyTimes times;
  times.debounce = std::clamp(parameters.Number(0), 0, 255);
  times.scan = std::clamp(parameters.Number(1), 1, 255);
  times.delay = std::clamp(parameters.Number(2), 0, 255);
  if (parameters.Count() > 5) times.repeat = std::clamp(parameters.Number(5), 0, 255);
  return times;
}

// The code that a table gives to a key; nothing outside of the table.
std::optional<unsigned char> Lookup(const std::optional<std::string>& table, int key) {
  if (!table || table->empty()) return std::nullopt;
  const int index = key - static_cast<unsigned char>(table->front()) + 1;
  if (index < 1 || index >= static_cast<int>(table->size())) return std::nullopt;
  return static_cast<unsigned char>((*table)[static_cast<std::size_t>(index)]);
}

}  // namespace

std::optional<std::string> PackKeyTable(std::string_view text) {
  const Parameters fields(text);
  if (fields.Count() < 1 || fields.Count() > 257) return std::nullopt;
  std::string table;
  for (int i = 0; i < fields.Count(); ++i) {
    const std::optional<unsigned char> code = HexByte(fields.Field(i));
    if (!code) return std::nullopt;
    table += static_cast<char>(*code);
  }
  return table;
}

void Keyboards::Reset() {
  scanning_ = false;
  times_ = {};
  columns_ = kColumns;
  rows_ = kRows;
  unusedInputs_ = unusedOutputs_ = 0;
  matrixTable_.reset();
  atTable_.reset();
}

bool Keyboards::Execute(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::ActivateMatrixTable:
      matrixTable_ = parameters.Number(0);
      return true;
    case Command::ActivateAtTable:
      atTable_ = parameters.Number(0);
      return true;
    case Command::MatrixSize:
      columns_ = std::clamp(parameters.Number(0), 0, kColumns);
      rows_ = std::clamp(parameters.Number(1), 0, kRows);
      return true;
    case Command::MatrixConfig:
      times_ = ReadTimes(parameters);
      unusedInputs_ = parameters.Number(3) & 0xFF;
      unusedOutputs_ = parameters.Number(4) & 0xFF;
      return true;
    case Command::MatrixOn:
    case Command::MatrixOff:
      scanning_ = command == Command::MatrixOn;
      return true;
    default:
      return false;
  }
}

std::optional<std::string> Keyboards::Answer(Command query) const {
  if (query == Command::AskMatrixTable) return Describe(matrixTable_);
  if (query == Command::AskAtTable) return Describe(atTable_);
  return std::nullopt;
}

std::optional<std::string> Keyboards::Table(std::optional<int> number) const {
  if (!number || *number < 0 || *number > 255) return std::nullopt;
  return eeprom_->Read(Eeprom::Kind::KeyTable, static_cast<unsigned char>(*number));
}

// The active table as it was written: number, first code, codes.
std::string Keyboards::Describe(std::optional<int> number) const {
  const std::optional<std::string> table = Table(number);
  if (!table) return "leer";
  std::string text = std::to_string(*number);
  for (const char code : *table) text.append(",").append(Hex(static_cast<unsigned char>(code)));
  return text;
}

bool Keyboards::Wired(int row, int column) const {
  if (!scanning_ || row < 0 || row >= rows_ || column < 0 || column >= columns_) return false;
  return (unusedInputs_ >> column & 1) == 0 && (unusedOutputs_ >> (7 - row) & 1) == 0;
}

std::optional<unsigned char> Keyboards::MatrixCode(int row, int column) const {
  if (!Wired(row, column)) return std::nullopt;
  // Tables count eight keys to a row, the position code leaves room for sixteen.
  const std::optional<unsigned char> code = Lookup(Table(matrixTable_), 128 + 8 * row + column);
  if (!code) return static_cast<unsigned char>(128 + 16 * row + column);
  if (*code == 255) return std::nullopt;
  return code;
}

unsigned char Keyboards::AtCode(unsigned char character) const {
  return Lookup(Table(atTable_), character).value_or(character);
}

std::string Keyboards::ConfigCommands() const {
  std::string commands = "\x1BMS" + std::to_string(columns_) + "," + std::to_string(rows_) + ";";
  commands += "\x1BMC";
  for (const int number :
       {times_.debounce, times_.scan, times_.delay, unusedInputs_, unusedOutputs_}) {
    commands += std::to_string(number) + ",";
  }
  commands += std::to_string(times_.repeat) + ";";
  if (scanning_) commands += "\x1BME";
  if (matrixTable_)
    commands +=
        "\x1B"
        "EMK" +
        std::to_string(*matrixTable_) + ";";
  if (atTable_)
    commands +=
        "\x1B"
        "EAK" +
        std::to_string(*atTable_) + ";";
  return commands;
}

}  // namespace kelvo::sim
