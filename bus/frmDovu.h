#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "bus/terminals_dialog.h"
#include "bus/transfer.h"
#include "store/recordset.h"

namespace kelvo {

/// Sends the drawing to the stored Terminals that the operator ticks. "DOVU" is what the database
/// calls a Terminal of the bus: its list is the table `DOVU`, and names with "Dovu" are about it.
class frmDovu : public TerminalsDialog {
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

 private:
  void FillList();
  void Run() override;
  void StopRun() override { transfer_.Stop(); }
  void ShowEntry(std::size_t index);
  void Follow(std::size_t index);
  void ShowSummary();
  void SendRS485(const std::string& drawing);

  Services services_;
  Transfer transfer_;
  std::vector<TransferEntry> entries_;
};

}  // namespace kelvo
