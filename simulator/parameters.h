#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvo::sim {

/// The values between a command's name and its ";", separated by ",".
class Parameters {
 public:
  explicit Parameters(std::string_view text) : text_(text) {}

  std::string_view Text() const { return text_; }
  /// Fields there are; an empty text has none.
  int Count() const;
  /// The field's decimal number: leading blanks and a sign are taken, what follows the digits is
  /// not. 0 without digits or without the field; beyond +-1000000000 that limit.
  int Number(int field) const;
  /// Empty without the field.
  std::string_view Field(int field) const;
  /// All from this field on, commas included.
  std::string_view Rest(int field) const;

 private:
  std::string_view text_;
};

/// 0..15, or nothing.
std::optional<int> HexDigit(char digit);
/// One or two hexadecimal digits.
std::optional<unsigned char> HexByte(std::string_view digits);
/// A bitmap's bytes from pairs of hexadecimal digits; nothing when another character stands there
/// or a digit is left over.
std::optional<std::string> HexBytes(std::string_view digits);

}  // namespace kelvo::sim
