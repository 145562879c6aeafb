#pragma once

#include <QSortFilterProxyModel>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/operator.h"
#include "inventory/hearing.h"
#include "inventory_page/inventory_model.h"

class QComboBox;
class QLabel;
class QPushButton;
class QTableView;

namespace kelvo {

class ColumnFit;

/// The table of what was written into a Terminal: the one that listens, or one that is chosen.
/// Nothing is asked of any Terminal for it. It reads the journal and the records while it is seen.
class InventoryView : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    WriteJournal& journal;
    Operator& person;
    std::function<TerminalId()> listener;  ///< the one that was selected last
    std::function<Hearing()> hearing;      ///< whether it listens still
    std::function<bool()> roomShown;       ///< beside this: the free bytes that it has told
    std::function<std::vector<StoredRecord>()> records;
    std::function<std::string(int address)> nameOf;  ///< of a stored Terminal, UTF-8
  };
  explicit InventoryView(Services services, QWidget* parent = nullptr);

  /// Something of it has changed. Takes effect while it is seen.
  void Refresh();
  /// The Terminal that is shown.
  TerminalId Shown() const;

 Q_SIGNALS:
  /// The operator wants to see the record of an item.
  void RecordWanted(ItemKind kind, qint64 record);
  /// Terminals are to be equipped with what another one held.
  void EquipRequested();
  void CompareRequested();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* MakeChoice();
  void MakeTable();
  QWidget* MakeRoomOfTable();
  void ShowNow();
  void ListTerminals();
  void ShowState(const Inventory& inventory);
  bool Listens(const TerminalId& terminal) const;
  bool NamesNobody() const;
  QString TerminalText(const TerminalId& terminal) const;
  QString ListenerText() const;
  QString AbsenceText() const;
  const InventoryModel::Row* Current() const;
  void EnableButtons();
  void OpenCurrent();
  void cmdBestandText_Click();
  void cmdBestandSatz_Click();
  void cmdBestandKopieren_Click();
  void cmdBestandAusstatten_Click();

  Services services_;
  InventoryModel model_;
  QSortFilterProxyModel sorted_;
  std::vector<TerminalId> terminals_;  // behind the first entry, which is who listens
  QComboBox* cboBestandTerminal;
  QTableView* ctlBestand;
  ColumnFit* columns_;
  QLabel* lblBestand;
  QLabel* lblBestandWarnung;
  QPushButton* cmdBestandText;
  QPushButton* cmdBestandSatz;
  QPushButton* cmdBestandKopieren;
  QPushButton* cmdBestandAusstatten;
  QPushButton* cmdBestandVergleichen;
};

}  // namespace kelvo
