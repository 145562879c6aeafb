#include "widgets/dark_list.h"

#include <QAbstractItemView>

#include "widgets/contrast.h"
#include "widgets/tame_text.h"

namespace kelvo {
namespace {

// The edge of a check box is a darker shade of the window's colour, whatever the list's ground is.
class DarkDelegate : public TameDelegate {
 public:
  using TameDelegate::TameDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    TameDelegate::initStyleOption(option, index);
    QPalette& palette = option->palette;
    const QColor ground = palette.color(QPalette::Base);
    if (!IsDark(ground)) return;
    palette.setColor(QPalette::Window, FaintText(palette).lighter());
    palette.setColor(QPalette::Text, ReadableOn(ground, palette.color(QPalette::Text)));
  }
};

}  // namespace

void KeepVisibleOnDark(QAbstractItemView* list) { list->setItemDelegate(new DarkDelegate(list)); }

}  // namespace kelvo
