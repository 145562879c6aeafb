#pragma once

#include <QDialog>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/operator.h"
#include "bus/transfer.h"
#include "store/recordset.h"

class QLabel;
class QPushButton;

namespace kelvo {

class TickList;

/// Sends the drawing to the stored Terminals that the operator ticks. "DOVU" is what the database
/// calls a Terminal of the bus: its list is the table `DOVU`, and names with "Dovu" are about it.
class frmDovu : public QDialog {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Operator& person;
    const Recordset& terminals;  ///< `DOVU`
    /// The commands of the drawing that the editor holds; nothing when it cannot be translated,
    /// which has been said.
    std::function<std::optional<std::string>()> drawing;
  };
  explicit frmDovu(Services services, QWidget* parent = nullptr);

  /// Reads the list anew and shows the dialog, which blocks the window behind it.
  void Open();
  void reject() override;

 Q_SIGNALS:
  /// A transfer is over: what came of it.
  void Finished(const QString& result, bool failed);

 private:
  void MakeList();
  void FillList();
  void ConnectButtons();
  void SetSending(bool sending);
  void TakeTicks();
  void TickAll(bool ticked);
  void ShowEntry(std::size_t index);
  void Follow(std::size_t index);
  void ShowSummary();
  void SendRS485(const std::string& drawing);

  void cmdSenden_Click();
  void cmdDovuAlleAktiv_Click() { TickAll(true); }
  void cmdDovuKeinsAktiv_Click() { TickAll(false); }
  void cmdAbbruch_Click();

  Services services_;
  Transfer transfer_;
  std::vector<TransferEntry> entries_;
  bool sending_ = false;
  bool closing_ = false;

  TickList* ctlDovuAktivliste = nullptr;
  QLabel* lblMomentbitte = nullptr;
  QLabel* lblErgebnis = nullptr;
  QPushButton* cmdSenden = nullptr;
  QPushButton* cmdDovuAlleAktiv = nullptr;
  QPushButton* cmdDovuKeinsAktiv = nullptr;
  QPushButton* cmdAbbruch = nullptr;
};

}  // namespace kelvo
