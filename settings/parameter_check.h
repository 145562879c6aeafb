#pragma once

#include "settings/macro_check.h"
#include "settings/macro_text.h"

namespace kelvo {

/// The remarks on the values of one known command.
void CheckParameters(std::vector<Remark>& remarks, std::string_view text,
                     const PlacedCommand& command, DisplaySize display);

/// A decimal number with blanks and a sign in front; nothing for another text and for what no
/// number of the Terminal can be.
std::optional<int> DecimalNumber(std::string_view text);

}  // namespace kelvo
