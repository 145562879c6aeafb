#include "graphics/tool_icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

namespace kelvo {

namespace {

constexpr int Side = 24;

void PaintArrow(QPainter& painter) {
  painter.setBrush(painter.pen().color());
  painter.drawPolygon(
      QPolygon({{7, 3}, {7, 18}, {11, 14}, {14, 20}, {16, 19}, {13, 13}, {18, 13}}));
}

void PaintTool(QPainter& painter, ToolKind kind) {
  switch (kind) {
    case ToolKind::Select:
      return PaintArrow(painter);
    case ToolKind::Line:
      return painter.drawLine(4, 19, 19, 4);
    case ToolKind::Rectangle:
      return painter.drawRect(4, 6, 15, 12);
    case ToolKind::Ellipse:
      return painter.drawEllipse(4, 6, 15, 12);
    case ToolKind::Polyline:
      return painter.drawPolyline(QPolygon({{3, 18}, {9, 6}, {14, 15}, {20, 5}}));
    case ToolKind::Text: {
      QFont font = painter.font();
      font.setPixelSize(18);
      font.setBold(true);
      painter.setFont(font);
      return painter.drawText(QRect(0, 0, Side, Side), Qt::AlignCenter, QStringLiteral("A"));
    }
  }
}

}  // namespace

QIcon ToolIcon(ToolKind kind) {
  QPixmap pixmap(Side, Side);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QGuiApplication::palette().color(QPalette::ButtonText), 1.6));
  PaintTool(painter, kind);
  return {pixmap};
}

}  // namespace kelvo
