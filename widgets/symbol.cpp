#include "widgets/symbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QString>
#include <QTextStream>

namespace kelvo {
namespace {

// The side of the square that the strokes below are drawn in.
constexpr qreal kSide = 24;
constexpr qreal kStrokeWidth = 1.7;

// M x y: the pen goes there. L x y: a line. A x y w h from sweep: an arc of the ellipse in this
// box, degrees counter-clockwise from three o'clock. E x y w h: a whole ellipse. R x y w h: a
// rectangle. Z: back to where the stroke began.
const char* Strokes(Symbol symbol) {
  switch (symbol) {
    case Symbol::Danger:
      return "M 12 3 L 22 20.5 L 2 20.5 Z M 12 9.5 L 12 14.5 M 12 17.3 L 12 17.8";
    case Symbol::Restart:
      return "A 4 4 16 16 40 300 M 18.7 2.5 L 18.2 7 L 13.7 6.4";
    case Symbol::BitmapToEEprom:
      return "R 3 3 11 9 M 3 10 L 7 6.5 L 10 9.5 L 11.5 8 L 14 10 M 18 6 L 18 12 M 15.5 9.8 L 18 "
             "12.5 L 20.5 9.8 R 8 15 13 6 M 11 15 L 11 13 M 11 23 L 11 21 M 18 23 L 18 21";
    case Symbol::SaveAsText:
      return "M 5 2.5 L 14 2.5 L 19 7.5 L 19 21.5 L 5 21.5 Z M 14 2.5 L 14 7.5 L 19 7.5 M 8 11.5 "
             "L 16 11.5 M 8 14.5 L 16 14.5 M 8 17.5 L 13 17.5";
    case Symbol::New:
      return "M 19 12 L 19 7.5 L 14 2.5 L 5 2.5 L 5 21.5 L 12 21.5 M 14 2.5 L 14 7.5 L 19 7.5 M "
             "18 14.5 L 18 22.5 M 14 18.5 L 22 18.5";
    case Symbol::Load:
      return "M 2.5 19.5 L 2.5 4.5 L 9 4.5 L 11.5 7 L 19 7 L 19 10.5 M 2.5 19.5 L 6 10.5 L 22 10.5 "
             "L 18.5 19.5 Z";
    case Symbol::Save:
      return "M 3.5 3.5 L 17 3.5 L 20.5 7 L 20.5 20.5 L 3.5 20.5 Z M 7.5 3.5 L 7.5 8.5 L 15.5 8.5 "
             "L "
             "15.5 3.5 R 7 13 10 7.5";
    case Symbol::Send:
      return "R 13 5 8.5 14 M 15.5 8 L 19 8 M 15.5 11 L 19 11 M 2.5 12 L 10.5 12 M 7.5 8.5 L 11 12 "
             "L "
             "7.5 15.5";
    case Symbol::SaveAsMakro:
      return "M 9 3.5 L 3 12 L 9 20.5 M 15 3.5 L 21 12 L 15 20.5 M 12 8 L 12 15.5 M 9.5 13 L 12 "
             "15.8 "
             "L 14.5 13";
    case Symbol::Delete:
      return "M 3.5 6 L 20.5 6 M 9 6 L 9 3 L 15 3 L 15 6 M 5.5 6 L 6.5 21.5 L 17.5 21.5 L 18.5 6 M "
             "10 10 L 10 17.5 M 14 10 L 14 17.5";
    case Symbol::First:
      return "M 6 5 L 6 19 M 18 5 L 10 12 L 18 19";
    case Symbol::Previous:
      return "M 15.5 5 L 7.5 12 L 15.5 19";
    case Symbol::Next:
      return "M 8.5 5 L 16.5 12 L 8.5 19";
    case Symbol::Last:
      return "M 18 5 L 18 19 M 6 5 L 14 12 L 6 19";
    case Symbol::Undo:
      return "M 8.5 4 L 4 8.5 L 8.5 13 M 4 8.5 L 14 8.5 A 8.5 8.5 11 11 90 -180 M 14 19.5 L 8 19.5";
    case Symbol::Redo:
      return "M 15.5 4 L 20 8.5 L 15.5 13 M 20 8.5 L 10 8.5 A 4.5 8.5 11 11 90 180 M 10 19.5 L 16 "
             "19.5";
    case Symbol::Group:
      return "R 5.5 5.5 8 6.5 R 10.5 12 8 6.5 M 2 5.5 L 2 2 L 5.5 2 M 18.5 2 L 22 2 L 22 5.5 M 22 "
             "18.5 L 22 22 L 18.5 22 M 5.5 22 L 2 22 L 2 18.5";
    case Symbol::Grid:
      return "R 3 3 18 18 M 9 3 L 9 21 M 15 3 L 15 21 M 3 9 L 21 9 M 3 15 L 21 15";
    case Symbol::Snap:
      return "M 5 2 L 5 5 M 5 19 L 5 22 R 5 5 15 5.5 R 5 13.5 9 5.5 M 5 10.5 L 5 13.5";
    case Symbol::Picture:
      return "R 2.5 4 19 16 E 6 7.5 3.5 3.5 M 2.5 17 L 9 12.5 L 13 16 L 17 10.5 L 21.5 16";
    case Symbol::Select:
      return "M 7 3 L 7 18 L 11 14.3 L 13.7 20.5 L 16.2 19.4 L 13.6 13.4 L 18.5 13 Z";
    case Symbol::Line:
      return "M 4 20 L 20 4";
    case Symbol::Rectangle:
      return "R 3.5 5.5 17 13";
    case Symbol::Ellipse:
      return "E 3.5 5.5 17 13";
    case Symbol::RoundedRectangle:
      return "M 9 5.5 L 15 5.5 A 9.5 5.5 11 11 90 -90 L 20.5 13 A 9.5 7.5 11 11 0 -90 L 9 18.5 A "
             "3.5 7.5 11 11 270 -90 L 3.5 11 A 3.5 5.5 11 11 180 -90";
    case Symbol::Arc:
      return "A -12 5 30 30 0 90";
    case Symbol::Polyline:
      return "M 3 18.5 L 9 6 L 14.5 15.5 L 21 4.5";
    case Symbol::Pencil:
      return "M 4 20 L 5.5 14.5 L 16 4 L 20 8 L 9.5 18.5 Z M 13.5 6.5 L 17.5 10.5";
    case Symbol::Eraser:
      return "M 9 20 L 3.5 14.5 L 13.5 4.5 L 20.5 11.5 L 12 20 Z M 8.5 9.5 L 15.5 16.5 M 12 20 L "
             "21 20";
    case Symbol::Letter:
      return "M 5 20.5 L 12 3.5 L 19 20.5 M 7.7 14.5 L 16.3 14.5";
    case Symbol::Fill:
      return "M 3 13 L 11.5 4.5 L 19 12 L 10.5 20.5 Z M 11.5 4.5 L 8.5 1.5 M 3 13 L 19 12 M 21 15 "
             "L "
             "21 20.5";
  }
  return "";
}

QPainterPath PathOf(Symbol symbol) {
  QString strokes = QString::fromLatin1(Strokes(symbol));
  QTextStream in(&strokes);
  QPainterPath path;
  QString step;
  qreal x = 0, y = 0, width = 0, height = 0, from = 0, sweep = 0;
  for (in >> step; !step.isEmpty(); in >> step) {
    if (step == u"Z") {
      path.closeSubpath();
      continue;
    }
    in >> x >> y;
    if (step == u"M") {
      path.moveTo(x, y);
    } else if (step == u"L") {
      path.lineTo(x, y);
    } else {
      in >> width >> height;
      const QRectF box(x, y, width, height);
      if (step == u"R") path.addRect(box);
      if (step == u"E") path.addEllipse(box);
      if (step == u"A") {
        in >> from >> sweep;
        path.arcMoveTo(box, from);
        path.arcTo(box, from, sweep);
      }
    }
  }
  return path;
}

class SymbolEngine : public QIconEngine {
 public:
  explicit SymbolEngine(Symbol symbol) : symbol_(symbol), path_(PathOf(symbol)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
    const qreal scale = std::min(rect.width(), rect.height()) / kSide;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.center().x() + 0.5 - scale * kSide / 2,
                       rect.center().y() + 0.5 - scale * kSide / 2);
    painter->scale(scale, scale);
    painter->strokePath(path_, QPen(palette.color(group, role), kStrokeWidth, Qt::SolidLine,
                                    Qt::RoundCap, Qt::RoundJoin));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new SymbolEngine(symbol_); }

 private:
  Symbol symbol_;
  QPainterPath path_;
};

}  // namespace

QIcon SymbolIcon(Symbol symbol) { return QIcon(new SymbolEngine(symbol)); }

}  // namespace kelvo
