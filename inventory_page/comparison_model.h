#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <vector>

#include "inventory/comparison.h"

namespace kelvo {

/// The rows of a comparison as a table.
class ComparisonModel : public QAbstractTableModel {
 public:
  enum Column { Terminal, What, Read, Written, Record, Result, ColumnCount };

  void Show(std::vector<ComparisonRow> rows, std::function<std::string(int address)> nameOf);
  const std::vector<ComparisonRow>& Rows() const { return rows_; }
  /// A cell as text.
  QString Cell(int row, int column) const;
  /// The whole table, tabulators between the columns.
  QString Report(const std::function<bool(int row)>& shown) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString TerminalText(const TerminalId& terminal) const;

  std::vector<ComparisonRow> rows_;
  std::function<std::string(int)> nameOf_;
};

}  // namespace kelvo
