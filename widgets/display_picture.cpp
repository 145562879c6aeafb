#include "widgets/display_picture.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// As the simulator shows it: dark dots on a light ground.
constexpr QRgb kGround = qRgb(0xC8, 0xD6, 0xA8);
constexpr QRgb kDullGround = qRgb(0xB4, 0xB8, 0xAC);
constexpr QRgb kDot = qRgb(0x1C, 0x2A, 0x38);
constexpr QRgb kDullDot = qRgb(0x5C, 0x64, 0x6A);
constexpr QSize kLeast(120, 64);
constexpr int kFrame = 1;       // on each side, outside of the picture
constexpr double kTiny = 1e-6;  // what a division may lack of a whole number

}  // namespace

QImage DisplayImage(const PixelMap& pixels, Certainty certainty) {
  const bool dull = certainty == Certainty::Doubted;
  const QRgb dot = dull ? kDullDot : kDot;
  const QRgb ground = dull ? kDullGround : kGround;
  QImage image(pixels.Width(), pixels.Height(), QImage::Format_RGB32);
  for (int y = 0; y < pixels.Height(); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < pixels.Width(); ++x) row[x] = pixels.At(x, y) ? dot : ground;
  }
  return image;
}

void PaintDoubt(QPainter& painter, const QRect& place) {
  painter.fillRect(place, QBrush(QColor(0x50, 0x50, 0x50, 0x90), Qt::BDiagPattern));
}

DisplayPicture::DisplayPicture(TooLarge tooLarge, QWidget* parent)
    : QWidget(parent), tooLarge_(tooLarge), image_(DisplayImage(PixelMap(1, 1))) {
  QSizePolicy policy(QSizePolicy::Preferred,
                     tooLarge == TooLarge::Shrinks ? QSizePolicy::Preferred : QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void DisplayPicture::Show(const PixelMap& pixels, Certainty certainty) {
  const QSize before = image_.size();
  image_ = DisplayImage(pixels, certainty);
  certainty_ = certainty;
  if (image_.size() != before) updateGeometry();
  update();
}

void DisplayPicture::SetRoomHeight(int height) {
  if (height == roomHeight_) return;
  roomHeight_ = height;
  updateGeometry();
}

// Screen pixels for one of the display's, which on a fine screen are smaller than the window's.
double DisplayPicture::Scale(QSize room) const {
  const double ratio = devicePixelRatioF();
  const double wide = (room.width() - 2 * kFrame) * ratio / image_.width();
  const double high = (std::min(room.height(), roomHeight_) - 2 * kFrame) * ratio / image_.height();
  const double fits = std::min(wide, high);
  if (fits >= 1) return std::floor(fits + kTiny);
  return tooLarge_ == TooLarge::Shrinks ? fits : 1;
}

QSize DisplayPicture::SizeAt(double scale) const {
  const QSizeF size = QSizeF(image_.size()) * scale / devicePixelRatioF();
  return QSize(static_cast<int>(std::ceil(size.width() - kTiny)),
               static_cast<int>(std::ceil(size.height() - kTiny))) +
         QSize(2 * kFrame, 2 * kFrame);
}

// Where only the width limits it, it takes what there is.
QSize DisplayPicture::sizeHint() const {
  if (roomHeight_ == QWIDGETSIZE_MAX) return SizeAt(1);
  return SizeAt(Scale({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}));
}

QSize DisplayPicture::minimumSizeHint() const {
  return tooLarge_ == TooLarge::Shrinks ? kLeast : SizeAt(1);
}

int DisplayPicture::heightForWidth(int width) const {
  return SizeAt(Scale({width, QWIDGETSIZE_MAX})).height();
}

// In the middle of what is too wide for it where it gives way, as no words stand beside it there.
void DisplayPicture::paintEvent(QPaintEvent*) {
  const double scale = Scale(size());
  const QSizeF drawn = QSizeF(image_.size()) * scale / devicePixelRatioF();
  const bool centred = tooLarge_ == TooLarge::Shrinks;
  const double left = centred ? std::floor((width() - drawn.width()) / 2) : kFrame;
  const QRectF place({left, kFrame}, drawn);
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1);
  painter.fillRect(place.adjusted(-kFrame, -kFrame, kFrame, kFrame), palette().mid());
  painter.drawImage(place, image_);
  if (certainty_ == Certainty::Doubted) PaintDoubt(painter, place.toAlignedRect());
}

}  // namespace kelvo
