#include "twin_page/twin_picture.h"

#include <QPainter>
#include <algorithm>

namespace kelvo {
namespace {

// As the simulator shows it: dark dots on a light ground.
constexpr QRgb kGround = qRgb(0xC8, 0xD6, 0xA8);
constexpr QRgb kDullGround = qRgb(0xB4, 0xB8, 0xAC);
constexpr QRgb kDot = qRgb(0x1C, 0x2A, 0x38);
constexpr QRgb kDullDot = qRgb(0x5C, 0x64, 0x6A);
constexpr QSize kNobody(240, 128);
constexpr int kFrame = 1;  // on each side, outside of the picture

}  // namespace

QImage TwinImage(const Twin* twin) {
  if (twin == nullptr) {
    QImage nothing(kNobody, QImage::Format_RGB32);
    nothing.fill(kDullGround);
    return nothing;
  }
  const bool certain = twin->Certain();
  const sim::Screen& display = twin->terminal.Display();
  const PixelMap pixels = twin->knowledge.KnowsCursor() ? display.Picture(true) : display.Pixels();
  QImage image(pixels.Width(), pixels.Height(), QImage::Format_RGB32);
  for (int y = 0; y < pixels.Height(); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < pixels.Width(); ++x) {
      row[x] = pixels.At(x, y) ? (certain ? kDot : kDullDot) : (certain ? kGround : kDullGround);
    }
  }
  return image;
}

void PaintDoubt(QPainter& painter, const QRect& place) {
  painter.fillRect(place, QBrush(QColor(0x50, 0x50, 0x50, 0x90), Qt::BDiagPattern));
}

TwinPicture::TwinPicture(QWidget* parent) : QWidget(parent), image_(TwinImage(nullptr)) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void TwinPicture::Show(const Twin* twin) {
  const QSize before = image_.size();
  image_ = TwinImage(twin);
  doubted_ = twin == nullptr || !twin->Certain();
  if (image_.size() != before) updateGeometry();
  update();
}

void TwinPicture::SetRoomHeight(int height) {
  if (height == roomHeight_) return;
  roomHeight_ = height;
  updateGeometry();
}

// Where only the width limits it, it takes what there is.
QSize TwinPicture::sizeHint() const {
  if (roomHeight_ == QWIDGETSIZE_MAX) return minimumSizeHint();
  return (QSizeF(image_.size()) * Scale(QWIDGETSIZE_MAX)).toSize() + QSize(2 * kFrame, 2 * kFrame);
}

QSize TwinPicture::minimumSizeHint() const {
  return image_.size() / devicePixelRatioF() + QSize(2 * kFrame, 2 * kFrame);
}

// In screen pixels, which on a fine screen are smaller than the window's.
double TwinPicture::Scale(int width) const {
  const double ratio = devicePixelRatioF();
  const double wide = (width - 2 * kFrame) * ratio / image_.width();
  const double high = (roomHeight_ - 2 * kFrame) * ratio / image_.height();
  return std::max(1, static_cast<int>(std::min(wide, high))) / ratio;
}

int TwinPicture::heightForWidth(int width) const {
  return static_cast<int>(image_.height() * Scale(width)) + 2 * kFrame;
}

void TwinPicture::paintEvent(QPaintEvent*) {
  const QRectF place(QPointF(kFrame, kFrame), QSizeF(image_.size()) * Scale(width()));
  QPainter painter(this);
  painter.fillRect(place.adjusted(-kFrame, -kFrame, kFrame, kFrame), palette().mid());
  painter.drawImage(place, image_);
  if (doubted_) PaintDoubt(painter, place.toAlignedRect());
}

}  // namespace kelvo
