#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "keyboards/matrix_table.h"
#include "sheet/statements.h"

// Chapters of a data sheet about the keyboards.

namespace kelvo {

std::vector<SheetBlock> MatrixChapter(const SheetSubject& subject);
std::vector<SheetBlock> AtChapter(const SheetSubject& subject);

/// The keypad of a table's text, "3,80,31,D,…", with its wiring; a list of the codes where that is
/// no grid. Without a wiring, what sends a code counts as wired.
std::vector<SheetBlock> KeypadBlocks(std::string_view table,
                                     const std::optional<SheetWiring>& wiring,
                                     const std::string& wiringBasis);
/// The recoded keys of a table's text, in its order.
std::vector<SheetBlock> RecodingBlocks(std::string_view table);

}  // namespace kelvo
