#pragma once

#include <optional>
#include <string>
#include <string_view>

// A wire text is a std::string of bytes; on the screen and in the database byte b is Unicode code
// point b. Both ways lose nothing.

namespace kelvo {

/// The UTF-8 form of a wire text.
std::string ScreenText(std::string_view wire);

/// The wire form of a UTF-8 text; nothing when it holds a character beyond code 255 (or is no
/// UTF-8), because such a character cannot go on the line.
std::optional<std::string> WireText(std::string_view utf8);

/// The visible glyphs of the codes 0..31, those that the PC's text screen has always shown (ESC is
/// an arrow to the left): every desktop font has them, and none is a character of the wire.
inline constexpr char16_t kControlGlyphs[32] = {
    u'∅', u'☺', u'☻', u'♥', u'♦', u'♣', u'♠', u'•', u'◘', u'○', u'◙', u'♂', u'♀', u'♪', u'♫', u'☼',
    u'►', u'◄', u'↕', u'‼', u'⁋', u'‡', u'▬', u'↨', u'↑', u'↓', u'→', u'←', u'∟', u'↔', u'▲', u'▼'};
/// The visible glyph of code 127.
inline constexpr char16_t kDeleteGlyph = u'⌂';

/// A wire text for reading: control characters as their glyphs, the codes 128..159 as "<80>".
/// UTF-8.
std::string ReadableText(std::string_view wire);

/// A wire text as hexadecimal pairs separated by blanks.
std::string HexText(std::string_view wire);

}  // namespace kelvo
