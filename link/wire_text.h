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

/// A wire text for reading: control characters as their visible glyphs (ESC is U+241B), the codes
/// 127..159 as "<7F>". UTF-8.
std::string ReadableText(std::string_view wire);

/// A wire text as hexadecimal pairs separated by blanks.
std::string HexText(std::string_view wire);

}  // namespace kelvo
