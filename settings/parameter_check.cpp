#include "settings/parameter_check.h"

#include <algorithm>
#include <charconv>

#include "base/wire_text.h"
#include "link/command_table.h"

namespace kelvo {
namespace {

using enum Severity;

constexpr std::size_t kLongestQuote = 12;
// The smallest cell that a character of the text layer can have, in pixels.
constexpr int kSmallestCellWidth = 4;
constexpr int kSmallestCellHeight = 6;

std::string Quote(std::string_view text) {
  return "„" + ReadableText(text.substr(0, kLongestQuote)) +
         (text.size() > kLongestQuote ? "…“" : "“");
}

std::string Letters(const CommandRow& row) { return "„" + std::string(row.letters) + "“"; }

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool IsHexCode(std::string_view code) {
  return !code.empty() && code.size() <= 2 && std::all_of(code.begin(), code.end(), IsHexDigit);
}

class ParameterCheck {
 public:
  ParameterCheck(std::vector<Remark>& remarks, std::string_view text, const PlacedCommand& command,
                 DisplaySize display)
      : remarks_(remarks),
        command_(command),
        row_(*command.row),
        display_(display),
        values_(PlacedValues(text, command)) {}

  void Run() {
    CheckCount();
    const std::size_t count = std::min(values_.size(), row_.parameters.size());
    for (std::size_t i = 0; i < count; ++i) CheckValue(row_.parameters[i], values_[i]);
    const bool complete = values_.size() == row_.parameters.size();
    if (complete && count >= 3 && row_.parameters[count - 1].form == Form::HexBytes) CheckBitmap();
  }

 private:
  void Add(Severity severity, std::size_t position, std::size_t length, std::string sentence) {
    remarks_.push_back({severity, position, length, std::move(sentence)});
  }

  // What is missing at the end of a list may be meant so.
  bool MayLack(std::size_t index) const {
    if (row_.parameters[index].form == Form::Text) return true;
    // A cursor that is off has no shape.
    return row_.name == CommandName::DefineCursor && index == 1 &&
           DecimalNumber(values_[0].text) == 0;
  }

  void CheckCount() {
    const std::size_t wanted = row_.parameters.size();
    const std::size_t given = values_.size();
    if (given > wanted) {
      const std::size_t begin = values_[wanted].begin;
      return Add(Warning, begin, command_.end - begin,
                 Letters(row_) +
                     (wanted == 0 ? " hat keine Parameter"
                                  : " hat höchstens " + std::to_string(wanted) + " Parameter") +
                     "; " + Quote(values_[wanted].text) + " wird übergangen.");
    }
    if (given == wanted || (given > 0 && MayLack(given)) || (given == 0 && AllMayLack())) return;
    // The builder of the keyboard recodings makes such tables out of pairs in some orders.
    const bool noCodes = row_.parameters[given].form == Form::HexList;
    Add(noCodes ? Hint : Error, command_.begin, command_.next - command_.begin,
        Letters(row_) + " braucht " + std::to_string(wanted) + " Parameter, hier " +
            (given == 1 ? "steht " : "stehen ") + std::to_string(given) +
            "; es fehlt: " + std::string(row_.parameters[given].meaning) + ".");
  }

  bool AllMayLack() const {
    return std::all_of(row_.parameters.begin(), row_.parameters.end(),
                       [](const Parameter& parameter) { return parameter.form == Form::Text; });
  }

  void CheckValue(const Parameter& parameter, const PlacedValue& value) {
    switch (parameter.form) {
      case Form::Number:
        return CheckNumber(parameter, value);
      case Form::Hex:
        if (!IsHexCode(value.text)) NoHex(parameter, value.begin, value.text);
        return;
      case Form::HexList:
        return CheckHexList(parameter, value);
      case Form::HexBytes:
        return CheckHexBytes(parameter, value);
      case Form::Text:
        return;
    }
  }

  void CheckNumber(const Parameter& parameter, const PlacedValue& value) {
    const std::string meaning(parameter.meaning);
    const std::optional<int> number = DecimalNumber(value.text);
    if (!number) {
      return Add(Error, value.begin, value.text.size(),
                 value.text.empty() ? meaning + " fehlt."
                                    : meaning + ": " + Quote(value.text) + " ist keine Zahl.");
    }
    const ValueRange shown = RangeOnDisplay(parameter, display_);
    const bool possible = *number >= parameter.lowest && *number <= parameter.highest;
    if (possible && *number >= shown.lowest && *number <= shown.highest) return;
    const std::string range = " " + std::to_string(*number) + " liegt nicht im Bereich " +
                              std::to_string(possible ? shown.lowest : parameter.lowest) + " bis " +
                              std::to_string(possible ? shown.highest : parameter.highest);
    Add(possible ? Hint : Error, value.begin, value.text.size(),
        meaning + range + (possible ? " dieses Displays." : "."));
  }

  void NoHex(const Parameter& parameter, std::size_t begin, std::string_view code) {
    Add(Error, begin, code.size(),
        code.empty() ? std::string(parameter.meaning) + ": ein Code fehlt."
                     : std::string(parameter.meaning) + ": " + Quote(code) +
                           " ist kein hexadezimaler Code (00 bis FF).");
  }

  // One remark is enough to find the place.
  void CheckHexList(const Parameter& parameter, const PlacedValue& value) {
    for (std::size_t at = 0; at <= value.text.size();) {
      const std::size_t end = std::min(value.text.find(',', at), value.text.size());
      const std::string_view code = value.text.substr(at, end - at);
      if (!IsHexCode(code)) return NoHex(parameter, value.begin + at, code);
      at = end + 1;
    }
  }

  void CheckHexBytes(const Parameter& parameter, const PlacedValue& value) {
    const auto* const wrong = std::find_if_not(value.text.begin(), value.text.end(), IsHexDigit);
    if (wrong == value.text.end()) return;
    const auto at = static_cast<std::size_t>(wrong - value.text.begin());
    Add(Error, value.begin + at, 1,
        std::string(parameter.meaning) + ": " + Quote(value.text.substr(at, 1)) +
            " ist keine hexadezimale Ziffer.");
  }

  // The last three values: bytes a row, or pixels when negative; rows; digits.
  void CheckBitmap() {
    const std::size_t last = values_.size() - 1;
    const std::optional<int> width = DecimalNumber(values_[last - 2].text);
    const std::optional<int> rows = DecimalNumber(values_[last - 1].text);
    if (!width || !rows) return;
    const int rowBytes = *width < 0 ? (7 - *width) / 8 : *width;
    const auto wanted =
        2 * static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(std::max(*rows, 0));
    const std::size_t given = values_[last].text.size();
    if (given == wanted) return;
    Add(Error, values_[last].begin, given,
        Letters(row_) + " braucht für diese Größe " + std::to_string(wanted) +
            " hexadezimale Ziffern, hier stehen " + std::to_string(given) + ".");
  }

  std::vector<Remark>& remarks_;
  const PlacedCommand& command_;
  const CommandRow& row_;
  const DisplaySize display_;
  const std::vector<PlacedValue> values_;
};

}  // namespace

std::optional<int> DecimalNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

ValueRange RangeOnDisplay(const Parameter& parameter, DisplaySize display) {
  const auto upTo = [&parameter](int highest) {
    return ValueRange{std::max(parameter.lowest, 0), std::min(parameter.highest, highest)};
  };
  if (parameter.meaning == "X") return upTo(display.width - 1);
  if (parameter.meaning == "Y") return upTo(display.height - 1);
  if (parameter.meaning == "Spalte") return {1, upTo(display.width / kSmallestCellWidth).highest};
  if (parameter.meaning == "Zeile") return {1, upTo(display.height / kSmallestCellHeight).highest};
  return {parameter.lowest, parameter.highest};
}

void CheckParameters(std::vector<Remark>& remarks, std::string_view text,
                     const PlacedCommand& command, DisplaySize display) {
  ParameterCheck(remarks, text, command, display).Run();
}

}  // namespace kelvo
