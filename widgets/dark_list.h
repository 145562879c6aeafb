#pragma once

#include "widgets/tame_text.h"

class QAbstractItemView;

namespace kelvo {

/// Draws the items of such a list.
class DarkDelegate : public TameDelegate {
 public:
  using TameDelegate::TameDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

/// Lets the empty check boxes of a list and its coloured texts be seen on a dark ground, too.
void KeepVisibleOnDark(QAbstractItemView* list);

}  // namespace kelvo
