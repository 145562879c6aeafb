#pragma once

#include <QDialog>

#include "inventory_page/equip_services.h"

class QPushButton;
class QStackedWidget;

namespace kelvo {

struct EquipJob;
class EquipPlanPage;
class EquipRunPage;

/// Equips Terminals with what another one held: first the plan, then the run.
class EquipDialog : public QDialog {
  Q_OBJECT

 public:
  explicit EquipDialog(EquipServices services, QWidget* parent = nullptr);

  /// Shows the dialog, which blocks the window behind it: with the run that is not at its end, else
  /// with a new plan.
  void Open();
  /// A run is left over from an earlier time.
  bool HasLeftOver() const;
  void reject() override;

 Q_SIGNALS:
  /// Something is over: what came of it.
  void Finished(const QString& result, bool failed);

 private:
  void ShowPlan();
  void ShowRun();
  bool Confirm(const EquipJob& job);

  void cmdAusstatten_Click();
  void cmdAusstattenSchliessen_Click() { reject(); }

  EquipServices services_;
  bool closing_ = false;
  QStackedWidget* pages_;
  EquipPlanPage* plan_;
  EquipRunPage* run_;
  QPushButton* cmdAusstatten;
  QPushButton* cmdAusstattenSchliessen;
};

}  // namespace kelvo
