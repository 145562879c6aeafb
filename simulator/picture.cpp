#include "simulator/picture.h"

#include <QBuffer>
#include <QByteArray>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "graphics/raster.h"
#include "simulator/files.h"

namespace kelvo::sim {
namespace {

constexpr QRgb kGround = qRgb(0xC8, 0xD6, 0xA8);
constexpr QRgb kDullGround = qRgb(0x9D, 0xA3, 0x92);
constexpr QRgb kDot = qRgb(0x1C, 0x2A, 0x38);
constexpr int kMargin = 4;  // dots
constexpr int kPngScale = 3;

// The wall is drawn without the desktop's fonts, which a program without a window does not have.
constexpr QRgb kWall = qRgb(0x6E, 0x76, 0x7E);
constexpr int kGap = 12;  // pixels
constexpr int kCaptionHeight = 20;
constexpr int kCaptionFont = 3;

void FillDot(QImage& image, int x, int y, int scale) {
  const int side = scale >= 3 ? scale - 1 : scale;
  for (int row = 0; row < side; ++row) {
    QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y + row)) + x;
    std::fill(line, line + side, kDot);
  }
}

QSize LargestTile(const std::vector<WallTile>& wall) {
  QSize largest(0, 0);
  for (const WallTile& tile : wall) largest = largest.expandedTo(LcdImageSize(tile.pixels, 1));
  return largest;
}

void PlaceDots(QImage& image, QPoint corner, const PixelMap& dots) {
  for (int y = 0; y < dots.Height(); ++y) {
    for (int x = 0; x < dots.Width(); ++x) {
      if (dots.At(x, y)) image.setPixel(corner + QPoint(x, y), qRgb(255, 255, 255));
    }
  }
}

void PlaceImage(QImage& image, QPoint corner, const QImage& part) {
  for (int y = 0; y < part.height(); ++y) {
    const QRgb* const from = reinterpret_cast<const QRgb*>(part.constScanLine(y));
    QRgb* const to = reinterpret_cast<QRgb*>(image.scanLine(corner.y() + y)) + corner.x();
    std::copy(from, from + part.width(), to);
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

QImage WallImage(const std::vector<WallTile>& wall, const DeviceFonts& fonts) {
  if (wall.size() == 1) return LcdImage(wall[0].pixels, kPngScale, wall[0].powered);
  const QSize place = LargestTile(wall) + QSize(kGap, kGap + kCaptionHeight);
  const int columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(wall.size()))));
  const int rows = (static_cast<int>(wall.size()) + columns - 1) / columns;
  QImage image(place.width() * columns + kGap, place.height() * rows + kGap, QImage::Format_RGB32);
  image.fill(kWall);
  for (int i = 0; i < static_cast<int>(wall.size()); ++i) {
    const WallTile& tile = wall[static_cast<std::size_t>(i)];
    const QPoint corner(kGap + i % columns * place.width(), kGap + i / columns * place.height());
    PixelMap caption(place.width() - kGap, kCaptionHeight);
    DrawText(caption, fonts, 0, 0, tile.caption, {{.font = kCaptionFont}});
    PlaceDots(image, corner, caption);
    PlaceImage(image, corner + QPoint(0, kCaptionHeight), LcdImage(tile.pixels, 1, tile.powered));
  }
  return image;
}

bool WriteWallPng(const std::vector<WallTile>& wall, const DeviceFonts& fonts,
                  const std::string& path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) return false;
  if (!WallImage(wall, fonts).save(&buffer, "PNG")) return false;
  return ReplaceFile(path,
                     std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace kelvo::sim
