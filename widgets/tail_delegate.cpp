#include "widgets/tail_delegate.h"

#include <QApplication>

namespace kelvo {

QString TailDelegate::Shortened(const QString& text, const QFontMetrics& metrics, int width) {
  const qsizetype comma = text.lastIndexOf(QStringLiteral(", "));
  if (comma < 0 || metrics.horizontalAdvance(text) <= width) return text;
  const QString tail = text.mid(comma);
  const int left = width - metrics.horizontalAdvance(tail);
  const QString name = metrics.elidedText(text.left(comma), Qt::ElideRight, left);
  if (left > 0 && !name.isEmpty()) return name + tail;
  return metrics.elidedText(tail.mid(2), Qt::ElideLeft, width);
}

void TailDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem drawn = option;
  initStyleOption(&drawn, index);
  const QStyle& style = drawn.widget != nullptr ? *drawn.widget->style() : *QApplication::style();
  const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &drawn, drawn.widget) + 1;
  const QRect room = style.subElementRect(QStyle::SE_ItemViewItemText, &drawn, drawn.widget);
  drawn.text = Shortened(drawn.text, drawn.fontMetrics, room.width() - 2 * margin);
  style.drawControl(QStyle::CE_ItemViewItem, &drawn, painter, drawn.widget);
}

}  // namespace kelvo
