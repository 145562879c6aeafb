#pragma once

#include "graphics/drawing.h"
#include "graphics/raster.h"

namespace kelvo {

/// Takes a drawing as the Terminal's commands, one call each, in the order in which they are sent.
/// Coordinates are the Terminal's: y grows downward from the top row 0.
class CommandHandler {
 public:
  virtual ~CommandHandler() = default;

  virtual void PenMode(Ink ink) = 0;  ///< Set or Clear
  /// At least one point; the first is where the pen is set down.
  virtual void Lines(const std::vector<PixelPoint>& points) = 0;
  virtual void Rectangle(PixelPoint from, PixelPoint to, bool filled) = 0;
  virtual void Ellipse(PixelPoint centre, int radiusX, int radiusY, bool filled) = 0;
  /// `object` is a picture, shown w by h pixels large.
  virtual void Bitmap(PixelPoint topLeft, const DrawingObject& object, int w, int h) = 0;
  virtual void Text(PixelPoint topLeft, const TextAttributes& style, const std::string& text) = 0;
  /// A vertex shape, for which there is no command: it is deliberately never sent.
  virtual void Shape(const std::vector<PixelPoint>&, bool /*filled*/) {}
  /// A level (the whole drawing, or a group's members) cannot be converted because a number leaves
  /// the 16-bit range; nothing of it is handed over.
  virtual void Overflow() = 0;
};

/// Hands a drawing to `handler`; false when its outermost level cannot be converted.
/// `displayHeight` is the Terminal's height in pixels.
///
/// Each level starts with the remembered pen mode 13, and a group's last mode is not carried back
/// to the level outside: after a group the pen may be left in the group's mode. This is deliberate;
/// Terminals in the field show their drawings so.
bool WalkDrawing(const Drawing& drawing, int displayHeight, CommandHandler& handler);

}  // namespace kelvo
