#include "twin_page/twin_panel.h"

#include <QDateTime>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

#include "twin/words.h"
#include "widgets/display_picture.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr QSize kNobody(240, 128);
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

PixelMap TwinPixels(const Twin* twin) {
  if (twin == nullptr) return {kNobody.width(), kNobody.height()};
  const sim::Screen& display = twin->terminal.Display();
  return twin->knowledge.KnowsCursor() ? display.Picture(true) : display.Pixels();
}

Certainty TwinCertainty(const Twin* twin) {
  return twin != nullptr && twin->Certain() ? Certainty::Certain : Certainty::Doubted;
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

TwinPanel::TwinPanel(Twins& twins, TwinNames names, std::function<std::optional<int>()> absent,
                     std::function<bool()> silent, QWidget* parent)
    : QWidget(parent),
      twins_(twins),
      names_(std::move(names)),
      absent_(std::move(absent)),
      silent_(std::move(silent)),
      follower_(twins, *this, [this] { ShowTwin(); }) {
  setFocusPolicy(Qt::ClickFocus);
  setAccessibleName(tr("Anzeige (Nachbildung)"));
  lblAnzeigeWer = Named(new QLabel, "lblAnzeigeWer");
  lblAnzeigeWer->setAccessibleName(tr("Wessen Anzeige das ist"));
  lblAnzeigeWer->setTextFormat(Qt::PlainText);
  lblAnzeigeWer->setWordWrap(true);
  ctlAnzeigeBild = Named(new DisplayPicture(DisplayPicture::TooLarge::Claims), "ctlAnzeigeBild");
  ctlAnzeigeBild->setAccessibleName(tr("Nachbildung der Anzeige"));
  ctlAnzeigeBild->Show(TwinPixels(nullptr), TwinCertainty(nullptr));
  lblAnzeigeStand = Named(new QLabel, "lblAnzeigeStand");
  lblAnzeigeStand->setAccessibleName(tr("Worauf die Nachbildung beruht"));
  lblAnzeigeStand->setTextFormat(Qt::PlainText);
  lblAnzeigeStand->setWordWrap(true);
  lblAnzeigeStand->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblAnzeigeStand->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* const body = new QWidget;
  sides_ = new QBoxLayout(QBoxLayout::LeftToRight, body);
  sides_->setContentsMargins({});
  sides_->addWidget(ctlAnzeigeBild, 0, Qt::AlignTop);
  sides_->addWidget(lblAnzeigeStand, 1);
  room_ = new QScrollArea;
  room_->setFrameShape(QFrame::NoFrame);
  room_->setFocusPolicy(Qt::NoFocus);
  room_->setWidgetResizable(true);
  room_->setWidget(body);
  auto* const column = new QVBoxLayout(this);
  column->addWidget(lblAnzeigeWer);
  column->addWidget(room_, 1);
}

void TwinPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

// At the bottom of the window the words stand beside the picture, at its side below.
void TwinPanel::Arrange() {
  const bool wide = width() > height() * 3 / 2;
  sides_->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  sides_->setAlignment(ctlAnzeigeBild, wide ? Qt::AlignTop : Qt::Alignment());
  ctlAnzeigeBild->SetRoomHeight(wide ? room_->height() : QWIDGETSIZE_MAX);
}

void TwinPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  follower_.Show();
}

// Who has handed over still shows what it showed.
QString TwinPanel::Who(std::optional<int> absent) const {
  const auto address = twins_.PresentAddress();
  const bool silent = silent_ && silent_();
  if (absent && absent == address && !silent) return tr("keines gewählt");
  if (!address) return tr("das Terminal, das gerade hört");
  const QString name = TwinName(*address, names_);
  return absent && absent != address ? tr("%1 (zuletzt gewählt)").arg(name) : name;
}

void TwinPanel::ShowTwin() {
  const auto absent = absent_ ? absent_() : std::nullopt;
  const bool nobody = absent && absent == twins_.PresentAddress();
  const Twin* const twin = nobody ? nullptr : twins_.Present();
  lblAnzeigeWer->setText(tr("Nachbildung: %1").arg(Who(absent)));
  ctlAnzeigeBild->Show(TwinPixels(twin), TwinCertainty(twin));
  lblAnzeigeStand->setText(
      nobody ? tr("Unbekannt, weil unter Adresse %1 niemand geantwortet hat.").arg(*absent)
             : TwinText(twin));
}

}  // namespace kelvo
