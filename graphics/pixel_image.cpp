#include "graphics/pixel_image.h"

#include <QPainter>
#include <algorithm>
#include <utility>
#include <vector>

namespace kelvo {

QImage ToImage(const PixelMap& map) {
  QImage image(map.Width(), map.Height(), QImage::Format_RGB32);
  for (int y = 0; y < map.Height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < map.Width(); ++x) row[x] = map.At(x, y) ? 0xff000000 : 0xffffffff;
  }
  return image;
}

QImage ToImage(const Picture& picture) {
  QImage image(picture.Width(), picture.Height(), QImage::Format_RGB32);
  for (int y = 0; y < picture.Height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < picture.Width(); ++x) {
      const Colour colour = picture.At(x, y);
      row[x] = qRgb(static_cast<int>(colour & 255U), static_cast<int>(colour >> 8 & 255U),
                    static_cast<int>(colour >> 16 & 255U));
    }
  }
  return image;
}

Picture ToPicture(const QImage& image) {
  QImage opaque(image.size(), QImage::Format_RGB32);
  opaque.fill(Qt::white);
  QPainter(&opaque).drawImage(0, 0, image);
  std::vector<Colour> pixels;
  pixels.reserve(static_cast<std::size_t>(image.width()) *
                 static_cast<std::size_t>(image.height()));
  for (int y = 0; y < opaque.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(opaque.constScanLine(y));
    for (int x = 0; x < opaque.width(); ++x) {
      pixels.push_back(
          static_cast<Colour>(qRed(row[x]) | qGreen(row[x]) << 8 | qBlue(row[x]) << 16));
    }
  }
  return {opaque.width(), opaque.height(), std::move(pixels)};
}

std::optional<std::string> ToWireText(const QString& text) {
  if (!FirstForeign(text).isEmpty()) return std::nullopt;
  return text.toLatin1().toStdString();
}

QString PlainForms(QString text) {
  static const std::pair<const char16_t*, const char16_t*> forms[] = {
      {u"\t", u"    "},  {u"\u201E", u"\""}, {u"\u201C", u"\""},  {u"\u201D", u"\""},
      {u"\u201A", u"'"}, {u"\u2018", u"'"},  {u"\u2019", u"'"},   {u"\u2013", u"-"},
      {u"\u2014", u"-"}, {u"\u2212", u"-"},  {u"\u2026", u"..."}, {u"\u2009", u" "},
      {u"\u202F", u" "}, {u"\u00AD", u""},   {u"\u200B", u""},    {u"\uFEFF", u""}};
  for (const auto& [fine, plain] : forms) {
    text.replace(QString::fromUtf16(fine), QString::fromUtf16(plain));
  }
  return text;
}

QString FirstForeign(const QString& text) {
  const auto* const foreign = std::find_if(text.begin(), text.end(), [](QChar c) {
    return c.unicode() < 32 || c.unicode() > 255 || c.unicode() == 127;
  });
  if (foreign == text.end()) return {};
  const bool pair = foreign->isHighSurrogate() && foreign + 1 != text.end();
  return QString(foreign, pair ? 2 : 1);
}

}  // namespace kelvo
