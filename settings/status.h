#pragma once

#include <array>
#include <string>
#include <string_view>

// Status queries and basic settings: how fields and replies are read.

#include "store/display_size.h"

namespace kelvo {

/// A whole number 0..255: a bus address, or the lines of a port.
bool IsByteNumber(double value);

/// The eight lines of a port from its number: line i is bit i.
using PortLines = std::array<bool, 8>;
PortLines ReadPortLines(double value);
int PortNumberOf(const PortLines& lines);

/// A resolution field when it is left: within SmallestDisplay..largest, and a plain whole number.
std::string ClampDisplay(std::string_view text, int largest);

/// The two numbers of an "F??" reply. Without a comma both are read from the whole reply.
struct FlashInfo {
  double sectors = 0;
  double sectorSize = 0;
};
FlashInfo ReadFlashInfo(std::string_view reply);

}  // namespace kelvo
