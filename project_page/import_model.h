#pragma once

#include <QAbstractTableModel>

#include "project/project_store.h"

namespace kelvo {

/// What an import would do, a row for each record.
class ImportModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Kind, Number, Name, Found, Choice, ColumnCount };

  void Show(ImportPlan plan);
  const ImportPlan& Plan() const { return plan_; }
  const ImportItem& Item(int row) const { return plan_.items[static_cast<std::size_t>(row)]; }
  /// Rows that may not be chosen so stay as they are.
  void Choose(const std::vector<int>& rows, ImportChoice choice);
  void SetBesideName(int row, const std::string& name);
  void TakeInventory(bool take) { plan_.takeInventory = take; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString Text(const ImportItem& item, int column) const;
  QString ChoiceText(const ImportItem& item) const;

  ImportPlan plan_;
};

}  // namespace kelvo
