#pragma once

namespace kelvo {

constexpr int kMaxZoomX = 4;
constexpr int kMaxZoomY = 8;

/// How a text looks. Zooms outside their range count as the nearest one inside.
struct TextAttributes {
  int font = 0;   ///< 0..9, index of the font list
  int zoomX = 1;  ///< 1..kMaxZoomX
  int zoomY = 1;  ///< 1..kMaxZoomY
  bool bold = false;
  bool inverse = false;
  bool underline = false;
  bool operator==(const TextAttributes&) const = default;
};

}  // namespace kelvo
