#include "inventory/line_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "base/wire_text.h"

namespace kelvo {
namespace {

constexpr char kHex[] = "0123456789ABCDEF";
constexpr std::size_t kCheckLength = 8;

bool Unseen(unsigned char code) {
  return code < 0x20 || (code >= 0x7F && code <= 0xA0) || code == 0xAD || code == '\\';
}

void AppendEscaped(std::string& out, unsigned char code) {
  out += '\\';
  if (code == '\\') {
    out += '\\';
    return;
  }
  out += 'x';
  out += kHex[code >> 4];
  out += kHex[code & 15];
}

int HexDigit(char c) {
  const std::string_view digits(kHex, 16);
  const std::size_t value = digits.find(c);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

// One escape behind its backslash; false when it is none.
bool TakeEscape(std::string_view& text, std::string& out) {
  if (text.starts_with('\\')) {
    out += '\\';
    text.remove_prefix(1);
    return true;
  }
  if (text.size() < 3 || text.front() != 'x') return false;
  const int high = HexDigit(text[1]);
  const int low = HexDigit(text[2]);
  if (high < 0 || low < 0) return false;
  out += static_cast<char>(high * 16 + low);
  text.remove_prefix(3);
  return true;
}

std::string Check(std::string_view text) {
  std::uint32_t sum = 2166136261U;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  char digits[kCheckLength + 1];
  std::snprintf(digits, sizeof digits, "%08X", sum);
  return digits;
}

}  // namespace

std::string EscapedWire(std::string_view wire) {
  std::string out;
  for (const char c : wire) {
    const auto code = static_cast<unsigned char>(c);
    if (Unseen(code)) {
      AppendEscaped(out, code);
    } else {
      out += ScreenText(std::string_view(&c, 1));
    }
  }
  return out;
}

// Of UTF-8 only what would break the line.
std::string EscapedText(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F || code == '\\') {
      AppendEscaped(out, code);
    } else {
      out += c;
    }
  }
  return out;
}

std::optional<std::string> PlainText(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c != '\\') {
      out += c;
    } else if (!TakeEscape(text, out)) {
      return std::nullopt;
    }
  }
  return out;
}

// An escape stands for a byte, all else for a code point below 256.
std::optional<std::string> PlainWire(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t escape = std::min(text.find('\\'), text.size());
    const auto before = WireText(text.substr(0, escape));
    if (!before) return std::nullopt;
    out += *before;
    text.remove_prefix(escape);
    if (text.empty()) break;
    text.remove_prefix(1);
    if (!TakeEscape(text, out)) return std::nullopt;
  }
  return out;
}

std::vector<std::string_view> SplitAt(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::string TimeText(JournalTime time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  char text[40];
  std::snprintf(
      text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

std::optional<JournalTime> TimeIn(std::string_view text) {
  using namespace std::chrono;
  constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd.dddZ";
  if (text.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (kForm[i] == 'd' ? !digit : text[i] != kForm[i]) return std::nullopt;
  }
  const auto number = [text](std::size_t at, std::size_t length) {
    return NumberIn<unsigned>(text.substr(at, length)).value_or(0);
  };
  const year_month_day date(year(static_cast<int>(number(0, 4))), month(number(5, 2)),
                            day(number(8, 2)));
  if (!date.ok()) return std::nullopt;
  return sys_days(date) + hours(number(11, 2)) + minutes(number(14, 2)) + seconds(number(17, 2)) +
         milliseconds(number(20, 3));
}

std::string Sealed(std::string line) {
  const std::string check = Check(line);
  return std::move(line) + '\t' + check;
}

std::optional<std::string_view> Unsealed(std::string_view line) {
  if (line.size() <= kCheckLength) return std::nullopt;
  const std::string_view body = line.substr(0, line.size() - kCheckLength - 1);
  if (line[body.size()] != '\t' || Check(body) != line.substr(body.size() + 1)) return std::nullopt;
  return body;
}

}  // namespace kelvo
