#include "settings/macro_picture.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// As the simulator shows it: dark dots on a light ground.
constexpr QRgb kGround = qRgb(0xC8, 0xD6, 0xA8);
constexpr QRgb kDot = qRgb(0x1C, 0x2A, 0x38);
constexpr int kFrame = 1;  // on each side, outside of the picture

}  // namespace

MacroPicture::MacroPicture(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  Show(PixelMap(1, 1));
}

void MacroPicture::Show(const PixelMap& pixels) {
  if (image_.width() != pixels.Width() || image_.height() != pixels.Height()) {
    image_ = QImage(pixels.Width(), pixels.Height(), QImage::Format_RGB32);
    updateGeometry();
  }
  for (int y = 0; y < pixels.Height(); ++y) {
    auto* const row = reinterpret_cast<QRgb*>(image_.scanLine(y));
    for (int x = 0; x < pixels.Width(); ++x) row[x] = pixels.At(x, y) ? kDot : kGround;
  }
  update();
}

QSize MacroPicture::sizeHint() const {
  return image_.size() / devicePixelRatioF() + QSize(2 * kFrame, 2 * kFrame);
}

// A large display is shown smaller where there is no room for it.
QSize MacroPicture::minimumSizeHint() const { return {120, 64}; }

// Screen pixels for one of the display's, which on a fine screen are smaller than the window's.
double MacroPicture::Scale(QSizeF room) const {
  const double ratio = devicePixelRatioF();
  const QSizeF inside = room - QSizeF(2 * kFrame, 2 * kFrame);
  const double fits =
      std::min(inside.width() * ratio / image_.width(), inside.height() * ratio / image_.height());
  return fits < 1 ? fits : std::floor(fits);
}

int MacroPicture::heightForWidth(int width) const {
  const double scale = Scale({static_cast<double>(width), QWIDGETSIZE_MAX});
  return static_cast<int>(std::ceil(image_.height() * scale / devicePixelRatioF())) + 2 * kFrame;
}

void MacroPicture::paintEvent(QPaintEvent*) {
  const double scale = Scale(size());
  const QSizeF drawn = QSizeF(image_.size()) * scale / devicePixelRatioF();
  const QRectF place({std::floor((width() - drawn.width()) / 2), kFrame}, drawn);
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1);
  painter.fillRect(place.adjusted(-kFrame, -kFrame, kFrame, kFrame), palette().mid());
  painter.drawImage(place, image_);
}

}  // namespace kelvo
