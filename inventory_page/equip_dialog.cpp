#include "inventory_page/equip_dialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>

#include "inventory_page/equip_plan_page.h"
#include "inventory_page/equip_run_page.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/window_size.h"

namespace kelvo {

EquipDialog::EquipDialog(EquipServices services, QWidget* parent)
    : QDialog(parent),
      services_(std::move(services)),
      pages_(new QStackedWidget),
      plan_(new EquipPlanPage(services_)),
      run_(new EquipRunPage(services_)),
      cmdAusstatten(plan_->StartButton()),
      cmdAusstattenSchliessen(MakeButton("cmdAusstattenSchliessen", tr("Schl&ießen"))) {
  Named(this, "frmAusstatten");
  setWindowTitle(tr("Terminal ausstatten"));
  pages_->addWidget(plan_);
  pages_->addWidget(run_);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdAusstatten);
  buttons->addWidget(cmdAusstattenSchliessen);
  auto* column = new QVBoxLayout(this);
  column->addWidget(pages_, 1);
  column->addLayout(buttons);
  KeepPlace(this);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 175, fontMetrics().lineSpacing() * 36});
  OnSend(cmdAusstatten, this, services_.person, &EquipDialog::cmdAusstatten_Click);
  OnClick(cmdAusstattenSchliessen, this, services_.person,
          &EquipDialog::cmdAusstattenSchliessen_Click, Speaks::ToStop);
  connect(run_, &EquipRunPage::Finished, this, &EquipDialog::Finished);
  connect(plan_, &EquipPlanPage::Saved, this,
          [this](const QString& text) { Q_EMIT Finished(text, false); });
  connect(run_, &EquipRunPage::RunningChanged, this, [this] {
    if (closing_ && !run_->Running()) reject();
  });
  connect(run_, &EquipRunPage::Discarded, this, &EquipDialog::ShowPlan);
}

bool EquipDialog::HasLeftOver() const {
  const auto log = EquipLog::Open(services_.logPath);
  return log && !log->Progress().Done();
}

void EquipDialog::Open() {
  if (!run_->Running()) {
    if (run_->IsDone()) run_->Forget();
    auto left = run_->HasRun() ? std::nullopt : EquipLog::Open(services_.logPath);
    if (left && !left->Progress().Done()) run_->Show(*std::move(left));
    run_->HasRun() ? ShowRun() : ShowPlan();
  }
  open();
}

void EquipDialog::ShowPlan() {
  plan_->Refresh();
  pages_->setCurrentWidget(plan_);
  cmdAusstatten->show();
  cmdAusstatten->setDefault(true);
}

void EquipDialog::ShowRun() {
  pages_->setCurrentWidget(run_);
  cmdAusstatten->hide();
  run_->ContinueButton()->setDefault(true);
}

bool EquipDialog::Confirm(const EquipJob& job) {
  std::string names;
  for (const EquipTarget& target : job.targets) {
    names += (names.empty() ? "" : "; ") + TargetText(target);
  }
  const std::string erase =
      job.erase ? " Das EEPROM wird vorher gelöscht, mit allem, was darin liegt." : "";
  return services_.person.Ask(std::to_string(job.Steps()) + " Posten werden geschrieben an: " +
                                  names + "." + erase + " Beginnen\u00A0?",
                              job.erase ? Icon::Exclamation : Icon::Question, {}, Proposal::No);
}

void EquipDialog::cmdAusstatten_Click() {
  const EquipJob job = plan_->Job();
  if (!Obstacles(job).empty() || !Confirm(job)) return;
  auto log = EquipLog::Create(services_.logPath, job);
  if (!log) {
    services_.person.Message("Die Datei \"" + services_.logPath +
                                 "\" kann nicht geschrieben werden. Ohne sie könnte nach einer "
                                 "Unterbrechung nicht fortgesetzt werden; es wird nichts gesendet.",
                             Icon::Exclamation);
    return;
  }
  run_->Show(*std::move(log));
  ShowRun();
  run_->Begin();
}

// Escape or the window's frame: a run under way is stopped first.
void EquipDialog::reject() {
  closing_ = run_->Running();
  if (closing_) return run_->Stop();
  QDialog::reject();
}

}  // namespace kelvo
