#pragma once

#include <map>
#include <string>

#include "store/statement.h"

namespace kelvo {

/// What the fields of a table of one record hold as delivered (`Optionen`, `Default`); empty for
/// every other table. It holds where a database of another version has no such field, or has lost
/// the record.
const std::map<std::string, Value>& DeliveredRecord(const std::string& table);

}  // namespace kelvo
