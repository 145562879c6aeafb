#pragma once

#include "graphics/create_pic.h"

namespace kelvo {

/// What a drawing costs, so that the operator can choose how to send and store it.
struct DrawingCosts {
  std::size_t wireBytes = 0;    ///< a send: the clearing command and the drawing's
  double seconds = 0;           ///< on the line, start and stop bits included
  std::size_t macroBytes = 0;   ///< in the EEPROM as a macro
  std::size_t bitmapBytes = 0;  ///< in the EEPROM as a bitmap of the drawing's visible box
};

/// Asks nobody: an unknown version counts as 0. `bitsPerSecond` 0 gives 0 seconds.
DrawingCosts CostsOf(const Drawing& drawing, TerminalTraits terminal, int displayWidth,
                     int bitsPerSecond);

}  // namespace kelvo
