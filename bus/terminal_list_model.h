#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "bus/stored_terminals.h"

namespace kelvo {

/// The table of stored Terminals, edited in place. Each change is stored at once; the record of a
/// changed row becomes the current one.
class TerminalListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Adresse, Bezeichnung, Aktiv, Checksum, ColumnCount };

  explicit TerminalListModel(Recordset& terminals, QObject* parent = nullptr);

  /// Reads all records anew. Throws StoreError; what was read last is shown then.
  void Reload();
  /// The same where it can be had at once.
  void ReloadNow();
  /// What was typed as the address of a row, or of a Terminal that is not stored yet (-1); nothing
  /// when it is none or another row's, which is told by Refused.
  std::optional<int> ReadAddress(const QString& text, int ownRow = -1);
  /// The lowest that no stored Terminal has.
  int FreeAddress() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 Q_SIGNALS:
  /// A change was refused or could not be stored: the reason.
  void Refused(const QString& reason);

 private:
  void ShowRecords();
  void ReadRows();
  int RowOf(int address) const;  // -1: none
  bool Store(int row, const char* field, const Value& value);

  Recordset& terminals_;
  std::vector<StoredTerminal> rows_;
};

}  // namespace kelvo
