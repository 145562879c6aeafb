#pragma once

namespace kelvo {

/// What a record is called until the operator has named it.
inline constexpr char kNewRecordName[] = "(neuer Name)";

}  // namespace kelvo
