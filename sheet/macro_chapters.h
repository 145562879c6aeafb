#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/device_font.h"
#include "sheet/statements.h"

// Chapters of a data sheet about what the Terminal draws.

namespace kelvo {

/// Knows the texts of the macros that a text may call.
using MacroTexts = std::function<std::optional<std::string>(int number)>;
/// Those that were written into a Terminal and are trusted.
MacroTexts TextsIn(const Inventory& inventory);

/// What a text does, and the picture that it leaves on an empty display.
class TextPrinter {
 public:
  TextPrinter(const SheetSources& sources, const DeviceFonts& fonts)
      : sources_(sources), fonts_(fonts) {}

  SheetPicture Picture(const std::string& text, const MacroTexts& macros) const;
  /// The picture and a row for each command.
  std::vector<SheetBlock> Macro(const std::string& text, const MacroTexts& macros) const;
  /// The picture alone, of what may have any length.
  std::vector<SheetBlock> Drawing(const std::string& text, const MacroTexts& macros) const;
  /// A bitmap's text, "width,height,digits".
  std::vector<SheetBlock> Bitmap(std::string_view text) const;

 private:
  const SheetSources& sources_;
  const DeviceFonts& fonts_;
};

/// A text's commands, each with the text behind it.
std::vector<std::string_view> CommandsOf(std::string_view wire);

}  // namespace kelvo
