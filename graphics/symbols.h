#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "graphics/create_pic.h"
#include "graphics/device_font.h"
#include "graphics/drawing.h"

// Small drawings to be put into others: those that come with the program, and the operator's own,
// which are kept as drawing commands.

namespace kelvo {

struct DeliveredSymbol {
  const char* name;  ///< German, UTF-8
  /// The symbol in a square of `size` pixels, of which the last row and column stay free, so that
  /// there is a pixel in the middle.
  Drawing (*draw)(int size);
};
std::span<const DeliveredSymbol> DeliveredSymbols();
/// Sides in pixels that the delivered symbols are made for.
inline constexpr int kSymbolSizes[] = {16, 24, 32};

/// Objects as one: a group where they are several. Its lower left corner lies at 0,0.
DrawingObject AsSymbol(Drawing objects);
/// The commands that draw the objects in the display's upper left corner. Groups and what is never
/// sent are lost; the Terminal is not asked for anything.
Translation SymbolCommands(const Drawing& objects, std::int64_t blackThreshold);
/// What such commands draw; nothing when they draw nothing.
std::optional<DrawingObject> SymbolOf(std::string_view commands, const DeviceFonts& fonts);

}  // namespace kelvo
