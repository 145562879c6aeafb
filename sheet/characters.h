#pragma once

#include <string>
#include <string_view>

// Characters of the wire on paper. UTF-8.

namespace kelvo {

/// A wire text of which every character can be seen.
std::string PrintedText(std::string_view wire);
/// A UTF-8 text the same way: what cannot be seen as a sign, what would part lines too.
std::string PrintedWords(std::string_view words);

/// "A", "ESC", "Leerzeichen", "<9F>": what a key with that code sends.
std::string CharacterName(int code);
/// "65 · $41"
std::string CodeText(int code);

}  // namespace kelvo
