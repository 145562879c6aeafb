#pragma once

#include <QWidget>
#include <cstdint>
#include <set>

#include "settings/macro_table_model.h"

class QLabel;
class QLineEdit;
class QTableView;

namespace kelvo {

/// The stored texts in a table with a field to search them by.
class MacroTable : public QWidget {
  Q_OBJECT

 public:
  explicit MacroTable(QWidget* parent = nullptr);

  MacroTableModel& Model() { return *model_; }
  /// Shows what the record set holds; `current` is the bookmark of the record in the editor. False
  /// when it holds the same as before.
  bool Show(const Recordset& records, const std::set<std::int64_t>& drafts, std::int64_t current);
  void StartSearch();
  /// Widths and order of the columns.
  QByteArray Columns() const;
  void RestoreColumns(const QByteArray& columns);

 Q_SIGNALS:
  /// The operator has gone to another row.
  void Chosen(qlonglong bookmark);
  /// Enter: the text is to be edited.
  void Entered();
  /// The key that deletes.
  void DeleteWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeColumns();
  void Search();
  void SelectCurrent();
  void Choose(std::int64_t bookmark);
  void ShowCount();
  void GoDown();
  bool SearchKey(int key);
  bool TableKey(int key);

  MacroTableModel* const model_;
  QLineEdit* const txtMakroSuche;
  QLabel* const lblMakroAnzahl;
  QTableView* const tblMakros;
  std::int64_t current_ = 0;
  bool showing_ = false;
};

}  // namespace kelvo
