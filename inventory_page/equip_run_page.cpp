#include "inventory_page/equip_run_page.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <algorithm>

#include "bus/terminals_dialog.h"
#include "inventory/equip_report.h"
#include "link/commands.h"
#include "widgets/dark_list.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr char kReportFilter[] = "Text |*.txt";
constexpr int kStateColumn = 1;
constexpr int kWidestStep = 60;  // characters
// What a step costs beside its own characters, in characters: the questions around it.
constexpr std::size_t kAroundStep = 80;

std::size_t WorkOf(const EquipJob& job, std::size_t step) {
  const auto& items = job.equipment.items;
  const std::size_t characters =
      step < items.size() ? items[step].command.size() : job.equipment.settings.size();
  return characters + kAroundStep;
}

// With a tool tip for where the column is too narrow for it.
void ShowCell(QTreeWidgetItem& row, int column, const std::string& text) {
  row.setText(column, Text(text));
  row.setToolTip(column, Text(text));
}

void Colour(QTreeWidgetItem& row, bool good, bool failed) {
  const QColor colour = good     ? TerminalsDialog::GoodColour()
                        : failed ? TerminalsDialog::FailedColour()
                                 : QColor();
  row.setData(kStateColumn, Qt::ForegroundRole, colour.isValid() ? QBrush(colour) : QVariant());
}

QString EndText(EquipRun::End end, const EquipProgress& progress) {
  switch (end) {
    case EquipRun::End::Stopped:
      return QObject::tr("Angehalten. „Fortsetzen“ macht dort weiter.");
    case EquipRun::End::LineLost:
      return QObject::tr(
          "Die Verbindung ging verloren. „Fortsetzen“ macht dort weiter, sobald "
          "der Anschluss wieder offen ist.");
    case EquipRun::End::NotLogged:
      return QObject::tr(
          "Angehalten: Der Fortschritt kann nicht aufgezeichnet werden (Datenträger "
          "voll oder schreibgeschützt).");
    case EquipRun::End::Complete:
      break;
  }
  return progress.Done() ? QObject::tr("Alles ist geschrieben.")
                         : QObject::tr(
                               "Nicht alles ist geschrieben. „Fortsetzen“ versucht nur "
                               "das, was fehlt.");
}

}  // namespace

EquipRunPage::EquipRunPage(const EquipServices& services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      run_({services_.exchange, services_.loop, services_.state,
            services_.options.Number("EEPromelegantlöschenabVer"),
            services_.options.Number("ChecksumabVer")}) {
  MakeControls();
  Operator& person = services_.person;
  OnSend(cmdAusstattenFortsetzen, this, person, &EquipRunPage::cmdAusstattenFortsetzen_Click);
  OnClick(cmdAusstattenAnhalten, this, person, &EquipRunPage::cmdAusstattenAnhalten_Click,
          Speaks::ToStop);
  OnClick(cmdAusstattenVerwerfen, this, person, &EquipRunPage::cmdAusstattenVerwerfen_Click);
  OnClick(cmdAusstattenBericht, this, person, &EquipRunPage::cmdAusstattenBericht_Click);
}

void EquipRunPage::MakeControls() {
  lblAusstattenStand = Named(new QLabel, "lblAusstattenStand");
  lblAusstattenStand->setWordWrap(true);
  ctlAusstattenFortschritt = Named(new QProgressBar, "ctlAusstattenFortschritt");
  ctlAusstattenFortschritt->setAccessibleName(tr("Fortschritt"));
  ctlAusstattenLauf = Named(new QTreeWidget, "ctlAusstattenLauf");
  ctlAusstattenLauf->setHeaderLabels({tr("Terminal, Posten"), tr("Zustand")});
  ctlAusstattenLauf->setColumnWidth(0, fontMetrics().averageCharWidth() * 44);
  ctlAusstattenLauf->setAccessibleName(tr("Verlauf"));
  KeepVisibleOnDark(ctlAusstattenLauf);
  txtAusstattenBericht = Named(new QPlainTextEdit, "txtAusstattenBericht");
  txtAusstattenBericht->setReadOnly(true);
  txtAusstattenBericht->setTabChangesFocus(true);
  txtAusstattenBericht->setAccessibleName(tr("Bericht"));
  cmdAusstattenFortsetzen = MakeButton("cmdAusstattenFortsetzen", tr("&Fortsetzen"),
                                       tr("Schreibt, was noch fehlt oder zweifelhaft ist."));
  cmdAusstattenAnhalten =
      MakeButton("cmdAusstattenAnhalten", tr("A&nhalten"),
                 tr("Hört nach dem Posten auf, der gerade geschrieben wird (Esc)."));
  cmdAusstattenVerwerfen = MakeButton("cmdAusstattenVerwerfen", tr("&Verwerfen"),
                                      tr("Was fehlt, wird nicht mehr zum Fortsetzen angeboten."));
  cmdAusstattenBericht = MakeButton("cmdAusstattenBericht", tr("&Bericht sichern …"));
  auto* parts = new QSplitter(Qt::Vertical);
  parts->addWidget(ctlAusstattenLauf);
  parts->addWidget(txtAusstattenBericht);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(lblAusstattenStand);
  column->addWidget(ctlAusstattenFortschritt);
  column->addWidget(parts, 1);
  column->addLayout(ButtonRow({cmdAusstattenFortsetzen, cmdAusstattenAnhalten,
                               cmdAusstattenVerwerfen, cmdAusstattenBericht}));
}

void EquipRunPage::Show(EquipLog log) {
  log_ = std::move(log);
  FillTree();
  lblAusstattenStand->setText(tr("Diese Ausstattung ist nicht zu Ende: %1. „Fortsetzen“ fragt "
                                 "zuerst, ob noch dieselben Terminals antworten.")
                                  .arg(Text(log_->Job().equipment.origin)));
  SetRunning(false);
}

void EquipRunPage::FillTree() {
  const EquipJob& job = log_->Job();
  ctlAusstattenLauf->clear();
  for (std::size_t i = 0; i < job.targets.size(); ++i) {
    auto* target = new QTreeWidgetItem;
    ShowCell(*target, 0, TargetText(job.targets[i]));
    for (std::size_t step = 0; step < job.Steps(); ++step) {
      target->addChild(new QTreeWidgetItem);
      ShowCell(*target->child(static_cast<int>(step)), 0, StepText(job, step));
    }
    ctlAusstattenLauf->addTopLevelItem(target);
    ShowTarget(i);
  }
  ctlAusstattenLauf->expandAll();
  ctlAusstattenLauf->resizeColumnToContents(0);
  const int widest = fontMetrics().averageCharWidth() * kWidestStep;
  ctlAusstattenLauf->setColumnWidth(0, std::min(ctlAusstattenLauf->columnWidth(0), widest));
  if (job.targets.size() > 1) ctlAusstattenLauf->collapseAll();
}

void EquipRunPage::ShowTarget(std::size_t target) {
  const TargetProgress& progress = log_->Progress().targets[target];
  QTreeWidgetItem* const row = ctlAusstattenLauf->topLevelItem(static_cast<int>(target));
  ShowCell(*row, kStateColumn, TargetStateText(progress));
  bool anyFailed = !progress.stopped.empty();
  for (std::size_t i = 0; i < progress.steps.size(); ++i) {
    const StepProgress& step = progress.steps[i];
    QTreeWidgetItem& line = *row->child(static_cast<int>(i));
    ShowCell(line, kStateColumn, StepStateText(step));
    Colour(line, step.Done(), step.Failed());
    anyFailed = anyFailed || step.Failed();
  }
  Colour(*row, progress.Done(), anyFailed);
}

void EquipRunPage::ShowEntry(const EquipEntry& entry) {
  using What = EquipEntry::What;
  ShowTarget(entry.target);
  QTreeWidgetItem* const row = ctlAusstattenLauf->topLevelItem(static_cast<int>(entry.target));
  if (entry.what == What::EraseBegun) row->setText(kStateColumn, tr("EEPROM wird gelöscht …"));
  if (entry.what == What::Begun) {
    QTreeWidgetItem* const step = row->child(static_cast<int>(entry.step));
    step->setText(kStateColumn, tr("wird geschrieben …"));
    ctlAusstattenLauf->scrollToItem(step->parent()->isExpanded() ? step : row);
  }
  ShowTime();
}

std::size_t EquipRunPage::WorkLeft() const {
  std::size_t work = 0;
  for (const TargetProgress& target : log_->Progress().targets) {
    for (std::size_t step = 0; step < target.steps.size(); ++step) {
      if (!target.steps[step].Done()) work += WorkOf(log_->Job(), step);
    }
  }
  return work;
}

void EquipRunPage::ShowTime() {
  const std::size_t left = WorkLeft();
  const std::size_t done = workAtStart_ - std::min(left, workAtStart_);
  ctlAusstattenFortschritt->setMaximum(static_cast<int>(workAtStart_));
  ctlAusstattenFortschritt->setValue(static_cast<int>(done));
  if (done == 0) return;
  const std::chrono::duration<double> took = services_.loop.Now() - start_;
  const auto seconds =
      static_cast<int>(took.count() * static_cast<double>(left) / static_cast<double>(done)) + 1;
  lblAusstattenStand->setText(
      seconds < 60 ? tr("Es wird geschrieben, noch etwa %1 s …").arg(seconds)
                   : tr("Es wird geschrieben, noch etwa %1 min …").arg((seconds + 30) / 60));
}

// The same Terminal may hang on another device now; only the operator knows.
bool EquipRunPage::MayContinue() {
  const std::string device = services_.device();
  const std::string& before = log_->Job().targets.front().id.device;
  return device == before || services_.person.Ask("Begonnen wurde an " + before + ", offen ist " +
                                                      device + ". Trotzdem fortsetzen ?",
                                                  Icon::Question, {}, Proposal::No);
}

void EquipRunPage::cmdAusstattenFortsetzen_Click() {
  if (running_ || !log_ || !MayContinue()) return;
  const Undertakings::Alone alone(services_.person.Begun(), "Terminals werden ausgestattet.");
  const std::optional<int> before = services_.selected();
  start_ = services_.loop.Now();
  workAtStart_ = std::max<std::size_t>(WorkLeft(), 1);
  lblAusstattenStand->setText(tr("Es wird geschrieben …"));
  ctlAusstattenFortschritt->setMaximum(static_cast<int>(workAtStart_));
  ctlAusstattenFortschritt->setValue(0);
  SetRunning(true);
  const EquipRun::End end = run_.Run(*log_, [this](const EquipEntry& entry) { ShowEntry(entry); });
  if (before && services_.exchange.Alive()) services_.exchange.SendString(SelectAddress(*before));
  // One that stays says that all is done, and is replaced by the next.
  if (IsDone()) static_cast<void>(log_->Discard());
  SetRunning(false);
  ShowEnd(end);
}

void EquipRunPage::ShowEnd(EquipRun::End end) {
  const EquipProgress& progress = log_->Progress();
  const QString text = EndText(end, progress);
  lblAusstattenStand->setText(text + ListenerText());
  ctlAusstattenFortschritt->setValue(
      static_cast<int>(workAtStart_ - std::min(WorkLeft(), workAtStart_)));
  Q_EMIT Finished(tr("Terminal ausstatten: %1").arg(text), !progress.Done());
}

// Whoever has had the last turn is selected, unless another one was before.
QString EquipRunPage::ListenerText() const {
  if (!services_.exchange.Alive()) return {};
  const std::optional<int> selected = services_.selected();
  return selected ? tr(" Gewählt ist jetzt die Adresse %1.").arg(*selected)
                  : tr(" Keines ist mehr gewählt; „Terminal wählen“ wählt wieder eines.");
}

void EquipRunPage::SetRunning(bool running) {
  running_ = running;
  const bool left = !running && log_ && !IsDone();
  cmdAusstattenFortsetzen->setEnabled(left);
  cmdAusstattenVerwerfen->setEnabled(left);
  cmdAusstattenAnhalten->setEnabled(running);
  cmdAusstattenBericht->setEnabled(!running);
  ctlAusstattenFortschritt->setVisible(running);
  txtAusstattenBericht->setVisible(!running);
  if (!running && log_) {
    for (std::size_t i = 0; i < log_->Job().targets.size(); ++i) ShowTarget(i);
    txtAusstattenBericht->setPlainText(Text(EquipReport(log_->Job(), log_->Progress())));
  }
  Q_EMIT RunningChanged();
}

void EquipRunPage::Stop() {
  if (!running_) return;
  run_.Stop();
  cmdAusstattenAnhalten->setEnabled(false);
  lblAusstattenStand->setText(tr("Es hört nach dem Posten auf, der gerade geschrieben wird …"));
}

void EquipRunPage::cmdAusstattenVerwerfen_Click() {
  if (!services_.person.Ask("Was noch fehlt, wird dann nicht mehr zum Fortsetzen angeboten. Was "
                            "geschrieben ist, bleibt. Verwerfen ?",
                            Icon::Question, {}, Proposal::No)) {
    return;
  }
  if (const auto problem = log_->Discard()) {
    return services_.person.Message("Die Datei \"" + services_.logPath +
                                        "\" kann nicht gelöscht werden: " + *problem +
                                        ". Was noch fehlt, wird weiter zum Fortsetzen angeboten.",
                                    Icon::Exclamation);
  }
  log_.reset();
  Q_EMIT Discarded();
}

void EquipRunPage::cmdAusstattenBericht_Click() {
  const auto path = services_.person.SaveFile("Bericht sichern", kReportFilter);
  if (!path) return;
  const auto problem = WriteFile(*path, EquipReport(log_->Job(), log_->Progress()));
  if (problem) {
    return services_.person.Message(
        "Die Datei \"" + *path + "\" kann nicht geschrieben werden: " + *problem,
        Icon::Exclamation);
  }
  const QString said = tr("Der Bericht ist gesichert: %1").arg(Text(*path));
  lblAusstattenStand->setText(said);
  Q_EMIT Finished(said, false);
}

}  // namespace kelvo
