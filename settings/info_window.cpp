#include "settings/info_window.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/form.h"

namespace kelvo {

InfoWindow::InfoWindow(QWidget* parent) : QWidget(parent, Qt::Tool) {
  Named(this, "frmInfo");
  setAttribute(Qt::WA_ShowWithoutActivating);
  lblInfo = Named(new QLabel, "lblInfo");
  lblVergangen = Named(new QLabel, "lblVergangen");
  ctlFortschritt = Named(new QProgressBar, "ctlFortschritt");
  ctlFortschritt->setAccessibleName(tr("Fortschritt"));
  ctlFortschritt->hide();
  auto* page = new QVBoxLayout(this);
  page->addWidget(lblInfo);
  page->addWidget(ctlFortschritt);
  page->addWidget(lblVergangen);
  cmdInfoNichtWarten = MakeButton("cmdInfoNichtWarten", tr("&Nicht länger warten"),
                                  tr("Das Terminal löscht vielleicht weiter."));
  page->addLayout(ButtonRow({cmdInfoNichtWarten}));
  connect(cmdInfoNichtWarten, &QPushButton::clicked, this, [this] {
    if (stop_) stop_();
  });
  setMinimumWidth(fontMetrics().averageCharWidth() * 50);
  second_.setInterval(1000);
  connect(&second_, &QTimer::timeout, this, &InfoWindow::ShowElapsed);
}

void InfoWindow::Begin(const QString& caption, const QString& info, std::function<void()> stop) {
  stop_ = std::move(stop);
  cmdInfoNichtWarten->setVisible(stop_ != nullptr);
  setWindowTitle(caption);
  lblInfo->setText(info);
  elapsed_.start();
  ShowElapsed();
  second_.start();
  adjustSize();
  move(parentWidget()->window()->geometry().center() - rect().center());
  show();
}

void InfoWindow::ShowElapsed() {
  lblVergangen->setText(tr("seit %1 s").arg(elapsed_.elapsed() / 1000));
}

void InfoWindow::ShowBusy() { ShowProgress(0); }

void InfoWindow::ShowProgress(int maximum) {
  ctlFortschritt->setRange(0, maximum);
  ctlFortschritt->setValue(0);
  ctlFortschritt->show();
}

void InfoWindow::SetProgress(int value) { ctlFortschritt->setValue(value); }

void InfoWindow::HideProgress() { ctlFortschritt->hide(); }

void InfoWindow::End() {
  second_.stop();
  stop_ = nullptr;
  HideProgress();
  hide();
}

}  // namespace kelvo
