#pragma once

#include <string>

#include "graphics/pixel_map.h"

namespace kelvo {

/// A PNG file of the pixels, black on white, each `scale` by `scale` dots large. Empty for a map
/// without pixels and where there is no memory for it.
std::string PngOf(const PixelMap& pixels, int scale = 1);

}  // namespace kelvo
