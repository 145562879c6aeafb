#pragma once

#include <optional>
#include <string>
#include <string_view>

// The Terminal's cursor and text mode: the command texts, and how replies are read.

namespace kelvo {

/// Kinds of cursor, by their numbers in the commands.
enum CursorKind {
  CursorOff = 0,
  BlinkingAtText,
  SteadyAtText,
  BlinkingCross,
  SteadyCross,
  BlinkingAtGraphic,
  SteadyAtGraphic,
  CursorKindCount
};
/// Whether a kind stands at the text position, counted in columns and rows from 1; the others stand
/// at the graphic position, in pixels from 0.
constexpr bool IsAtText(int kind) { return kind == BlinkingAtText || kind == SteadyAtText; }
/// Kinds with a shape (underline or block).
constexpr bool HasShape(int kind) {
  return IsAtText(kind) || kind == BlinkingAtGraphic || kind == SteadyAtGraphic;
}
/// Kinds with a size.
constexpr bool IsCross(int kind) { return kind == BlinkingCross || kind == SteadyCross; }

/// What the page's cursor controls hold; texts as typed.
struct CursorSettings {
  int kind = CursorOff;
  int shape = 0;  ///< 0 underline, 1 block
  std::string size;
  std::string x;
  std::string y;
};
/// ESC "!c" " " kind ["," shape or size] ";" ESC "!C" " " kind ";" and, with a cursor, ESC "TP" or
/// "GP" x "," y ";". The blank before the kind is kept.
std::string CreateCursor(const CursorSettings& cursor);
/// The shape (0 or 1) in a "?c" reply, for kinds that have one.
std::optional<int> ReadCursorShape(int kind, std::string_view reply);
/// The size in a "?c" reply.
double ReadCursorSize(std::string_view reply);

struct Position {
  int x = 0;
  double y = 0;
};
/// A reply of two numbers; without a comma both are read from the whole reply.
Position ReadPosition(std::string_view reply);

/// Indexes of the page's lists, and the captions of its zooms.
struct TextModeSettings {
  int font = 0;       ///< 0..9
  int attribute = 0;  ///< 0..7: 1 underline + 2 bold + 4 inverse
  int mode = 0;       ///< 0..3
  std::string zoomX;
  std::string zoomY;

  /// Both zooms are at least 1; a query without an answer leaves them at 0.
  bool ZoomKnown() const;
};
/// ESC "TF" font ";" ESC "TA" attribute ";" ESC "TM" mode ";" ESC "TZ" x "," y ";", without the
/// last when the zoom is not known.
std::string CreateTextMode(const TextModeSettings& text);

inline constexpr int kLargestZoomX = 4;
inline constexpr int kLargestZoomY = 8;
/// The two fonts that hold digits alone have one size only.
constexpr bool HasZoom(int font) { return font != 4 && font != 9; }

/// The value of a reply's first character; font, attribute and mode have one digit.
int ReadDigit(std::string_view reply);
/// The zooms in a "T?Z" reply: the first character, and what follows the second.
struct Zoom {
  int x = 0;
  double y = 0;
};
Zoom ReadZoom(std::string_view reply);

}  // namespace kelvo
