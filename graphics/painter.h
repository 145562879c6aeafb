#pragma once

#include "graphics/device_font.h"
#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

namespace kelvo {

/// Whether shapes that are never sent are drawn, in their place among the others.
enum class Unsent { LeftOut, Drawn };

/// Draws on `display` what the Terminal shows after the drawing's commands, pixel by pixel. The
/// map's height is the display's.
void PaintDrawing(PixelMap& display, const Drawing& drawing, const DeviceFonts& fonts,
                  std::int64_t blackThreshold, Unsent unsent = Unsent::LeftOut);

}  // namespace kelvo
