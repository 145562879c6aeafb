#pragma once

#include <vector>

#include "sheet/macro_chapters.h"

// What a data sheet shows of the database alone.

namespace kelvo {

/// The records of these kinds that lie in none of the sheet's Terminals as they are: a row each.
std::vector<const StoredRecord*> RecordsElsewhere(const SheetSources& sources);
std::vector<const StoredRecord*> DrawingsIn(const SheetSources& sources);
SheetTable RecordTable(const std::vector<const StoredRecord*>& records);
/// A record with its content.
std::vector<SheetBlock> RecordBlocks(const SheetSources& sources, const StoredRecord& record,
                                     const TextPrinter& printer);

/// How each character that is no plain sign is printed.
std::vector<SheetBlock> CharactersChapter();

}  // namespace kelvo
