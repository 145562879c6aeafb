#include "widgets/dark_list.h"

#include <QAbstractItemView>

#include "widgets/contrast.h"

namespace kelvo {
// The edge of a check box is a darker shade of the window's colour, whatever the list's ground is.
void DarkDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  TameDelegate::initStyleOption(option, index);
  QPalette& palette = option->palette;
  const QColor ground = palette.color(QPalette::Base);
  if (!IsDark(ground)) return;
  palette.setColor(QPalette::Window, FaintText(palette).lighter());
  palette.setColor(QPalette::Text, ReadableOn(ground, palette.color(QPalette::Text)));
}

void KeepVisibleOnDark(QAbstractItemView* list) { list->setItemDelegate(new DarkDelegate(list)); }

}  // namespace kelvo
