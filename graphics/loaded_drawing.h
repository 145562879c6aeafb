#pragma once

#include <map>
#include <string>

#include "graphics/drawing.h"

namespace kelvo {

/// What a file or a record gave.
struct LoadedDrawing {
  Drawing drawing;
  bool foreign = false;                ///< from another program, fitted to the display
  std::map<std::string, int> skipped;  ///< German name of what was left out, and how often
  std::string error;                   ///< German, UTF-8; then the drawing is empty
};

}  // namespace kelvo
