#pragma once

#include <optional>

#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

namespace kelvo {

/// What a fill from `at` sets: all pixels that are as that one is and hang together with it by
/// their edges. None where `at` lies outside.
PixelMap FloodArea(const PixelMap& shown, Point at);

/// An object that draws the set pixels alone and leaves all others as they are: a picture of them,
/// or the rectangle that they are. Its map's lower left pixel is (0, 0). Nothing without any.
std::optional<DrawingObject> ObjectOf(const PixelMap& area);

/// An object that fills the area around a point of what is shown. Nothing where the fill would
/// change nothing.
std::optional<DrawingObject> MakeFill(const PixelMap& shown, Point at, PenMode penMode);

}  // namespace kelvo
