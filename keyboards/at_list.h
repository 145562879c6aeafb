#pragma once

#include <QAbstractTableModel>
#include <optional>

#include "keyboards/at_table.h"
#include "widgets/tame_text.h"

namespace kelvo {

/// The rows of `ctlATTabListe`: one for each recoded key, and always an empty last one in which a
/// pair can be typed, by character or by decimal code. A row becomes a pair when both its keys are
/// known; no old code gets a second row.
class AtList : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { OldKey, OldCode, NewKey, NewCode, ColumnCount };

  using QAbstractTableModel::QAbstractTableModel;

  const AtPairs& Pairs() const { return pairs_; }
  void SetPairs(AtPairs pairs);
  /// Overwrites the row of that old code, or appends one.
  void Enter(AtPair pair);
  /// Something is typed in the last row, but no pair yet.
  bool HalfTyped() const { return typedOld_ || typedNew_; }
  /// The cell of the last row that is to be typed next.
  QModelIndex MissingCell() const;
  /// Removes a pair; the empty row is only emptied.
  void Remove(int row);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 Q_SIGNALS:
  /// The pairs are others than before.
  void Edited();
  /// Why an entry was not taken, for the operator.
  void Refused(const QString& reason);

 private:
  std::optional<int> Code(const QModelIndex& index) const;
  bool Change(int row, bool isOld, int code);
  bool Type(bool isOld, int code);

  AtPairs pairs_;
  // The last row, as far as it is typed.
  std::optional<int> typedOld_;
  std::optional<int> typedNew_;
};

/// Edits a cell of the list in a field that takes only what the wire can carry.
class AtListDelegate : public TameDelegate {
  Q_OBJECT

 public:
  using TameDelegate::TameDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;

 protected:
  /// The arrow keys go on to the rows above and below.
  bool eventFilter(QObject* editor, QEvent* event) override;

 Q_SIGNALS:
  /// A character was refused as it was typed.
  void Refused() const;
};

}  // namespace kelvo
