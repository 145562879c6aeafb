#pragma once

#include <string>
#include <variant>

#include "graphics/create_bitmap.h"

// Storing a picture in the Terminal's EEPROM: everything but the asking and the sending.

namespace kelvo {

/// The picture that is stored: the lowest selected one, or the lowest one when none is selected;
/// members of groups count. Null when the drawing holds none.
const DrawingObject* PictureToStore(const Drawing& drawing);

/// Int(w * h / 8)
std::int64_t EstimatedBitmapSize(int w, int h);
/// Above this estimate the operator is asked first.
constexpr std::int64_t LargestUnaskedBitmap = 1023;
std::string LargeBitmapQuestion(std::int64_t size);

/// The number typed for the bitmap, or the message (UTF-8) that refuses it.
std::variant<int, std::string> ParseBitmapNumber(const std::string& typed);

/// Whether a text may be stored: 20 bytes stay free, as with macros.
constexpr bool FitsEEProm(std::size_t length, double freeBytes) {
  return static_cast<double>(length) <= freeBytes - 20;
}

/// ESC "EWB" number "," bitmap text
std::string StoreBitmapCommand(int number, const std::string& bitmapText);

}  // namespace kelvo
