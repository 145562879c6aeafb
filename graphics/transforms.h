#pragma once

#include <cstdint>

#include "graphics/device_font.h"
#include "graphics/drawing.h"
#include "graphics/editing.h"

// Turning what is selected, and making a picture of it.

namespace kelvo {

/// Mirrors the selection within its box: X swaps left and right. Texts stay readable and only
/// change their place.
void FlipSelected(Drawing& drawing, Axis axis);
/// Turns the selection by a quarter clockwise; its lower left corner stays. Texts stay upright.
void TurnSelected(Drawing& drawing);
/// Black and white of the selected pictures change places.
void InvertSelected(Drawing& drawing);

/// How a selection is made a picture.
struct PixelView {
  int width;   ///< of the display, in pixels
  int height;  ///< of the display, in pixels
  const DeviceFonts& fonts;
  std::int64_t blackThreshold;  ///< of pictures
};
/// Replaces what is selected by one picture of its pixels, as far as they lie on the display.
/// Shapes that are never sent are drawn, too, with their filling. Changes nothing where nothing
/// would be seen.
void MakePictureOfSelected(Drawing& drawing, const PixelView& view);
/// Makes a picture of each selected shape that is never sent, in its place and with its filling, so
/// that it is; as far as it lies on the display.
void MakePicturesOfShapes(Drawing& drawing, const PixelView& view);

}  // namespace kelvo
