#include "link/answer_form.h"

#include <algorithm>
#include <charconv>
#include <regex>

#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr std::size_t kLongestVersion = 40;
constexpr std::size_t kLongestHex = 4;
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

bool IsPrintable(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) >= ' ' || c == '\r' || c == '\n' || c == '\t';
  });
}

std::string_view WithoutEcho(std::string_view sent, std::string_view answer) {
  return answer.starts_with(sent) ? answer.substr(sent.size()) : answer;
}

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool IsNumber(std::string_view text, const Parameter& range) {
  text = WithoutBlanks(text);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= range.lowest &&
         number <= range.highest;
}

bool IsHex(std::string_view text) {
  return !text.empty() && text.size() <= kLongestHex &&
         text.find_first_not_of(kHexDigits) == std::string_view::npos;
}

// Takes one value off the front of a list; false when it is none.
bool TakeValue(std::string_view& list, const Parameter& value) {
  const std::string_view first = list.substr(0, list.find(','));
  list.remove_prefix(std::min(first.size() + 1, list.size()));
  return value.form == Form::Hex ? IsHex(first) : IsNumber(first, value);
}

bool IsList(std::string_view list, std::span<const Parameter> values) {
  const auto commas = std::count(list.begin(), list.end(), ',');
  if (static_cast<std::size_t>(commas) + 1 != values.size()) return false;
  return std::all_of(values.begin(), values.end(),
                     [&list](const Parameter& value) { return TakeValue(list, value); });
}

}  // namespace

bool IsVersion(std::string_view reply) {
  static const std::regex version(R"( *[0-9]+(\.[0-9]+){0,2}[A-Za-z]*( [ -~]*)?)");
  return reply.size() <= kLongestVersion && std::regex_match(reply.begin(), reply.end(), version);
}

bool HasForm(const CommandRow& question, std::string_view values) {
  if (question.name == CommandName::AskVersion) return IsVersion(values);
  if (question.values.empty()) return IsPrintable(values);
  if (question.name == CommandName::AskAddress) {
    const std::size_t digit = std::min(values.find_first_of(kDigits), values.size());
    if (!IsPrintable(values.substr(0, digit))) return false;
    values.remove_prefix(digit);
  }
  // Some kinds of cursor have a shape alone.
  const bool alone =
      question.name == CommandName::AskCursorShape && values.find(',') == std::string_view::npos;
  return IsList(values, question.values.subspan(alone ? 1 : 0));
}

std::string_view ValuesBehind(std::string_view sent, std::string_view answer) {
  answer = WithoutEcho(sent, answer);
  return answer.substr(0, answer.find(kEndMark));
}

bool CanAnswer(std::string_view sent, std::string_view answer) {
  const CommandRow* const question = LastCommand(sent);
  if (question == nullptr) return true;
  if (question->answer == Answer::FreeText) return IsPrintable(WithoutEcho(sent, answer));
  return question->answer != Answer::Value || HasForm(*question, ValuesBehind(sent, answer));
}

}  // namespace kelvo
