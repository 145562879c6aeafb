#pragma once

#include <string>
#include <string_view>

namespace kelvo {

/// What a text that went to the Terminal says, in German, each command with its parameters
/// ("Makro 7 schreiben, 50 Zeichen"), separated by "; ". At most `limit` commands and texts between
/// them, then "… und 37 weitere". UTF-8; empty for an empty text.
std::string CommandWords(std::string_view wire, int limit = 4);

/// The same of what has been done by it ("Makro 7 geschrieben: 50 Byte"): those of the
/// commands that are worth it, separated by "; ".
std::string DoneWords(std::string_view wire);

}  // namespace kelvo
