#pragma once

#include <string_view>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/pixel_map.h"

// The Terminal's pixel drawing. One set of routines, so that the canvas of the
// graphics editor and the simulated Terminal can never show different pixels.

namespace kelvo {

/// Both end points are drawn; a line of equal end points is one pixel.
void DrawLine(PixelMap& map, int x0, int y0, int x1, int y1, Ink ink);
/// Corners in any order, both inclusive. Filled covers the outline as well.
void DrawRectangle(PixelMap& map, int x0, int y0, int x1, int y1, bool filled, Ink ink);
/// Centre and radii in pixels; negative radii draw nothing, a radius of 0 gives a line or a point.
void DrawEllipse(PixelMap& map, int centreX, int centreY, int radiusX, int radiusY, bool filled,
                 Ink ink);
/// A closed outline or, filled, its even-odd inside and outline. Fewer than 2 points draw nothing.
struct PixelPoint {
  int x = 0;
  int y = 0;
  bool operator==(const PixelPoint&) const = default;
};
void DrawPolygon(PixelMap& map, const std::vector<PixelPoint>& points, bool filled, Ink ink);

/// How text meets what is on the display already. The numbers are those of the command "TM".
enum class TextMode { Replace = 0, Invert = 1, Clear = 2, Set = 3 };

struct TextStyle {
  int font = 0;          ///< 0..9, index of the font list
  int zoomX = 1;         ///< 1..4
  int zoomY = 1;         ///< 1..8
  bool underline = false;  ///< attribute value 1
  bool bold = false;       ///< attribute value 2
  bool inverse = false;    ///< attribute value 4
  TextMode mode = TextMode::Replace;
};

/// Draws Latin-1 text with the top left corner of its first cell at (x, y) and returns the x
/// coordinate behind the last cell. Without the font nothing is drawn and x is returned.
int DrawText(PixelMap& map, const DeviceFonts& fonts, int x, int y, std::string_view text,
             const TextStyle& style);

}  // namespace kelvo
