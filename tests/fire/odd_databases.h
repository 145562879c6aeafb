#pragma once

#include <string>

namespace kelvo::testing_world {

/// Makes a database that no kelvo has left behind so: a delivered one, of this or an older version,
/// with odd values, records, tables or bytes. The same number makes the same one. Returns what was
/// done to it.
std::string MakeOddDatabase(const std::string& path, unsigned number);

}  // namespace kelvo::testing_world
