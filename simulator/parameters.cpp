#include "simulator/parameters.h"

#include <algorithm>

namespace kelvo::sim {

int Parameters::Count() const {
  if (text_.empty()) return 0;
  return 1 + static_cast<int>(std::count(text_.begin(), text_.end(), ','));
}

std::string_view Parameters::Rest(int field) const {
  std::string_view rest = text_;
  for (; field > 0; --field) {
    const std::size_t comma = rest.find(',');
    if (comma == std::string_view::npos) return {};
    rest.remove_prefix(comma + 1);
  }
  return rest;
}

std::string_view Parameters::Field(int field) const {
  const std::string_view rest = Rest(field);
  return rest.substr(0, rest.find(','));
}

int Parameters::Number(int field) const {
  constexpr int kLimit = 1'000'000'000;
  std::string_view text = Field(field);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  int value = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') break;
    value = value >= kLimit / 10 ? kLimit : value * 10 + (digit - '0');
  }
  return negative ? -value : value;
}

std::optional<int> HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return std::nullopt;
}

std::optional<unsigned char> HexByte(std::string_view digits) {
  if (digits.empty() || digits.size() > 2) return std::nullopt;
  int value = 0;
  for (const char digit : digits) {
    const std::optional<int> nibble = HexDigit(digit);
    if (!nibble) return std::nullopt;
    value = value * 16 + *nibble;
  }
  return static_cast<unsigned char>(value);
}

std::optional<std::string> HexBytes(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const std::optional<unsigned char> byte = HexByte(digits.substr(i, 2));
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  return bytes;
}

}  // namespace kelvo::sim
