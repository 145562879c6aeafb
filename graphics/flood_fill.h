#pragma once

#include <optional>

#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

namespace kelvo {

/// What a fill from `at` sets: all pixels that are as that one is and hang together with it by
/// their edges. None where `at` lies outside.
PixelMap FloodArea(const PixelMap& shown, Point at);

/// An object that fills the area around a point of what is shown: a picture of its pixels alone,
/// which leaves all others as they are, or the rectangle that the area is. Nothing where the fill
/// would change nothing.
std::optional<DrawingObject> MakeFill(const PixelMap& shown, Point at, PenMode penMode);

}  // namespace kelvo
