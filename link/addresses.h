#pragma once

namespace kelvo {

/// Reaches every Terminal, so that all answer at once when they are asked there.
inline constexpr int kAllAddresses = 255;
/// Selected at the end of every transfer, so that nobody listens any more.
inline constexpr int kClosingAddress = 254;

}  // namespace kelvo
