#include "link/command_words.h"

#include <algorithm>
#include <vector>

#include "base/wire_text.h"
#include "link/addresses.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr std::size_t kLongestQuote = 30;

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Count(std::size_t count, std::string_view what) {
  return std::to_string(count) + ' ' + std::string(what);
}

std::string Quote(std::string_view text) {
  const bool cut = text.size() > kLongestQuote;
  return "„" + ReadableText(text.substr(0, kLongestQuote)) + (cut ? "…“" : "“");
}

// The last parameter of a kind that may hold "," takes all the rest.
std::vector<std::string_view> Split(std::string_view text, std::span<const Parameter> parameters) {
  std::vector<std::string_view> values;
  for (std::size_t i = 0; i < parameters.size() && !text.empty(); ++i) {
    const bool number = parameters[i].form == Form::Number || parameters[i].form == Form::Hex;
    const std::size_t end = number ? std::min(text.find(','), text.size()) : text.size();
    values.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return values;
}

std::string Value(std::string_view value, Form form, std::string_view unit = "Zeichen") {
  switch (form) {
    case Form::Text:
      return Count(value.size(), unit);
    case Form::HexList:
      return Count(static_cast<std::size_t>(std::count(value.begin(), value.end(), ',')) + 1,
                   "Codes");
    case Form::HexBytes:
      return Count(value.size() / 2, "Byte");
    case Form::Hex:
      return "$" + ReadableText(Trimmed(value));
    case Form::Number:
      break;
  }
  return ReadableText(Trimmed(value));
}

// "Breite 240, Höhe 128"
std::string Listed(const CommandRow& row, const std::vector<std::string_view>& values) {
  std::string words;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Parameter& parameter = row.parameters[i];
    const bool fixed = parameter.lowest == parameter.highest && parameter.form == Form::Number;
    if (values[i].empty() || fixed) continue;
    if (!words.empty()) words += ", ";
    words += std::string(parameter.meaning) + ' ' + Value(values[i], parameter.form);
  }
  return words;
}

// Puts the values into a row's phrase; empty when one is missing.
std::string Filled(const CommandRow& row, std::string_view phrase,
                   const std::vector<std::string_view>& values, std::string_view unit = "Zeichen") {
  std::string words;
  for (std::size_t at = 0; at < phrase.size(); ++at) {
    const char sign = phrase[at];
    if (sign != '$' && sign != '&') {
      words += sign;
      continue;
    }
    const auto number = static_cast<std::size_t>(phrase[++at] - '1');
    if (number >= values.size()) return {};
    words += sign == '&' ? Quote(values[number])
                         : Value(values[number], row.parameters[number].form, unit);
  }
  return words;
}

// Whom an address selects that is none Terminal's own; empty for any other.
std::string SelectedWords(const CommandRow& row, const std::vector<std::string_view>& values) {
  if (row.name != CommandName::SelectAddress || values.size() != 1) return {};
  if (values[0] == std::to_string(kAllAddresses)) return "alle Terminals ";
  return values[0] == std::to_string(kClosingAddress) ? "kein Terminal (254) " : "";
}

std::string Words(const SentCommand& command) {
  if (command.row == nullptr && command.parameters.empty()) return "ESC ohne Befehl";
  if (command.row == nullptr) return "unbekannter Befehl " + Quote(command.parameters);
  const CommandRow& row = *command.row;
  const auto values = Split(command.parameters, row.parameters);
  if (const std::string whom = SelectedWords(row, values); !whom.empty()) return whom + "wählen";
  if (std::string words = Filled(row, row.phrase, values); !words.empty()) return words;
  const std::string listed = Listed(row, values);
  return std::string(row.meaning) + (listed.empty() ? "" : ": " + listed);
}

std::string Done(const SentCommand& command) {
  if (command.row == nullptr || command.row->done.empty()) return {};
  const auto values = Split(command.parameters, command.row->parameters);
  const std::string whom = SelectedWords(*command.row, values);
  if (!whom.empty()) return whom + "gewählt";
  return Filled(*command.row, command.row->done, values, "Byte");
}

}  // namespace

std::string DoneWords(std::string_view wire) {
  std::string words;
  WalkCommands(wire, [&words](const SentCommand& command) {
    const std::string done = Done(command);
    if (!done.empty()) words += (words.empty() ? "" : "; ") + done;
    return true;
  });
  return words;
}

std::string CommandWords(std::string_view wire, int limit) {
  std::string words;
  int left = 0;
  const auto add = [&](const auto& make) {
    if (limit-- <= 0) {
      ++left;
      return;
    }
    if (!words.empty()) words += "; ";
    words += make();
  };
  const auto addText = [&](std::string_view text) {
    if (!text.empty()) add([text] { return "Text " + Quote(text); });
  };
  addText(wire.substr(0, wire.find(kEsc)));
  WalkCommands(wire, [&](const SentCommand& command) {
    add([&] { return Words(command); });
    addText(command.text);
    return true;
  });
  if (left > 0) words += "; … und " + std::to_string(left) + " weitere";
  return words;
}

}  // namespace kelvo
