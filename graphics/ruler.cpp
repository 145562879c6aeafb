#include "graphics/ruler.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace kelvo {

namespace {

constexpr int kFinestMarks = 4;  // screen pixels from mark to mark
constexpr int kGap = 8;          // between a number and the next mark
constexpr int kMarkLength = 4;

QFont SmallFont(QFont font) {
  font.setPointSizeF(font.pointSizeF() * 0.8);
  return font;
}

}  // namespace

int RulerStep(int zoom, int room) {
  for (int tens = 1;; tens *= 10) {
    for (const int step : {tens, 2 * tens, 5 * tens}) {
      if (step * zoom >= room) return step;
    }
  }
}

Ruler::Ruler(Qt::Orientation along, const DrawingCanvas& canvas, const Counting& counting,
             QWidget* parent)
    : QWidget(parent), along_(along), canvas_(canvas), counting_(counting) {
  setFont(SmallFont(font()));
  setSizePolicy(Across() ? QSizePolicy::Ignored : QSizePolicy::Fixed,
                Across() ? QSizePolicy::Fixed : QSizePolicy::Ignored);
}

QSize Ruler::sizeHint() const {
  const int numbers = fontMetrics().horizontalAdvance(QStringLiteral("0000"));
  return Across() ? QSize(0, fontMetrics().height() + kMarkLength)
                  : QSize(numbers + kMarkLength, 0);
}

void Ruler::SetPointer(Point p) {
  if (pointer_ == p) return;
  pointer_ = p;
  update();
}

// The canvas moves when it is scrolled and grows when it is zoomed.
bool Ruler::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Move || event->type() == QEvent::Resize) update();
  return QWidget::eventFilter(watched, event);
}

// Of the pixel at a position along the ruler, as the operator counts.
int Ruler::NumberAt(int position) const {
  const QPoint here = Across() ? QPoint(position, 0) : QPoint(0, position);
  const Point p =
      counting_.Shown(canvas_.ToDrawing(canvas_.mapFrom(window(), mapTo(window(), here))));
  return Across() ? p.x : p.y;
}

// What the pixel with this number covers of the ruler.
QRect Ruler::Span(int number) const {
  const Point p = counting_.Stored({number, number});
  const QRect pixel = canvas_.RectOf({p.x, p.y, p.x, p.y});
  const QPoint at = mapFrom(window(), canvas_.mapTo(window(), pixel.topLeft()));
  return Across() ? QRect(at.x(), 0, pixel.width(), height())
                  : QRect(0, at.y(), width(), pixel.height());
}

void Ruler::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window));
  if (pointer_) {
    const Point p = counting_.Shown(*pointer_);
    painter.fillRect(Span(Across() ? p.x : p.y), palette().color(QPalette::Highlight));
  }
  painter.setPen(palette().color(QPalette::WindowText));
  const int room = kGap + (Across() ? fontMetrics().horizontalAdvance(QStringLiteral("0000"))
                                    : fontMetrics().height());
  const int step = RulerStep(canvas_.Zoom(), room);
  const auto [first, last] =
      std::minmax({NumberAt(0), NumberAt(Across() ? width() - 1 : height() - 1)});
  const int end = Across() ? canvas_.DisplayWidth() : canvas_.DisplayHeight();
  const int fine = RulerStep(canvas_.Zoom(), kFinestMarks);
  for (int number = std::max(0, first - 1); number <= std::min(last, end - 1); ++number) {
    if (number % step == 0 || number % fine == 0) PaintMark(painter, number, step);
  }
}

// At the pixel's edge where counting begins.
void Ruler::PaintMark(QPainter& painter, int number, int step) const {
  const QRect span = Span(number);
  const bool upward = !Across() && !counting_.LikeCommands();
  const int at = Across() ? span.left() : upward ? span.bottom() : span.top();
  const int length = number % step == 0 ? 2 * kMarkLength : kMarkLength;
  if (Across()) {
    painter.drawLine(at, height() - length, at, height());
  } else {
    painter.drawLine(width() - length, at, width(), at);
  }
  if (number % step != 0) return;
  const QString text = QString::number(number);
  const int textWidth = fontMetrics().horizontalAdvance(text);
  if (Across()) {
    painter.drawText(at + 3, fontMetrics().ascent(), text);
  } else {
    painter.drawText(width() - kMarkLength - textWidth,
                     upward ? at - 2 : at + fontMetrics().ascent() + 1, text);
  }
}

}  // namespace kelvo
