#pragma once

#include <functional>
#include <string>
#include <vector>

#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

namespace kelvo {

/// What a drawing is translated for.
struct TerminalTraits {
  int displayHeight = 0;            ///< pixels
  std::int64_t blackThreshold = 0;  ///< "BMPSchwarzschwelle": colours below it are black
  double pixelWidthVersion = 0;     ///< "BMPinPixelabVer": first version that takes pixel widths
  double terminalVersion = 0;       ///< 0: not known yet
  /// Asks the Terminal for its version and returns it (0 when it does not answer). Called when the
  /// version is needed and not known; without it the version counts as 0.
  std::function<double()> queryVersion;
};

/// A command text, and what went wrong: message box texts (UTF-8) in the order of their showing.
struct Translation {
  std::string text;
  std::vector<std::string> messages;
  bool failed =
      false;  ///< nothing could be translated; an empty drawing's empty text is no failure
};

constexpr int kCreateForCommand = 1;  ///< iCreatemode: behind "GB" and its position
constexpr int kCreateForEEProm = 2;   ///< iCreatemode: behind "EWB" and its number

/// Bytes of one row: the smallest k >= 1 with 8 k > w - 1.
int BytesPerRow(int w);

/// The Terminal's bitmap text: header, the rows from the top as hexadecimal digits, ";". The
/// picture object is shown w by h pixels large; the leftmost pixel is a byte's highest bit.
/// A version that had to be asked for is left in `terminal`.
Translation CreateBitmap(const DrawingObject& picture, int w, int h, int iCreatemode,
                         TerminalTraits& terminal);

/// A part of a map: its top left pixel and its size.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// The same pixels as a map, as far as they lie in `part`, which must lie inside of w by h.
PixelMap RenderBitmap(const DrawingObject& picture, int w, int h, std::int64_t blackThreshold,
                      const PixelRect& part);

}  // namespace kelvo
