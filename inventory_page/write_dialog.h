#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "base/event_loop.h"
#include "bus/terminals_dialog.h"
#include "inventory/write_clashes.h"

namespace kelvo {

/// Writes items into the EEPROMs of the Terminals that the operator ticks, each proven for itself.
class WriteDialog : public TerminalsDialog {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Operator& person;
    /// The Terminal that is selected now, so that it is afterwards.
    std::function<std::optional<int>()> selected;
  };
  explicit WriteDialog(Services services, QWidget* parent = nullptr);

  /// Shows the dialog with these jobs; while it still runs, with those that it has. `title` is the
  /// window's.
  void Open(const QString& title, std::vector<WriteJob> jobs);

 private:
  void FillList();
  void Run() override;
  void StopRun() override { run_.Stop(); }
  void TickAll() override;
  void Ticked(int row);
  void ShowJob(std::size_t index);
  void ShowProgress(std::size_t index);
  void ShowSummary(std::optional<int> selected);

  Services services_;
  WriteRun run_;
  std::vector<WriteJob> jobs_;
  WriteClashes clashes_;
  bool filling_ = false;
};

}  // namespace kelvo
