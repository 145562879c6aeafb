#pragma once

#include <vector>

#include "inventory/compare.h"
#include "store/database.h"

namespace kelvo {

/// All records of the table `Makro` that can go to a Terminal, in the table's order. Throws
/// StoreError.
std::vector<StoredRecord> StoredRecords(Database& database);

}  // namespace kelvo
