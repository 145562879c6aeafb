#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "graphics/device_font.h"
#include "graphics/drawing.h"
#include "graphics/loaded_drawing.h"

// Drawings as placeable Windows metafiles that other programs open.
//
// One metafile unit is one Terminal pixel, y grows downward in the file. Boxes exclude their right
// and bottom edge, lines and polylines are stored by their points:
//
//   line          MOVETO, LINETO            rectangle, ellipse  RECTANGLE, ELLIPSE
//   polyline      POLYLINE                  vertex shape        POLYGON
//   picture       STRETCHDIB, 24 bit        pen mode            SETROP2
//   fill          a brush (else none)       erasing             in white
//   text          EXTTEXTOUT, for other programs alone
//
// What metafiles cannot say stands in comments (ESCAPE, MFCOMMENT) that begin with "KELVO" and a
// letter; numbers are 16 bit, the low byte first:
//
//   "M" version height            first record of a drawing; version 1; the display's height
//   "G" / "E"                     a group begins / ends
//   "T" x1 y1 x2 y2 length text   a text object with its corners and its prefixed text
//   "S" width height              a picture's source begins; sources count from 0
//   "D" bytes                     a part of the source that began last, packed
//   "P" source left top right bottom turns mirrored brightness contrast dithering threshold
//       grey invert               how the next picture record was made; threshold -1: none
//
// A comment of odd length has a byte 0 behind it.

namespace kelvo {

struct WmfFile {
  std::string bytes;  ///< empty after an error
  std::string error;  ///< German, UTF-8; empty when all went well
};

/// Sources of pictures beyond the limits are left out, the pictures stay.
/// The display's size in pixels gives the metafile its frame and turns y round.
WmfFile WriteWmf(const Drawing& drawing, int displayWidth, int displayHeight);

/// Bounds against damaged and hostile files; far beyond what a Terminal can show.
struct WmfLimits {
  std::size_t fileBytes = std::size_t{64} << 20;
  std::size_t objects = 100'000;
  std::size_t vertices = 2'000'000;
  std::size_t pixels = std::size_t{1} << 24;
  std::size_t groupDepth = 64;
  std::size_t handles = 4096;
  std::size_t sources = 1000;
  std::size_t sourcePixels = std::size_t{1} << 22;  ///< of all sources together
};

/// What a picture counts against the limit: its own pixels, or those that it is stretched to.
std::size_t PicturePixels(const DrawingObject& picture);

using WmfDrawing = LoadedDrawing;

/// Reads a metafile. Drawings of this program come back object for object; those of others become
/// objects as far as kinds exist, and are made smaller where the display is smaller. Text of others
/// takes the device font that comes nearest.
WmfDrawing ReadWmf(std::string_view bytes, int displayWidth, int displayHeight,
                   const DeviceFonts& fonts, const WmfLimits& limits = {});

}  // namespace kelvo
