#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Texts as they stand in the strings of a project's text: "\e" for ESC, "\xHH" for another
// character of the first 256 that cannot be seen, "\\" for the backslash.

namespace kelvo {

/// How many bytes at the beginning are UTF-8.
std::size_t Utf8Length(std::string_view text);

/// A UTF-8 text in that notation.
std::string Notation(std::string_view text);
/// Back; nothing where a backslash begins none of these.
std::optional<std::string> PlainNotation(std::string_view notation);
/// The same as a string of JSON, in its quotes.
std::string JsonString(std::string_view text);

/// A wire text in its UTF-8 form, taken apart into its commands and what lies between them. One
/// behind the other they are the text again.
std::vector<std::string_view> CommandPieces(std::string_view text);

}  // namespace kelvo
