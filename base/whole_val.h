#pragma once

#include <cmath>
#include <cstdint>
#include <string_view>

#include "base/val.h"

namespace kelvo {

/// The number at a text's front without what is behind its point, within the range of a 32-bit
/// integer: whatever a stored or received text says.
inline std::int32_t WholeVal(std::string_view text) { return RoundToEven(std::trunc(Val(text))); }

}  // namespace kelvo
