#include "shell/head_strip.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "base/wire_text.h"
#include "bus/terminal_search.h"
#include "shell/line_words.h"
#include "widgets/form.h"
#include "widgets/tame_text.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr int kLongestVersion = 12;
constexpr int kSeenOfListener = 24;  // characters that are seen in any case

QFrame* Divider() {
  auto* line = new QFrame;
  line->setFrameStyle(QFrame::VLine | QFrame::Sunken);
  return line;
}

// Words that give way in a window that is too narrow for them.
class NarrowLabel : public QLabel {
 public:
  QSize minimumSizeHint() const override {
    return {fontMetrics().averageCharWidth() * 2, QLabel::minimumSizeHint().height()};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QString words = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                          isEnabled(), words, foregroundRole());
  }
};

}  // namespace

HeadStrip::HeadStrip(const LineState& state, QWidget* parent) : QFrame(parent), state_(state) {
  Named(this, "ctlRS485");
  MakeControls();
  MakeLabels();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(LabelFor(ctlUpDownAdrDovu, tr("Adresse:")));
  for (QWidget* part : {static_cast<QWidget*>(ctlUpDownAdrDovu), static_cast<QWidget*>(cmdDovuName),
                        static_cast<QWidget*>(cmdDovuAktivieren)}) {
    row->addWidget(part);
  }
  for (QLabel* words : {lblPort, lblHoerer, lblTerminal, lblAntwort}) {
    row->addWidget(Divider());
    row->addWidget(words);
  }
  // It has what the others leave.
  lblHoerer->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  row->setStretchFactor(lblHoerer, 1);
  row->addWidget(cmdVerbindungPruefen);
  age_.setSingleShot(true);
  connect(&age_, &QTimer::timeout, this, &HeadStrip::ShowAnswer);
  ShowState();
}

void HeadStrip::MakeControls() {
  ctlUpDownAdrDovu = Named(new QSpinBox, "ctlUpDownAdrDovu");
  ctlUpDownAdrDovu->setRange(0, 255);
  ctlUpDownAdrDovu->setToolTip(tr("Adresse am Bus, 0 … 255 (255: alle)"));
  cmdDovuName = Named(new QToolButton, "cmdDovuName");
  cmdDovuName->setArrowType(Qt::DownArrow);
  cmdDovuName->setPopupMode(QToolButton::InstantPopup);
  cmdDovuName->setFocusPolicy(Qt::TabFocus);
  cmdDovuName->setMenu(new QMenu(cmdDovuName));
  cmdDovuName->setAccessibleName(tr("Gespeicherte Terminals"));
  cmdDovuName->setToolTip(
      tr("Ein gespeichertes Terminal: setzt nur die Adresse ein, gesendet wird nichts."));
  cmdDovuAktivieren =
      MakeButton("cmdDovuAktivieren", tr("Terminal wählen"),
                 tr("Von nun an hört das Terminal mit dieser Adresse (255: alle)."));
  cmdVerbindungPruefen =
      MakeButton("cmdVerbindungPruefen", tr("Verbindung prüfen"),
                 tr("Fragt nach Adresse und Version und sagt, was herauskam (F5)."));
  AddShortcut(cmdVerbindungPruefen, QKeySequence(Qt::Key_F5));
}

void HeadStrip::MakeLabels() {
  lblPort = Named(new NarrowLabel, "lblPort");
  lblHoerer = Named(new NarrowLabel, "lblHoerer");
  lblTerminal = Named(new NarrowLabel, "lblTerminal");
  lblAntwort = Named(new NarrowLabel, "lblAntwort");
  for (QLabel* words : {lblPort, lblHoerer, lblTerminal, lblAntwort}) {
    words->setTextFormat(Qt::PlainText);
  }
  lblTerminal->setToolTip(tr("Version des gewählten Terminals, sobald es sie genannt hat"));
}

int HeadStrip::Address() const { return ctlUpDownAdrDovu->value(); }

void HeadStrip::SetAddress(int address) { ctlUpDownAdrDovu->setValue(address); }

void HeadStrip::ShowPort(const QString& text) {
  lblPort->setText(text);
  lblPort->setToolTip(tr("Der Anschluss dieses Rechners: %1").arg(text));
}

void HeadStrip::SetTerminals(std::vector<StoredTerminal> terminals) {
  terminals_ = std::move(terminals);
  cmdDovuName->menu()->clear();
  for (const StoredTerminal& stored : terminals_) {
    const int number = stored.address;
    QString entry = Tamed(Text(stored.name)).replace(u'&', tr("&&"));
    if (stored.name != ResultName(number)) entry = tr("%1 (%2)").arg(entry).arg(number);
    cmdDovuName->menu()->addAction(entry, this, [this, number] { SetAddress(number); });
  }
  cmdDovuName->setEnabled(!terminals_.empty());
  ShowState();
}

std::string HeadStrip::NameOf(int address) const {
  for (const StoredTerminal& stored : terminals_) {
    if (stored.address != address) continue;
    return stored.name == ResultName(address) ? std::string() : stored.name;
  }
  return {};
}

void HeadStrip::ShowState() {
  const auto names = [this](int address) { return NameOf(address); };
  const QString who = Text(ListenerWords(state_, names));
  lblHoerer->setText(who);
  lblHoerer->setToolTip(tr("Wer hört, was gesendet wird: %1").arg(who));
  // Before all else it has to be seen who listens.
  lblHoerer->setMinimumWidth(
      std::min(lblHoerer->fontMetrics().horizontalAdvance(who + u' '),
               lblHoerer->fontMetrics().averageCharWidth() * kSeenOfListener));
  const QString version = Text(ReadableText(state_.Version()));
  lblTerminal->setText(version.isEmpty() ? tr("Version ?")
                                         : tr("Version %1").arg(version.left(kLongestVersion)));
  ShowAnswer();
}

void HeadStrip::ShowAnswer() {
  const QString words = Text(AnswerWords(state_));
  lblAntwort->setText(QString::fromUtf8(AnswerSign(state_)) + u' ' + words);
  lblAntwort->setToolTip(words);
  Watch();
}

QString HeadStrip::Port() const { return lblPort->text(); }

// Words that nobody sees need no time.
void HeadStrip::Watch() {
  const auto last = AnswerWordsLast(state_);
  const bool seen = isVisible() && !window()->isMinimized();
  if (seen && last.count() > 0) {
    age_.start(std::chrono::duration_cast<std::chrono::milliseconds>(last));
  } else {
    age_.stop();
  }
}

void HeadStrip::showEvent(QShowEvent* event) {
  QFrame::showEvent(event);
  window()->installEventFilter(this);
  ShowAnswer();
}

void HeadStrip::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  age_.stop();
}

bool HeadStrip::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowStateChange) ShowAnswer();
  return QFrame::eventFilter(watched, event);
}

}  // namespace kelvo
