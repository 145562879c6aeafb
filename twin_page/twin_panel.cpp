#include "twin_page/twin_panel.h"

#include <QDateTime>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "twin/words.h"
#include "twin_page/twin_picture.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kPause = 100;  // ms, so that a busy line is shown ten times a second at most

std::string Clock(WallTime time) {
  return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count())
      .toString(QStringLiteral("HH:mm:ss"))
      .toStdString();
}

}  // namespace

QString TwinName(int address, const TwinNames& names) {
  const QString name = QString::fromStdString(names(address));
  const QString number = QObject::tr("Adresse %1").arg(address);
  return name.isEmpty() ? number : name + QStringLiteral(", ") + number;
}

QString TwinText(const Twin* twin) {
  if (twin == nullptr) {
    return QObject::tr("Unbekannt, weil mit diesem Terminal noch nicht gesprochen wurde.");
  }
  return QString::fromStdString(TwinWords(*twin, Clock));
}

TwinFollower::TwinFollower(Twins& twins, QWidget& seen, std::function<void()> show)
    : twins_(twins), seen_(seen), show_(std::move(show)) {
  pause_.setSingleShot(true);
  QObject::connect(&pause_, &QTimer::timeout, &seen_, [this] { Show(); });
}

void TwinFollower::Changed() {
  if (seen_.isVisible() && !pause_.isActive()) pause_.start(kPause);
}

void TwinFollower::Show() {
  twins_.CatchUp();
  show_();
  if (twins_.Behind()) Changed();
}

TwinPanel::TwinPanel(Twins& twins, TwinNames names, QWidget* parent)
    : QWidget(parent),
      twins_(twins),
      names_(std::move(names)),
      follower_(twins, *this, [this] { ShowTwin(); }) {
  lblAnzeigeWer = Named(new QLabel, "lblAnzeigeWer");
  lblAnzeigeWer->setAccessibleName(tr("Wessen Anzeige das ist"));
  lblAnzeigeWer->setTextFormat(Qt::PlainText);
  lblAnzeigeWer->setWordWrap(true);
  ctlAnzeigeBild = Named(new TwinPicture, "ctlAnzeigeBild");
  ctlAnzeigeBild->setAccessibleName(tr("Nachbildung der Anzeige"));
  lblAnzeigeStand = Named(new QLabel, "lblAnzeigeStand");
  lblAnzeigeStand->setAccessibleName(tr("Worauf die Nachbildung beruht"));
  lblAnzeigeStand->setTextFormat(Qt::PlainText);
  lblAnzeigeStand->setWordWrap(true);
  lblAnzeigeStand->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblAnzeigeStand->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* const column = new QVBoxLayout(this);
  column->addWidget(lblAnzeigeWer);
  column->addWidget(ctlAnzeigeBild);
  column->addWidget(lblAnzeigeStand);
  column->addStretch(1);
}

void TwinPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  follower_.Show();
}

void TwinPanel::ShowTwin() {
  const Twin* const twin = twins_.Present();
  const auto address = twins_.PresentAddress();
  const QString who = address ? TwinName(*address, names_) : tr("das Terminal, das gerade hört");
  lblAnzeigeWer->setText(tr("Nachbildung: %1").arg(who));
  ctlAnzeigeBild->Show(twin);
  lblAnzeigeStand->setText(TwinText(twin));
}

}  // namespace kelvo
