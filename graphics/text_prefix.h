#pragma once

#include <string>
#include <string_view>

#include "graphics/drawing.h"

// The stored form of a text object's text, which begins with six characters of attributes:
//
//   font zoomX zoomY bold inverse underline text
//
// one character each, the first three decimal digits, the others "1" for on.

namespace kelvo {

/// Numbers outside 0..9 are written as 0; without attributes nothing is written.
std::string MakePrefixedText(const DrawingObject& object);
/// Whether a text begins with attributes: the font's digit, zooms in their ranges, three flags; and
/// something follows.
bool HasPrefix(std::string_view text);
/// A missing or foreign character counts as 0 or off; an empty text gives no attributes.
void TakePrefixedText(DrawingObject& object, std::string_view prefixedText);

}  // namespace kelvo
