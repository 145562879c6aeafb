#pragma once

class QLabel;

namespace kelvo {

class WireField;

/// What stands in a table number's field is sent as a number, whatever it is: the label behind it
/// says so when that is none from 0 to 255.
void ShowTableNumberRange(WireField& field, QLabel& range);

}  // namespace kelvo
