#pragma once

#include <QDialog>
#include <QSortFilterProxyModel>
#include <functional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "inventory/journal.h"
#include "inventory/settings_trace.h"
#include "inventory_page/comparison_model.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTableView;

namespace kelvo {

class ColumnFit;
class WriteDesk;

/// What Terminals have told, what was written into them and what the database has, side by side.
/// Only "Lesen" asks a Terminal anything.
class CompareDialog : public QDialog {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Operator& person;
    WriteJournal& journal;
    std::string readingsPath;
    WriteDesk& desk;
    std::function<std::vector<StoredRecord>()> records;
    std::function<std::vector<int>()> addresses;     ///< of the stored Terminals
    std::function<std::string(int address)> nameOf;  ///< UTF-8
    std::function<std::string()> device;             ///< of the port that is open
    /// What was set on a Terminal since it was started.
    std::function<const Settings&(const TerminalId& terminal)> settings;
  };
  explicit CompareDialog(Services services, QWidget* parent = nullptr);

  /// Compares anew and shows the dialog.
  void Present();
  void reject() override;
  /// Something has happened that it may tell of: compares anew while it is seen.
  void Follow();

 Q_SIGNALS:
  /// A reading, or a file, is done.
  void Finished(const QString& what, bool failed);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QLayout* MakeChoice();
  void MakeTable();
  QLayout* MakeButtons();
  void FillChoice();
  std::vector<int> Chosen() const;
  void Compare();
  void FollowNow();
  void ShowSummary();
  QString NameOf(int address) const;
  QString Report() const;

  void cmdVergleichLesen_Click();
  void cmdVergleichAbbrechen_Click();
  void cmdVergleichSchreiben_Click();
  void cmdVergleichKopieren_Click();
  void cmdVergleichSpeichern_Click();

  Services services_;
  Readings readings_;
  ReadRun run_;
  ComparisonModel model_;
  QSortFilterProxyModel filtered_;
  bool reading_ = false;
  bool closing_ = false;
  bool follows_ = false;  // it compares anew as soon as it can
  QString said_;          // what came of what was done here last
  QComboBox* cboVergleichTerminal;
  QCheckBox* chkVergleichUnterschiede;
  QTableView* ctlVergleich;
  ColumnFit* columns_;
  QLabel* lblVergleich;
  QPushButton* cmdVergleichLesen;
  QPushButton* cmdVergleichAbbrechen;
  QPushButton* cmdVergleichSchreiben;
  QPushButton* cmdVergleichKopieren;
  QPushButton* cmdVergleichSpeichern;
  QPushButton* cmdVergleichSchliessen;
};

}  // namespace kelvo
