#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "inventory/compare.h"

namespace kelvo {

/// What lies in a Terminal as far as it was written from here, a row each, with its proof and what
/// the database has of it.
class InventoryModel : public QAbstractTableModel {
 public:
  enum Column { Kind, Number, Name, Bytes, Time, Rests, Database, ColumnCount };
  /// Sorts by it.
  static constexpr int kSortRole = Qt::UserRole;

  struct Row {
    ItemKey key;
    std::optional<Held> held;
    std::optional<Doubt> doubt;
    Against against;
  };

  /// Of a Terminal that does not listen now nothing is the same, only as it was written.
  void Show(const Inventory& inventory, const std::vector<StoredRecord>& records, bool listens);
  const Row& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  /// -1 when it is not there.
  int RowOf(const ItemKey& key) const;
  /// A cell as text.
  QString Cell(int row, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString Tip(int row, int column) const;
  QVariant SortKey(const Row& row, int column) const;

  std::vector<Row> rows_;
  bool listens_ = false;
};

/// "22.11.2026 16:31", in local time.
QString MomentText(JournalTime time);

}  // namespace kelvo
