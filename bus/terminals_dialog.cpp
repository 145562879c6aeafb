#include "bus/terminals_dialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTime>

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
  stop_ = MakeButton(names.stop, tr("A&bbrechen"), words_.stopTip);
  end_ = MakeButton(names.end, tr("S&chließen"));
  start_->setDefault(true);
  MakeLayout();
  ConnectButtons();
  SetRunning(false);
  KeepPlace(this);
}

void TerminalsDialog::MakeLayout() {
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(all_);
  buttons->addWidget(none_);
  buttons->addWidget(moment_);
  buttons->addStretch();
  buttons->addWidget(start_);
  buttons->addWidget(stop_);
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
  ConnectClick(all_, person_, Speaks::No, [this] { TickAll(); });
  ConnectClick(none_, person_, Speaks::No, [this] { list_->TickAll(false); });
  OnClick(stop_, this, person_, &TerminalsDialog::Stop, Speaks::ToStop);
  ConnectClick(end_, person_, Speaks::ToStop, [this] { reject(); });
}

// Window modal and not a wait of its own: what is sent runs in the handler of its button.
void TerminalsDialog::Present() {
  if (!isVisible()) {
    openedFrom_ = QApplication::activeWindow();
    list_->setFocus();
  }
  open();
  raise();
  activateWindow();  // not its owner, where another dialog was in front
}

// The desktop would go back to the owner, though another of its dialogs may have opened this one.
void TerminalsDialog::done(int result) {
  QDialog::done(result);
  if (openedFrom_ != nullptr && openedFrom_->isVisible()) openedFrom_->activateWindow();
}

void TerminalsDialog::ShowState(int row, bool ticked, const std::string& state, QColor colour) {
  list_->Tick(row, ticked);
  list_->SetText(row, list_->columnCount() - 1, QString::fromStdString(state));
  list_->Colour(row, colour);
}

void TerminalsDialog::TickAll() { list_->TickAll(true); }

void TerminalsDialog::ShowOutcome(const QString& text) {
  const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
  result_->setText(++runs_ == 1 ? tr("%1 (%2)").arg(text, time)
                                : tr("%1 (%2, %3. Durchgang)").arg(text, time).arg(runs_));
}

// Each button keeps its place and what it does: one that is pressed twice in haste does nothing
// else the second time. A button that can no longer be pressed leaves the focus to the list, else
// it would go on to another one, which a Return would then press.
void TerminalsDialog::SetRunning(bool running) {
  running_ = running;
  moment_->setVisible(running);
  const QWidget* const focused = focusWidget();
  if (focused != nullptr && (running ? focused != stop_ : focused == stop_)) list_->setFocus();
  // The ticks are the run's while it lasts; the list can still be looked through.
  list_->setSelectionMode(running ? QAbstractItemView::NoSelection
                                  : QAbstractItemView::SingleSelection);
  list_->SetTickable(!running);
  for (QPushButton* button : {start_, all_, none_, end_}) button->setEnabled(!running);
  stop_->setEnabled(running);
}

void TerminalsDialog::Start() {
  if (running_) return;
  if (!person_.MayTalk()) return;
  const Undertakings::Alone alone(person_.Begun(), words_.running);
  const bool focused = focusWidget() == start_;
  SetRunning(true);
  Run();
  SetRunning(false);
  if (focused && focusWidget() == list_) start_->setFocus();
  if (closing_) reject();
}

void TerminalsDialog::Stop() {
  if (!running_) return;
  StopRun();
  if (focusWidget() == stop_) list_->setFocus();
  stop_->setEnabled(false);
  result_->setText(words_.stopping);
}

// Escape or the window's frame: a run under way is stopped first.
void TerminalsDialog::reject() {
  closing_ = running_;
  if (running_) return Stop();
  QDialog::reject();
}

}  // namespace kelvo
