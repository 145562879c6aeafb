#include "settings/macro_hint.h"

#include <algorithm>
#include <limits>

#include "link/command_table.h"
#include "settings/macro_text.h"

namespace kelvo {
namespace {

std::string NumberWords(const Parameter& parameter, DisplaySize display) {
  const ValueRange range = RangeOnDisplay(parameter, display);
  std::string meaning(parameter.meaning);
  if (range.lowest == range.highest) return meaning + " " + std::to_string(range.lowest);
  // The arithmetic's limits tell nobody anything.
  if (range.highest == std::numeric_limits<short>::max()) return meaning;
  return meaning + " " + std::to_string(range.lowest) + "…" + std::to_string(range.highest);
}

std::string Words(const Parameter& parameter, DisplaySize display) {
  std::string meaning(parameter.meaning);
  switch (parameter.form) {
    case Form::Number:
      return NumberWords(parameter, display);
    case Form::Hex:
      return meaning + " 00…FF";
    case Form::HexList:
      return meaning + " 00…FF, beliebig viele";
    case Form::HexBytes:
      return meaning + ", zwei Ziffern je Byte";
    case Form::Text:
      break;
  }
  return meaning;
}

std::string EndWords(Ending ending) {
  switch (ending) {
    case Ending::Semicolon:
      return "„;“";
    case Ending::Etx:
      return "♥ (Code 3)";
    case Ending::Eot:
      return "Textende ♦ (Code 4)";
    case Ending::AtOnce:
    case Ending::Open:
      break;
  }
  return {};
}

bool Holds(const PlacedCommand& command, std::size_t caret) {
  const bool open = command.close != PlacedCommand::Close::Closed;
  return command.begin < caret && caret <= (open ? command.next : command.end);
}

int ValueAt(std::string_view text, const PlacedCommand& command, std::size_t caret) {
  if (caret < command.parameters || command.row->parameters.empty()) return -1;
  int current = -1;
  for (const PlacedValue& value : PlacedValues(text, command)) {
    if (value.begin <= caret) ++current;
  }
  return std::max(current, 0);
}

}  // namespace

CommandHint HintOf(const CommandRow& row, DisplaySize display) {
  CommandHint hint{
      std::string(row.letters) + " " + std::string(row.meaning), {}, -1, EndWords(row.ending)};
  for (const Parameter& parameter : row.parameters) {
    hint.parameters.push_back(Words(parameter, display));
  }
  return hint;
}

CommandHint HintAt(std::string_view text, std::size_t caret, DisplaySize display) {
  for (const PlacedCommand& command : PlacedCommands(text)) {
    if (!Holds(command, caret)) continue;
    if (command.row == nullptr) {
      const bool begun = !CompletionAt(text, caret).rows.empty();
      return {begun ? "Befehl, noch ohne alle Buchstaben" : "unbekannter Befehl", {}, -1, {}};
    }
    CommandHint hint = HintOf(*command.row, display);
    hint.current = ValueAt(text, command, caret);
    return hint;
  }
  return {"Text für das Display", {}, -1, {}};
}

std::string ParameterWords(const CommandHint& hint) {
  std::string words;
  for (const std::string& parameter : hint.parameters) {
    words += (words.empty() ? "" : ", ") + parameter;
  }
  return words;
}

}  // namespace kelvo
