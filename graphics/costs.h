#pragma once

#include <optional>

#include "graphics/create_pic.h"

namespace kelvo {

/// What a drawing costs, so that the operator can choose how to send and store it.
struct DrawingCosts {
  std::size_t wireBytes = 0;   ///< a send: the clearing command and the drawing's
  double seconds = 0;          ///< on the line, start and stop bits included
  std::size_t macroBytes = 0;  ///< in the EEPROM as a macro
  /// In the EEPROM, of the picture that would be stored there; nothing without one.
  std::optional<std::size_t> bitmapBytes{};
};

/// Asks nobody: an unknown version counts as 0. `bitsPerSecond` 0 gives 0 seconds.
DrawingCosts CostsOf(const Drawing& drawing, TerminalTraits terminal, int bitsPerSecond);

}  // namespace kelvo
