#pragma once

#include <string_view>

#include "link/command_table.h"

// Whether an answer can be the one to its question.

namespace kelvo {

/// Whether a text can be a version: one decimal number, letters and printable text behind it, at
/// most 40 characters. When two Terminals answer at once, this is what tells.
bool IsVersion(std::string_view reply);

/// Whether the answer to this question has the values that the table names, each within its range.
/// `values` is without echo and end mark. In front of an address any text without digits may stand:
/// a Terminal repeats the question's letters there.
bool HasForm(const CommandRow& question, std::string_view values);
/// The same of what has come behind a text that was sent, perhaps with echo and end mark. What asks
/// for no values has no form to miss.
bool CanAnswer(std::string_view sent, std::string_view answer);

/// What stands in an answer behind the copy of its question, up to the end mark.
std::string_view ValuesBehind(std::string_view sent, std::string_view answer);

}  // namespace kelvo
