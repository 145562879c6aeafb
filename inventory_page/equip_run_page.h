#pragma once

#include <QWidget>
#include <chrono>
#include <optional>

#include "inventory/equip_run.h"
#include "inventory_page/equip_services.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace kelvo {

/// A run while it goes on, while it waits to go on, and when it is over.
class EquipRunPage : public QWidget {
  Q_OBJECT

 public:
  explicit EquipRunPage(const EquipServices& services, QWidget* parent = nullptr);

  /// Takes a run that waits to go on.
  void Show(EquipLog log);
  bool HasRun() const { return log_.has_value(); }
  /// Nothing of it is left to do.
  bool IsDone() const { return log_ && log_->Progress().Done(); }
  bool Running() const { return running_; }
  void Begin() { cmdAusstattenFortsetzen_Click(); }
  void Stop();
  /// It is done, and its report may go.
  void Forget() { log_.reset(); }

  QPushButton* ContinueButton() { return cmdAusstattenFortsetzen; }

 Q_SIGNALS:
  /// A run is over for now, or its report is saved: what came of it.
  void Finished(const QString& result, bool failed);
  /// It begins or ends.
  void RunningChanged();
  /// The operator gives up what is left.
  void Discarded();

 private:
  void MakeControls();
  void FillTree();
  void ShowEntry(const EquipEntry& entry);
  void ShowTarget(std::size_t target);
  void ShowTime();
  void ShowEnd(EquipRun::End end);
  QString ListenerText() const;
  void SetRunning(bool running);
  std::size_t WorkLeft() const;
  bool MayContinue();

  void cmdAusstattenFortsetzen_Click();
  void cmdAusstattenAnhalten_Click() { Stop(); }
  void cmdAusstattenVerwerfen_Click();
  void cmdAusstattenBericht_Click();

  EquipServices services_;
  EquipRun run_;
  std::optional<EquipLog> log_;
  bool running_ = false;
  std::size_t workAtStart_ = 0;
  std::chrono::nanoseconds start_{0};

  QLabel* lblAusstattenStand = nullptr;
  QProgressBar* ctlAusstattenFortschritt = nullptr;
  QTreeWidget* ctlAusstattenLauf = nullptr;
  QPlainTextEdit* txtAusstattenBericht = nullptr;
  QPushButton* cmdAusstattenFortsetzen = nullptr;
  QPushButton* cmdAusstattenAnhalten = nullptr;
  QPushButton* cmdAusstattenVerwerfen = nullptr;
  QPushButton* cmdAusstattenBericht = nullptr;
};

}  // namespace kelvo
