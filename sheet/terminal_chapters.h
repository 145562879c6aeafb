#pragma once

#include <vector>

#include "sheet/statements.h"

// Chapters of a data sheet about the Terminal itself.

namespace kelvo {

/// Address, name, settings of the interfaces, and what its configuration keeps.
std::vector<SheetBlock> InterfacesChapter(const SheetSubject& subject);
/// The room in the EEPROM, and all that lies there.
std::vector<SheetBlock> EepromChapter(const SheetSubject& subject);
/// What it has told of itself.
std::vector<SheetBlock> ReadingsChapter(const SheetSubject& subject);

}  // namespace kelvo
