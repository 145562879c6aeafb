#pragma once

#include <string_view>

namespace kelvo {

/// What a record is called until the operator has named it.
inline constexpr char kNewRecordName[] = "(neuer Name)";

/// Whether nobody has named it: "(neuer Name)", "(neuer Name) 2".
inline bool IsNewRecordName(std::string_view name) { return name.starts_with(kNewRecordName); }

}  // namespace kelvo
