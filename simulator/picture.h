#pragma once

#include <QImage>
#include <QSize>
#include <string>

#include "graphics/pixel_map.h"

namespace kelvo::sim {

/// The display as it looks: dark dots on a light ground, `scale` pixels to a dot, with the thin
/// gap between the dots that a liquid crystal shows from a scale of 3 on, and a margin. Without
/// power the ground is dull.
QImage LcdImage(const PixelMap& pixels, int scale, bool powered);
/// Its size in pixels.
QSize LcdImageSize(const PixelMap& pixels, int scale);

/// Writes that image as PNG in one step; false on an error.
bool WriteLcdPng(const PixelMap& pixels, bool powered, const std::string& path);

}  // namespace kelvo::sim
