#pragma once

#include "graphics/preparation.h"

namespace kelvo {

/// The brightness, 0..255, that the dithers make half black.
inline constexpr int kMiddleBrightness = 128;

/// The picture in black and white alone. `threshold` is a colour value, for Threshold alone; the
/// other two compare brightness: with `middle`, 0..256, that brightness becomes half black.
Picture MadeMonochrome(const Picture& picture, Dithering dithering, Colour threshold,
                       int middle = kMiddleBrightness);
/// Each pixel as grey of its brightness, so that the threshold compares brightness.
Picture MadeGrey(const Picture& picture);

}  // namespace kelvo
