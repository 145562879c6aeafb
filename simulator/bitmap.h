#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "graphics/pixel_map.h"
#include "simulator/parameters.h"

// A bitmap as the EEPROM keeps it:
//
//   record = row-bytes height rows
//   row-bytes = one byte; height = two bytes, the lower one first
//   rows = from the top; the leftmost pixel is a byte's highest bit

namespace kelvo::sim {

/// Reads the parameters of "EWB": number, width in bytes (or pixels, negative), height, digits.
/// Nothing when the digits are not as many as that takes, or a number is out of range.
std::optional<std::string> PackBitmap(const Parameters& parameters);
/// The picture of such a record, as wide as its bytes; empty when it is none.
PixelMap UnpackBitmap(std::string_view record);

}  // namespace kelvo::sim
