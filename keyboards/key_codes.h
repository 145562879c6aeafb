#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What matrix and AT tables share. Both are written into the Terminal's EEPROM with the same
// command and kept in the database as that command:
//
//   table = ESC "EWK" number "," start ("," code)* ";"
//
// start and codes are hexadecimal, upper case, without leading zeros.

namespace kelvo {

/// A whole number in upper-case hexadecimal; negative ones as their 32-bit complement.
std::string HexCode(std::int32_t number);

/// ESC "EWK" number "," start; codes and the closing ";" follow.
std::string TableHead(double number, std::int32_t start);

/// The texts between the commas of a stored table, up to its ";": [0] is command and number, [1]
/// the start, the codes follow. A damaged table gives fewer, or texts that are no codes.
std::vector<std::string_view> TableFields(std::string_view table);

/// The value of a hexadecimal text; 0 where it does not begin with such a digit.
double HexField(std::string_view text);

/// ESC letters number ";", where the number is the numeric value of a field's text.
std::string TableCommand(std::string_view letters, std::string_view numberField);

}  // namespace kelvo
