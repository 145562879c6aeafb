#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvo {

/// The numeric value of a text, as every field and reply of this program is read: leading blanks
/// are skipped, then the longest decimal number at the front counts (sign, digits, one point), or
/// after "&H" the hexadecimal digits. 0 if there is none. Digits beyond the range of a double give
/// its largest value, never infinity.
double Val(std::string_view text);

/// A number as text: no blanks, no leading zeros, a point as decimal separator, "1E+20" for what
/// has more than 15 digits.
std::string NumberText(double number);

/// Rounds to the nearest whole number, a half to the even neighbour, and confines the result to
/// the range of a 32-bit integer.
std::int32_t RoundToEven(double number);

}  // namespace kelvo
