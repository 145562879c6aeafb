#pragma once

#include <string>
#include <string_view>

#include "graphics/drawing.h"
#include "graphics/raster.h"

// The text of a text object begins with six characters of attributes:
//
//   font zoomX zoomY bold inverse underline text
//
// one character each, the first three decimal digits, the others "1" for on.

namespace kelvo {

constexpr std::size_t TextPrefixLength = 6;

struct TextAttributes {
  int font = 0;
  int zoomX = 1;
  int zoomY = 1;
  bool bold = false;
  bool inverse = false;
  bool underline = false;
  bool operator==(const TextAttributes&) const = default;
};

/// Numbers outside 0..9 are written as 0.
std::string MakePrefixedText(const TextAttributes& attributes, std::string_view text);
/// A missing or foreign character counts as 0 or off.
TextAttributes AttributesOf(std::string_view prefixedText);
/// What the Terminal shows; empty when there is only a prefix or less.
std::string_view ShownText(std::string_view prefixedText);
/// The value of "GA": underline 1, bold 2, inverse 4.
int AttributeValue(const TextAttributes& attributes);
TextStyle StyleOf(const TextAttributes& attributes, Ink ink);
/// The pixels of a text with its top left corner at `topLeft`; at least one cell wide, so that an
/// empty text can still be seen and taken hold of.
Box TextBox(const DeviceFonts& fonts, Point topLeft, std::string_view prefixedText);

}  // namespace kelvo
