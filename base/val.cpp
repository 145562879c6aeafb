#include "base/val.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kelvo {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

double Bounded(double number) {
  constexpr double largest = std::numeric_limits<double>::max();
  return std::isfinite(number) ? number : std::copysign(largest, number);
}

double HexValue(std::string_view digits) {
  double value = 0;
  for (const char c : digits) {
    const int digit = HexDigit(c);
    if (digit < 0) break;
    value = value * 16 + digit;
  }
  return Bounded(value);
}

// The length of sign, digits, point and digits at the front of `text`.
std::size_t DecimalLength(std::string_view text) {
  std::size_t length = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  bool point = false;
  for (; length < text.size(); ++length) {
    if (text[length] == '.' && !point) {
      point = true;
    } else if (!IsDigit(text[length])) {
      break;
    }
  }
  return length;
}

}  // namespace

double Val(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  if (text.size() >= 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
    return HexValue(text.substr(2));
  }
  text = text.substr(0, DecimalLength(text));
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // Only too many digits get here; a number too small to be told from 0 has no exponent to be
    // written with.
    return text.front() == '-' ? std::numeric_limits<double>::lowest()
                               : std::numeric_limits<double>::max();
  }
  return result.ec == std::errc() ? value : 0;
}

std::string NumberText(double number) {
  if (number == 0) return "0";
  // to_chars, because the C library's formats follow the desktop's language and would write a
  // comma.
  std::array<char, 40> text{};
  char* const end = std::to_chars(text.data(), text.data() + text.size(), Bounded(number),
                                  std::chars_format::general, 15)
                        .ptr;
  for (char* c = text.data(); c != end; ++c) {
    if (*c == 'e') *c = 'E';
  }
  return {text.data(), end};
}

std::int32_t RoundToEven(double number) {
  constexpr double low = std::numeric_limits<std::int32_t>::min();
  constexpr double high = std::numeric_limits<std::int32_t>::max();
  const double rounded = std::nearbyint(number);
  return static_cast<std::int32_t>(rounded < low ? low : rounded > high ? high : rounded);
}

}  // namespace kelvo
