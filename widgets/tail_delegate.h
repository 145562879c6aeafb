#pragma once

#include "widgets/dark_list.h"

namespace kelvo {

/// Draws a text that has no room so that what stands behind its last comma is seen whole: of "Halle
/// 3 links, Adresse 7" the name is cut, never the address.
class TailDelegate : public DarkDelegate {
 public:
  using DarkDelegate::DarkDelegate;

  /// A text as it is drawn into a width.
  static QString Shortened(const QString& text, const QFontMetrics& metrics, int width);
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

}  // namespace kelvo
