#include "bus/terminals_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "bus/tick_list.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

// Colours 2 and 12 of the 16-colour palette.
constexpr QColor kGreen(0, 128, 0);
constexpr QColor kLightRed(255, 0, 0);

}  // namespace

QColor TerminalsDialog::GoodColour() { return kGreen; }
QColor TerminalsDialog::FailedColour() { return kLightRed; }

TerminalsDialog::TerminalsDialog(const Names& names, Words words, Operator& person, QWidget* parent)
    : QDialog(parent), words_(std::move(words)), person_(person) {
  Named(this, names.dialog);
  list_ = Named(new TickList(words_.titles, words_.widths), names.list);
  list_->setAccessibleName(tr("Terminals"));
  moment_ = Named(new QLabel(tr("Moment bitte …")), names.moment);
  result_ = Named(new QLabel, names.result);
  result_->setWordWrap(true);
  start_ = MakeButton(names.send, words_.send, words_.sendTip);
  all_ = MakeButton(names.all, words_.all, tr("Kreuzt alle an."));
  none_ = MakeButton(names.none, tr("&Keins"), tr("Kreuzt keines an."));
  end_ = MakeButton(names.end, {});
  start_->setDefault(true);
  MakeLayout();
  ConnectButtons();
  SetRunning(false);
}

void TerminalsDialog::MakeLayout() {
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(all_);
  buttons->addWidget(none_);
  buttons->addWidget(moment_);
  buttons->addStretch();
  buttons->addWidget(start_);
  buttons->addWidget(end_);
  auto* column = new QVBoxLayout(this);
  column->addWidget(list_, 1);
  column->addWidget(result_);
  column->addLayout(buttons);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 116, fontMetrics().lineSpacing() * 24});
}

void TerminalsDialog::ConnectButtons() {
  OnClick(start_, this, person_, &TerminalsDialog::Start);
  ConnectClick(all_, person_, Speaks::No, [this] { list_->TickAll(true); });
  ConnectClick(none_, person_, Speaks::No, [this] { list_->TickAll(false); });
  OnClick(end_, this, person_, &TerminalsDialog::End, Speaks::ToStop);
}

// Window modal and not a wait of its own: what is sent runs in the handler of its button.
void TerminalsDialog::Present() {
  open();
  raise();
}

void TerminalsDialog::ShowState(int row, bool ticked, const std::string& state, QColor colour) {
  list_->Tick(row, ticked);
  list_->SetText(row, list_->columnCount() - 1, QString::fromStdString(state));
  list_->Colour(row, colour);
}

void TerminalsDialog::SetRunning(bool running) {
  running_ = running;
  moment_->setVisible(running);
  // The ticks are the run's while it lasts; the list can still be looked through.
  list_->setSelectionMode(running ? QAbstractItemView::NoSelection
                                  : QAbstractItemView::SingleSelection);
  list_->SetTickable(!running);
  for (QPushButton* button : {start_, all_, none_}) button->setEnabled(!running);
  end_->setText(running ? tr("A&bbrechen") : tr("S&chließen"));
  end_->setToolTip(running ? words_.stopTip : QString());
  end_->setEnabled(true);
}

void TerminalsDialog::Start() {
  if (running_) return;
  if (!person_.MayTalk()) return;
  const Undertakings::Alone alone(person_.Begun(), words_.running);
  SetRunning(true);
  Run();
  SetRunning(false);
  if (closing_) reject();
}

void TerminalsDialog::End() {
  if (!running_) return reject();
  StopRun();
  end_->setEnabled(false);
  result_->setText(words_.stopping);
}

// Escape or the window's frame: a run under way is stopped first.
void TerminalsDialog::reject() {
  closing_ = running_;
  if (running_) return End();
  QDialog::reject();
}

}  // namespace kelvo
