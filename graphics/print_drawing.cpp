#include "graphics/print_drawing.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPrinter>
#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

constexpr double kTextMm = 4;  // height of a line
constexpr double kGapMm = 3;   // between drawing and text
constexpr double kFrameMm = 0.2;
constexpr double kMmPerInch = 25.4;

// All black stretches as one path: squares of their own would show seams where they meet.
QPainterPath BlackOf(const QImage& pixels, QPointF topLeft, double side) {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  const auto black = [&](int x, int y) { return qGray(pixels.pixel(x, y)) < 128; };
  for (int y = 0; y < pixels.height(); ++y) {
    for (int x = 0; x < pixels.width();) {
      const int from = x;
      while (x < pixels.width() && black(x, y)) ++x;
      if (x > from) {
        path.addRect(topLeft.x() + from * side, topLeft.y() + y * side, (x - from) * side, side);
      }
      x = std::max(x, from + 1);
    }
  }
  return path;
}

QString SizeText(QSize pixels, double pixelMm) {
  const QLocale german(QLocale::German);
  const auto mm = [&](int count) { return german.toString(count * pixelMm, 'f', 1); };
  return QCoreApplication::translate("PrintDrawing", "%1 x %2 Punkte, gedruckt %3 x %4 mm")
      .arg(pixels.width())
      .arg(pixels.height())
      .arg(mm(pixels.width()), mm(pixels.height()));
}

}  // namespace

void PaintPage(QPainter& painter, const QRectF& page, double unitsPerMm,
               const PrintedDrawing& drawing) {
  const QSize size = drawing.pixels.size();
  const double frame = std::max(1.0, kFrameMm * unitsPerMm);
  const double line = kTextMm * unitsPerMm;
  const double textHeight = kGapMm * unitsPerMm + 2 * line;
  const double room = std::min((page.width() - 2 * frame) / size.width(),
                               (page.height() - textHeight - 2 * frame) / size.height());
  const double side = std::max(1.0, std::floor(room));
  const QSizeF shown(size.width() * side, size.height() * side);
  const QPointF topLeft(std::floor(page.center().x() - shown.width() / 2),
                        page.top() + std::ceil(frame));
  painter.fillPath(BlackOf(drawing.pixels, topLeft, side), Qt::black);
  painter.setPen(QPen(Qt::black, frame, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  const double beside = frame / 2;
  painter.drawRect(QRectF(topLeft, shown).adjusted(-beside, -beside, beside, beside));

  QFont font = painter.font();
  font.setPixelSize(std::max(1, static_cast<int>(line * 3 / 4)));
  painter.setFont(font);
  QRectF text(page.left(), topLeft.y() + shown.height() + kGapMm * unitsPerMm, page.width(), line);
  const QString name = QFontMetricsF(font).elidedText(drawing.name, Qt::ElideMiddle, text.width());
  painter.drawText(text, Qt::AlignHCenter | Qt::AlignVCenter, name);
  text.translate(0, line);
  painter.drawText(text, Qt::AlignHCenter | Qt::AlignVCenter, SizeText(size, side / unitsPerMm));
}

bool PrintDrawing(QPrinter& printer, const PrintedDrawing& drawing) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  const QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
  PaintPage(painter, QRectF({0, 0}, page), printer.resolution() / kMmPerInch, drawing);
  return painter.end() && printer.printerState() != QPrinter::Error;
}

}  // namespace kelvo
