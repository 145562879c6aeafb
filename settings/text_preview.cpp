#include "settings/text_preview.h"

#include <QImage>
#include <QPainter>
#include <algorithm>

namespace kelvo {
namespace {

constexpr int kLargestScale = 3;
constexpr int kMargin = 2;  // of the Terminal's pixels
constexpr char kExample[] = "Text 123";

// The text up to the next line end, which is taken off `rest` as well; without control characters.
std::string TakeRow(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string row(rest.substr(0, end));
  rest.remove_prefix(std::min(end + 1, rest.size()));
  std::erase_if(row, [](char c) { return static_cast<unsigned char>(c) < 32; });
  return row;
}

// The Terminal's display has its own colours, whatever the desktop's are.
QImage Image(const PixelMap& map) {
  constexpr QRgb set = qRgb(0, 0, 0);
  constexpr QRgb unset = qRgb(255, 255, 255);
  QImage image(map.Width(), map.Height(), QImage::Format_RGB32);
  for (int y = 0; y < map.Height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < map.Width(); ++x) line[x] = map.At(x, y) ? set : unset;
  }
  return image;
}

}  // namespace

TextPreview::TextPreview(const DeviceFonts& fonts, QWidget* parent)
    : QWidget(parent), fonts_(fonts), text_(kExample) {
  setMinimumHeight(fontMetrics().lineSpacing() * 5 / 2);
  setAccessibleName(tr("Vorschau"));
}

void TextPreview::Show(const std::string& text, const TextStyle& style) {
  text_ = text.empty() ? kExample : text;
  style_ = style;
  update();
}

int TextPreview::RowHeight() const {
  const int zoom = std::clamp(style_.zoomY, 1, kMaxZoomY);
  return std::max(fonts_.Font(style_.font).Height() * zoom, 1);
}

// Screen pixels for one of the Terminal's, so that at least one row of text can be seen.
int TextPreview::Scale() const {
  return std::clamp(height() / (RowHeight() + 2 * kMargin), 1, kLargestScale);
}

void TextPreview::DrawRows(PixelMap& map) const {
  std::string_view rest = text_;
  for (int y = kMargin; y < map.Height() && !rest.empty(); y += RowHeight()) {
    DrawText(map, fonts_, kMargin, y, TakeRow(rest), style_);
  }
}

PixelMap TextPreview::Picture(int width, int height) const {
  PixelMap empty(width / 2, height);
  PixelMap filled(width - width / 2, height);
  DrawRectangle(filled, 0, 0, filled.Width() - 1, height - 1, true, Ink::Set);
  DrawRows(empty);
  DrawRows(filled);
  PixelMap picture(width, height);
  DrawBitmap(picture, 0, 0, empty, Ink::Set);
  DrawBitmap(picture, width / 2, 0, filled, Ink::Set);
  return picture;
}

void TextPreview::paintEvent(QPaintEvent*) {
  const int scale = Scale();
  const PixelMap map = Picture(width() / scale + 1, height() / scale + 1);
  QPainter painter(this);
  painter.drawImage(QRect(0, 0, map.Width() * scale, map.Height() * scale), Image(map));
}

}  // namespace kelvo
