#pragma once

#include <QImage>
#include <QSize>
#include <string>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/pixel_map.h"

namespace kelvo::sim {

/// The display as it looks: dark dots on a light ground, `scale` pixels to a dot, with the thin
/// gap between the dots that a liquid crystal shows from a scale of 3 on, and a margin. Without
/// power the ground is dull.
QImage LcdImage(const PixelMap& pixels, int scale, bool powered);
/// Its size in pixels.
QSize LcdImageSize(const PixelMap& pixels, int scale);

/// One Terminal's place in a picture of many.
struct WallTile {
  PixelMap pixels;
  bool powered = false;
  std::string caption;  ///< Latin-1
  bool operator==(const WallTile&) const = default;
};

/// All displays side by side, each with its caption; a single one is its display alone.
QImage WallImage(const std::vector<WallTile>& wall, const DeviceFonts& fonts);
/// Writes that image as PNG in one step; false on an error.
bool WriteWallPng(const std::vector<WallTile>& wall, const DeviceFonts& fonts,
                  const std::string& path);

}  // namespace kelvo::sim
