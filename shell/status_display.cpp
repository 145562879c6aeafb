#include "shell/status_display.h"

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>
#include <algorithm>

#include "link/command_table.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kSlowMilliseconds = 1000;
constexpr int kRefreshMilliseconds = 500;

}  // namespace

StatusDisplay::StatusDisplay(Exchange& exchange, const Undertakings& begun, QWidget* parent)
    : QStatusBar(parent), exchange_(exchange), begun_(begun) {
  lblAktivitaet = Named(new QLabel, "lblAktivitaet");
  // However long a text is, the window stays as wide as it is.
  lblAktivitaet->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  ctlSendeFortschritt = Named(new QProgressBar, "ctlSendeFortschritt");
  ctlSendeFortschritt->setAccessibleName(tr("Fortschritt der Übertragung"));
  ctlSendeFortschritt->setMaximumWidth(fontMetrics().averageCharWidth() * 24);
  ctlSendeFortschritt->hide();
  cmdSendenAbbrechen = Named(new QToolButton, "cmdSendenAbbrechen");
  cmdSendenAbbrechen->setText(tr("Abbrechen"));
  cmdSendenAbbrechen->setToolTip(tr("Sendet den Rest der Zeichnung nicht mehr."));
  cmdSendenAbbrechen->setFocusPolicy(Qt::TabFocus);
  cmdSendenAbbrechen->hide();
  connect(cmdSendenAbbrechen, &QToolButton::clicked, this, &StatusDisplay::StopWanted);
  lblLeitung = Named(new QLabel, "lblLeitung");
  lblLeitung->hide();
  addWidget(lblAktivitaet, 1);
  addPermanentWidget(lblLeitung);
  addPermanentWidget(ctlSendeFortschritt);
  addPermanentWidget(cmdSendenAbbrechen);
  connect(&progress_, &QTimer::timeout, this, &StatusDisplay::ShowProgress);
  line_.setInterval(kRefreshMilliseconds);
  connect(&line_, &QTimer::timeout, this, &StatusDisplay::ShowLine);
  exchange_.SetActivityListener([this](std::string_view command) { ShowActivity(command); });
}

void StatusDisplay::WatchLine() {
  if (!line_.isActive()) line_.start();
  ShowLine();
}

void StatusDisplay::WatchDrawing() {
  drawing_ = true;
  total_ = static_cast<int>(exchange_.CharactersToSend());
  WatchLine();
}

void StatusDisplay::ShowLine() {
  const std::size_t left = exchange_.CharactersToSend();
  if (drawing_) ShowDrawing(static_cast<int>(left));
  const bool held = exchange_.LineHeld();
  if (held != lblLeitung->isVisibleTo(this)) {
    lblLeitung->setVisible(held);
    Q_EMIT HeldChanged();
  }
  lblLeitung->setText(
      tr("Leitung gehalten (Handshake): noch %1 Zeichen nicht abgenommen").arg(left));
  if (left == 0) line_.stop();
}

void StatusDisplay::ShowDrawing(int left) {
  drawing_ = left > 0;
  ctlSendeFortschritt->setRange(0, std::max(total_, 1));
  ctlSendeFortschritt->setValue(total_ - left);
  ctlSendeFortschritt->setVisible(drawing_);
  cmdSendenAbbrechen->setVisible(drawing_);
  lblAktivitaet->setText(drawing_ ? tr("Zeichnung: sendet, noch %1 Zeichen").arg(left) : result_);
}

void StatusDisplay::ShowActivity(std::string_view command) {
  WatchLine();
  if (command.empty()) {
    progress_.stop();
    ctlSendeFortschritt->hide();
    lblAktivitaet->setText(result_);
    return;
  }
  if (!SameDeed()) result_.clear();
  activity_ = QString::fromStdString(CommandMeaning(command, 2));
  total_ = static_cast<int>(std::min<std::size_t>(command.size(), 1000000));
  lblAktivitaet->setText(activity_ + QStringLiteral(" …"));
  since_.start();
  progress_.start(kSlowMilliseconds);
}

bool StatusDisplay::SameDeed() const { return deed_ != 0 && deed_ == begun_.Deed(); }

void StatusDisplay::ShowResult(const QString& text, Chronicle::Weight weight) {
  if (SameDeed() && weight < weight_) return;
  deed_ = begun_.Deed();
  weight_ = weight;
  result_ = text;
  clearMessage();  // an older hint would hide it
  lblAktivitaet->setText(text);
  lblAktivitaet->setToolTip(text);
}

void StatusDisplay::ShowProgress() {
  progress_.start(kRefreshMilliseconds);
  const int left = static_cast<int>(exchange_.CharactersToSend());
  ctlSendeFortschritt->setRange(0, total_);
  ctlSendeFortschritt->setValue(std::max(total_ - left, 0));
  ctlSendeFortschritt->setVisible(left > 0);
  const QString what = left > 0 ? tr("%1: sendet, noch %2 Zeichen") : tr("%1: wartet seit %2 s");
  lblAktivitaet->setText(what.arg(activity_).arg(left > 0 ? left : since_.elapsed() / 1000));
}

}  // namespace kelvo
