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
  /// Blanks at its ends are not taken.
  void SetBesideName(int row, const std::string& name);
  /// Why a row cannot come in as it is chosen; empty where it can.
  QString Fault(int row) const;
  /// Rows that hold the import up: those to be decided, and those with a fault.
  std::size_t Open() const;
  bool IsOpen(int row) const;
  /// Records that would be written or deleted, as far as nothing holds them up.
  std::size_t Changes() const;
  void TakeInventory(bool take) { plan_.takeInventory = take; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString Text(const ImportItem& item, int column) const;
  QString ChoiceText(const ImportItem& item) const;
  void Decided();

  ImportPlan plan_;
  std::vector<std::string> faults_;  ///< of the names, one for each item
};

}  // namespace kelvo
