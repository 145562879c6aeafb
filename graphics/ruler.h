#pragma once

#include <QWidget>
#include <optional>

#include "graphics/counting.h"
#include "graphics/drawing_canvas.h"

namespace kelvo {

/// The display's pixels, counted along an edge of the canvas, with a mark where the pointer is.
class Ruler : public QWidget {
  Q_OBJECT

 public:
  /// Canvas and counting must outlive the ruler.
  Ruler(Qt::Orientation along, const DrawingCanvas& canvas, const Counting& counting,
        QWidget* parent = nullptr);

  void SetPointer(Point p);
  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool Across() const { return along_ == Qt::Horizontal; }
  int NumberAt(int position) const;
  QRect Span(int number) const;
  void PaintMark(QPainter& painter, int number, int step) const;

  Qt::Orientation along_;
  const DrawingCanvas& canvas_;
  const Counting& counting_;
  std::optional<Point> pointer_;
};

/// Pixels from one number on a ruler to the next, so that numbers of `room` screen pixels keep
/// apart at this zoom: 1, 2 or 5 times a power of ten.
int RulerStep(int zoom, int room);

}  // namespace kelvo
