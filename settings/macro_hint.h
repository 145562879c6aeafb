#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/macro_check.h"

namespace kelvo {

struct CommandRow;

/// What a command wants, in German, UTF-8.
struct CommandHint {
  std::string command;                  ///< letters and meaning; of a text, what becomes of it
  std::vector<std::string> parameters;  ///< "X 0…239"
  int current = -1;                     ///< the parameter that the caret stands in
  std::string end;                      ///< what closes it; empty for nothing
};

CommandHint HintOf(const CommandRow& row, DisplaySize display);
/// For the place in front of the character `caret`.
CommandHint HintAt(std::string_view text, std::size_t caret, DisplaySize display);
/// The parameters in a row, as one reads them.
std::string ParameterWords(const CommandHint& hint);

}  // namespace kelvo
