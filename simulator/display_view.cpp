#include "simulator/display_view.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "simulator/picture.h"

namespace kelvo::sim {
namespace {

// A room as wide as the widest display at its real size, or a small one three times as large.
constexpr int kComfortableWidth = 744;

// What the keyboard sends for a key; nothing for keys without a character of the Terminal.
QByteArray Characters(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) return QByteArray(1, '\r');
  QByteArray characters;
  for (const QChar character : event.text()) {
    if (character.unicode() > 255) return {};
    characters += static_cast<char>(character.unicode());
  }
  return characters;
}

}  // namespace

DisplayView::DisplayView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void DisplayView::Show(const PixelMap& picture, bool powered) {
  if (picture == picture_ && powered == powered_) return;
  const bool resized = picture.Width() != picture_.Width() || picture.Height() != picture_.Height();
  picture_ = picture;
  powered_ = powered;
  imageScale_ = 0;
  if (resized) updateGeometry();
  update();
}

QSize DisplayView::SizeAt(double scale) const {
  const QSize dots = LcdImageSize(picture_, 1);
  return {static_cast<int>(std::ceil(dots.width() * scale)),
          static_cast<int>(std::ceil(dots.height() * scale))};
}

QSize DisplayView::sizeHint() const {
  return SizeAt(std::max(1, kComfortableWidth / LcdImageSize(picture_, 1).width()));
}

QSize DisplayView::minimumSizeHint() const { return SizeAt(1.0 / devicePixelRatioF()); }

// In screen pixels, which on a fine screen are smaller than the window's.
int DisplayView::Scale() const {
  const QSize dots = LcdImageSize(picture_, 1);
  const double ratio = devicePixelRatioF();
  const double scale = std::min(width() * ratio / dots.width(), height() * ratio / dots.height());
  return std::max(1, static_cast<int>(scale));
}

void DisplayView::paintEvent(QPaintEvent*) {
  const int scale = Scale();
  if (scale != imageScale_) {
    image_ = LcdImage(picture_, scale, powered_);
    image_.setDevicePixelRatio(devicePixelRatioF());
    imageScale_ = scale;
  }
  const QSizeF size = image_.deviceIndependentSize();
  const QRectF place(
      QPointF(std::floor((width() - size.width()) / 2), std::floor((height() - size.height()) / 2)),
      size);
  QPainter painter(this);
  painter.drawImage(place.topLeft(), image_);
  painter.setPen(
      QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2 : 1));
  painter.drawRect(place.adjusted(0, 0, -1, -1));
}

void DisplayView::keyPressEvent(QKeyEvent* event) {
  const QByteArray characters = Characters(*event);
  if (characters.isEmpty()) {
    QWidget::keyPressEvent(event);
  } else {
    Q_EMIT Typed(characters);
  }
}

}  // namespace kelvo::sim
