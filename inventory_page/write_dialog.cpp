#include "inventory_page/write_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <algorithm>

#include "bus/terminal_search.h"
#include "bus/tick_list.h"
#include "inventory/terminal_name.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

// With the name of the record.
std::string WhatText(const Item& item) {
  return ItemText(item.key) + (item.name.empty() ? "" : " „" + item.name + "“");
}

}  // namespace

WriteDialog::WriteDialog(Services services, QWidget* parent)
    : TerminalsDialog(
          {"frmSchreiben", "ctlSchreibenListe", "lblSchreibenMoment", "lblSchreibenErgebnis",
           "cmdSchreiben", "cmdSchreibenAlle", "cmdSchreibenKeins", "cmdSchreibenAnhalten",
           "cmdSchreibenAbbruch"},
          {{tr("Terminal"), tr("Was"), tr("Checksumme"), tr("Zustand")},
           {27, 30, 14},
           tr("&Schreiben"),
           tr("Wählt die angekreuzten nacheinander, schreibt und prüft, was angekommen ist."),
           tr("&Alle"),
           tr("Hört auf, wenn das Terminal fertig ist, das gerade an der Reihe ist."),
           tr("Es hört auf, wenn das Terminal fertig ist, das gerade an der Reihe ist …"),
           "Es wird in mehrere Terminals geschrieben."},
          services.person, parent),
      services_(std::move(services)),
      run_(services_.exchange, services_.loop) {
  connect(List(), &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (column == 0 && !filling_ && !Running()) Ticked(List()->indexOfTopLevelItem(item));
  });
  List()->KeepAddresses();
  List()->FitColumns({{0, tr("✓ Halle…, Adresse 255")}, {1, tr("Makro 255 „Display…")}});
  ResizeWithinScreen(this, {fontMetrics().averageCharWidth() * 170, height()});
}

void WriteDialog::Open(const QString& title, std::vector<WriteJob> jobs) {
  if (!Running()) {
    setWindowTitle(title);
    jobs_ = std::move(jobs);
    clashes_ = WriteClashes(jobs_);
    clashes_.KeepOne(jobs_);
    FillList();
  }
  Present();
}

// Of what would overwrite one another only one may stay ticked.
void WriteDialog::Ticked(int row) {
  const auto index = static_cast<std::size_t>(row);
  WriteJob& job = jobs_[index];
  if (job.ticked == List()->Ticked(row)) return;  // something else of the row
  job.ticked = !job.ticked;
  ResultLabel()->clear();  // that was of other ticks
  if (!job.ticked) return;
  for (const std::size_t other : clashes_.With(job)) {
    if (other == index || !List()->Ticked(static_cast<int>(other))) continue;
    List()->Tick(static_cast<int>(other), false);
    ResultLabel()->setText(
        tr("%1 ist nicht mehr angekreuzt: Es hat denselben Platz im Terminal wie %2.")
            .arg(Text(WhatText(jobs_[other].order.item)), Text(WhatText(job.order.item))));
  }
}

// Which one of several the operator has not said: the first, unless one is ticked already.
void WriteDialog::TickAll() {
  const QScopedValueRollback filling(filling_, true);
  ResultLabel()->clear();
  int left = 0;
  for (const WriteJob& job : jobs_) {
    const auto& same = clashes_.With(job);
    const bool any = std::any_of(same.begin(), same.end(), [this](std::size_t index) {
      return List()->Ticked(static_cast<int>(index));
    });
    if (!any) List()->Tick(static_cast<int>(&job - jobs_.data()), true);
  }
  for (int row = 0; row < List()->Rows(); ++row) {
    jobs_[static_cast<std::size_t>(row)].ticked = List()->Ticked(row);
    left += List()->Ticked(row) ? 0 : 1;
  }
  if (left == 0) return;
  ResultLabel()->setText(
      tr("Nicht angekreuzt: %1. Von dem, was denselben Platz im Terminal hat, geht nur eines.")
          .arg(left));
}

void WriteDialog::FillList() {
  const QScopedValueRollback filling(filling_, true);
  List()->clear();
  StartAnew();
  for (std::size_t i = 0; i < jobs_.size(); ++i) {
    WriteJob& job = jobs_[i];
    const std::string clash = clashes_.Text(jobs_, i);
    if (!clash.empty()) job.why += (job.why.empty() ? "" : "; ") + clash;
    List()->Add({Text(TerminalName(job.terminal, job.address)), Text(WhatText(job.order.item)),
                 Text(YesNoText(job.canSum)), Text(JobText(job))},
                job.ticked);
  }
  StartButton()->setEnabled(!jobs_.empty());
  ResultLabel()->setText(jobs_.empty() ? tr("Es sind keine Terminals gespeichert.") : QString());
}

void WriteDialog::Run() {
  if (!List()->AnyTicked()) {
    return ResultLabel()->setText(tr("Nichts angekreuzt; es wurde nichts gesendet."));
  }
  for (std::size_t i = 0; i < jobs_.size(); ++i) {
    jobs_[i].ticked = List()->Ticked(static_cast<int>(i));
    // What a run before this one has shown stays, but for those that take part again.
    if (jobs_[i].ticked) jobs_[i].state = JobState::None;
    ShowJob(i);
  }
  ResultLabel()->clear();
  const std::optional<int> selected = services_.selected();
  run_.Run(jobs_, selected, [this](std::size_t index) {
    ShowJob(index);
    const JobState state = jobs_[index].state;
    if (state == JobState::Waiting || state == JobState::Open) return;
    List()->ScrollTo(static_cast<int>(index));
    if (jobs_[index].state == JobState::Writing) ShowProgress(index);
  });
  ShowSummary(selected);
}

void WriteDialog::ShowProgress(std::size_t index) {
  const auto all = std::count_if(jobs_.begin(), jobs_.end(), [](const WriteJob& job) {
    return job.state == JobState::Waiting || job.state == JobState::Writing;
  });
  ResultLabel()->setText(tr("Schreibt in „%1“, danach noch %2 …")
                             .arg(Text(TerminalName(jobs_[index].terminal, jobs_[index].address)))
                             .arg(all - 1));
}

void WriteDialog::ShowJob(std::size_t index) {
  const WriteJob& job = jobs_[index];
  const bool proven = job.Done() && job.result.verdict == WriteVerdict::Proven;
  const int row = static_cast<int>(index);
  ShowState(row, job.ticked, JobText(job),
            proven         ? GoodColour()
            : job.Failed() ? FailedColour()
                           : QColor());
}

void WriteDialog::ShowSummary(std::optional<int> selected) {
  const bool alive = services_.exchange.Alive();
  const auto failed =
      std::find_if(jobs_.begin(), jobs_.end(), [](const WriteJob& job) { return job.Failed(); });
  const QString summary = Text(JobSummary(jobs_));
  QString text = summary;
  const bool left = std::any_of(jobs_.begin(), jobs_.end(),
                                [](const WriteJob& j) { return j.ticked && !j.Done(); });
  if (left) text += tr(" Angekreuzt ist noch, was fehlt; „Schreiben“ wiederholt nur das.");
  text += !alive     ? tr(" Die Verbindung ging verloren.")
          : selected ? tr(" Gewählt ist wieder die Adresse %1.").arg(*selected)
                     : tr(" Keines ist mehr gewählt; „Terminal wählen“ wählt wieder eines.");
  ShowOutcome(text);
  Q_EMIT Finished(tr("%1: %2").arg(windowTitle(), summary), failed != jobs_.end() || !alive);
  if (failed != jobs_.end()) List()->ScrollTo(static_cast<int>(failed - jobs_.begin()));
}

}  // namespace kelvo
