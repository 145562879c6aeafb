#include "simulator/picture.h"

#include <QBuffer>
#include <QByteArray>
#include <string_view>

#include "simulator/files.h"

namespace kelvo::sim {
namespace {

constexpr QRgb kGround = qRgb(0xC8, 0xD6, 0xA8);
constexpr QRgb kDullGround = qRgb(0x9D, 0xA3, 0x92);
constexpr QRgb kDot = qRgb(0x1C, 0x2A, 0x38);
constexpr int kMargin = 4;  // dots
constexpr int kPngScale = 3;

void FillDot(QImage& image, int x, int y, int scale) {
  const int side = scale >= 3 ? scale - 1 : scale;
  for (int row = 0; row < side; ++row) {
    QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y + row)) + x;
    std::fill(line, line + side, kDot);
  }
}

}  // namespace

QSize LcdImageSize(const PixelMap& pixels, int scale) {
  return QSize(pixels.Width() + 2 * kMargin, pixels.Height() + 2 * kMargin) * scale;
}

QImage LcdImage(const PixelMap& pixels, int scale, bool powered) {
  QImage image(LcdImageSize(pixels, scale), QImage::Format_RGB32);
  image.fill(powered ? kGround : kDullGround);
  if (!powered) return image;
  for (int y = 0; y < pixels.Height(); ++y) {
    for (int x = 0; x < pixels.Width(); ++x) {
      if (pixels.At(x, y)) FillDot(image, (x + kMargin) * scale, (y + kMargin) * scale, scale);
    }
  }
  return image;
}

bool WriteLcdPng(const PixelMap& pixels, bool powered, const std::string& path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) return false;
  if (!LcdImage(pixels, kPngScale, powered).save(&buffer, "PNG")) return false;
  return ReplaceFile(path,
                     std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace kelvo::sim
