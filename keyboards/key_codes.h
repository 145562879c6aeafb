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

/// The texts between the commas of a stored table, up to its ";": [0] is command and number, [1]
/// the start, the codes follow. A damaged table gives fewer, or texts that are no codes.
std::vector<std::string_view> TableFields(std::string_view table);

/// The value of a hexadecimal text; 0 where it does not begin with such a digit.
double HexField(std::string_view text);

/// The numeric value of a number field, as it goes into a command.
std::string TableNumber(std::string_view numberField);

}  // namespace kelvo
