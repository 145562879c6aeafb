#pragma once

#include "graphics/drawing.h"

namespace kelvo {

enum class Dithering {
  Threshold,  ///< as the Terminal's bitmaps are made: colours below the threshold are black
  Diffusion,  ///< the error of each pixel goes to its neighbours
  Ordered,    ///< a fixed pattern of eight by eight
};

/// The picture in black and white alone. `threshold` is a colour value for Threshold; for the other
/// two its brightness is what becomes half black.
Picture MadeMonochrome(const Picture& picture, Dithering dithering, Colour threshold);
/// Each pixel as grey of its brightness, so that the threshold compares brightness.
Picture MadeGrey(const Picture& picture);

}  // namespace kelvo
