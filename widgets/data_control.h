#pragma once

#include <QWidget>

#include "widgets/symbol.h"

class QLabel;
class QToolButton;

namespace kelvo {

class Recordset;

/// Shows which record of a record set is the current one, and moves to others: first, previous,
/// next, last. The owner sets the caption and hears of every wish to move.
class DataControl : public QWidget {
  Q_OBJECT

 public:
  /// `name` is the objectName; its buttons are `name`_First, _Previous, _Next and _Last.
  DataControl(const char* name, Recordset& records, QWidget* parent = nullptr);

  void SetCaption(const QString& caption);
  QString Caption() const;
  /// Enables what can be moved to.
  void Update();

 Q_SIGNALS:
  /// A move failed: the description.
  void Failed(const QString& description);

 private:
  QToolButton* AddButton(const char* suffix, Symbol symbol, const QString& tip,
                         void (*go)(Recordset&));

  Recordset& records_;
  QLabel* caption_;
  QToolButton* first_;
  QToolButton* previous_;
  QToolButton* next_;
  QToolButton* last_;
};

}  // namespace kelvo
