#pragma once

#include <QString>
#include <QStyledItemDelegate>

namespace kelvo {

/// What came from a database, a file or the line, to be shown: a sign that turns the direction of
/// writing, has no width or moves the writing stands as U+FFFD, and a word without an end is cut.
/// What is sent, saved and copied stays as it is.
QString Tamed(const QString& text);

/// Shows the items of a list or table so.
class TameDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QString displayText(const QVariant& value, const QLocale& locale) const override;
};

}  // namespace kelvo
