#pragma once

#include <string>

#include "graphics/pixel_map.h"

namespace kelvo {

/// A map as text, "#" and ".", every row followed by a line end.
inline std::string AsText(const PixelMap& map) {
  std::string picture;
  for (int y = 0; y < map.Height(); ++y) {
    for (int x = 0; x < map.Width(); ++x) picture += map.At(x, y) ? '#' : '.';
    picture += '\n';
  }
  return picture;
}

inline int SetPixels(const PixelMap& map) {
  int count = 0;
  for (int y = 0; y < map.Height(); ++y) {
    for (int x = 0; x < map.Width(); ++x) count += map.At(x, y) ? 1 : 0;
  }
  return count;
}

inline PixelMap AllSet(int width, int height) {
  PixelMap map(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) map.Put(x, y, Ink::Set);
  }
  return map;
}

}  // namespace kelvo
