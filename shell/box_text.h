#pragma once

class QMessageBox;

namespace kelvo {

/// Gives texts that would not fit on the screen, for their length or for a word that cannot be
/// broken, a field that wraps and scrolls. The last thing done to a box before it is shown: what is
/// set afterwards lays it out anew, without the fields, and this is done again.
void FitTexts(QMessageBox& box);

}  // namespace kelvo
