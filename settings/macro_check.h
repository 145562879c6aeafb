#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

/// Hint: it works, but perhaps not as meant. Warning: it hardly is as meant. Error: the Terminal
/// passes over it, or takes something else for it.
enum class Severity { Hint, Warning, Error };

/// What is worth saying about a place in a macro text.
struct Remark {
  Severity severity;
  std::size_t position;  ///< in the wire text, from 0
  std::size_t length;    ///< 0 at the end of the text
  std::string text;      ///< a German sentence
};

/// The display that a text is meant for, in pixels.
struct DisplaySize {
  int width = 240;
  int height = 128;
};

/// What a text is checked against.
struct MacroContext {
  DisplaySize display;
  /// Other texts (tables, drawings) go to the Terminal once and may be of any length.
  bool isMacro = true;
  std::optional<int> number;  ///< of the text itself in the Terminal
  /// The text that is known of a macro in the Terminal. Without this function none is missed.
  std::function<std::optional<std::string>(int number)> macroText;
  /// Whether a character of a font (0..9) has a picture; without this function all have.
  std::function<bool(int font, unsigned char character)> hasGlyph;
};

/// All remarks, in the order of their places. None of them keeps anybody from sending the text.
std::vector<Remark> CheckMacro(std::string_view text, const MacroContext& context);

/// The highest and lowest value that makes sense of a parameter on this display; as in the command
/// table where the display has no say.
struct ValueRange {
  int lowest;
  int highest;
};
struct Parameter;
ValueRange RangeOnDisplay(const Parameter& parameter, DisplaySize display);

}  // namespace kelvo
