#pragma once

class QAbstractItemView;

namespace kelvo {

/// Lets the empty check boxes of a list and its coloured texts be seen on a dark ground, too.
void KeepVisibleOnDark(QAbstractItemView* list);

}  // namespace kelvo
