#pragma once

#include <string_view>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/pixel_map.h"
#include "graphics/text_attributes.h"

// The Terminal's pixel drawing. One set of routines, so that the canvas of the
// graphics editor and the simulated Terminal can never show different pixels.
//
// Coordinates may be anything: what lies outside the map is clipped before stepping, so the time
// depends on the map alone. Coordinates and radii beyond +-kCoordinateLimit count as that limit.
// With Ink::Invert every pixel of a figure is inverted exactly once.

namespace kelvo {

/// Far beyond the 16 bits of a command's numbers, and small enough that no sum overflows.
constexpr int kCoordinateLimit = 1 << 24;

struct PixelPoint {
  int x = 0;
  int y = 0;
  bool operator==(const PixelPoint&) const = default;
};

/// Both end points are drawn; a line of equal end points is one pixel. The line from A to B has
/// the same pixels as the line from B to A.
void DrawLine(PixelMap& map, int x0, int y0, int x1, int y1, Ink ink);
/// Corners in any order, both inclusive. Filled covers the outline as well.
void DrawRectangle(PixelMap& map, int x0, int y0, int x1, int y1, bool filled, Ink ink);
/// Centre and radii in pixels; negative radii draw nothing, a radius of 0 gives a line or a point.
/// The outline has no gaps and is one pixel thin; filled covers the outline as well.
void DrawEllipse(PixelMap& map, int centreX, int centreY, int radiusX, int radiusY, bool filled,
                 Ink ink);
/// A closed outline or, filled, its even-odd inside and outline. Fewer than 2 points draw nothing.
void DrawPolygon(PixelMap& map, const std::vector<PixelPoint>& points, bool filled, Ink ink);
enum class FillRule { EvenOdd, Winding };
/// What lies inside of all the polygons together, without outlines; a hole is a polygon, too.
/// Corners must lie within kCoordinateLimit.
void FillPolygons(PixelMap& map, const std::vector<std::vector<PixelPoint>>& polygons,
                  FillRule rule, Ink ink);
/// Draws the set pixels of `bits` with its top left corner at (x, y); where `bits` is unset the
/// map stays as it is, so that a bitmap drawn with Ink::Clear erases its own shape.
void DrawBitmap(PixelMap& map, int x, int y, const PixelMap& bits, Ink ink);

/// How text meets what is on the display already. The numbers are those of the command "TM".
enum class TextMode { Replace = 0, Invert = 1, Clear = 2, Set = 3 };

/// How graphic text ("GT") meets the display: like every other drawing command it touches only
/// its own pixels. Drawn it sets them, erased it clears them.
constexpr TextMode GraphicTextMode(Ink ink) {
  return ink == Ink::Clear ? TextMode::Clear : TextMode::Set;
}

struct TextStyle : TextAttributes {
  TextMode mode = TextMode::Replace;
};

/// Draws Latin-1 text with the top left corner of its first cell at (x, y) and returns the x
/// coordinate behind the last cell. Without the font nothing is drawn and x is returned.
/// Underline is the cell's last row, bold one pixel more to the right (where the font is not bold
/// already), inverse exchanges letter and ground of the whole cell.
int DrawText(PixelMap& map, const DeviceFonts& fonts, int x, int y, std::string_view text,
             const TextStyle& style);

}  // namespace kelvo
