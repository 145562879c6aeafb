#pragma once

#include "link/addresses.h"

namespace kelvo {

/// Addresses on the bus are 0 up to this one.
inline constexpr int kLastBusAddress = 255;

}  // namespace kelvo
