#pragma once

#include <utility>

#include "store/recordset.h"

namespace kelvo {

/// Limits of the display resolution, in pixels; the limits themselves are accepted.
inline constexpr int kSmallestDisplay = 20;
inline constexpr int kLargestDisplayX = 640;
inline constexpr int kLargestDisplayY = 480;

/// Width and height in pixels as they are stored (`Default`), within these limits, whatever the
/// database holds.
inline std::pair<int, int> DisplaySizeIn(const Recordset& defaults) {
  const auto side = [&defaults](const char* field, int largest) {
    return static_cast<int>(defaults.Whole(field, kSmallestDisplay, largest));
  };
  return {side("displayx", kLargestDisplayX), side("displayy", kLargestDisplayY)};
}

}  // namespace kelvo
