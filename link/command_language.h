#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kelvo {

/// One command of the Terminal, in words.
struct CommandWord {
  std::string_view letters;  ///< what follows ESC
  std::string_view meaning;  ///< German
};

/// Every command that this program sends or explains, in no particular order.
std::span<const CommandWord> CommandLanguage();

/// What the commands of a text that went to the Terminal mean, in German, separated by "; "; at
/// most `limit` of them, then "…". Empty when the text holds none. Works on the text as sent: the
/// content of a stored macro or a graphic text is not taken for commands.
std::string CommandMeaning(std::string_view wire, int limit = 4);

}  // namespace kelvo
