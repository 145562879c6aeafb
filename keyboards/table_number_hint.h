#pragma once

#include <optional>

#include "link/reply.h"

class QLabel;
class QPushButton;

namespace kelvo {

class WireField;
class WriteDesk;

/// What stands in a table number's field is sent as a number, whatever it is: the label behind it
/// says so when that is none from 0 to 255, and what
/// an empty field means.
void ShowTableNumberRange(WireField& field, QLabel& range);

/// What came of reading a table: whether it can be taken over, and which one it is. `number` is
/// that of a table that was understood; `desk` knows who answers, and may be nullptr.
void ShowReadTable(QPushButton& take, QLabel& words, const WriteDesk* desk, const Reply& reply,
                   std::optional<int> number);

}  // namespace kelvo
