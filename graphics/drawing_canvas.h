#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "graphics/device_font.h"
#include "graphics/drawing_document.h"
#include "graphics/tool.h"

namespace kelvo {

/// The drawing surface `Display`: the Terminal's pixels, enlarged, with the selection above them.
/// Mouse and keys go to the tool in hand.
class DrawingCanvas : public QWidget {
  Q_OBJECT

 public:
  /// Document and fonts must outlive the canvas.
  DrawingCanvas(DrawingDocument& document, const DeviceFonts& fonts, QWidget* parent = nullptr);

  /// In Terminal pixels.
  void SetDisplaySize(int width, int height);
  int DisplayWidth() const { return width_; }
  int DisplayHeight() const { return height_; }
  /// Screen pixels per Terminal pixel, 1 up to MaxZoom().
  void SetZoom(int zoom);
  int Zoom() const { return zoom_; }
  /// 32700 divided by the display's side that is larger as text.
  int MaxZoom() const;
  void SetBlackThreshold(std::int64_t threshold);
  void SetGrid(int step, bool shown);
  void SetTool(Tool* tool) { tool_ = tool; }
  void SetRubberBand(std::optional<Box> box);
  /// How near a click must come to an object, in Terminal pixels.
  int Tolerance() const;

  /// The pixel under a position of the widget.
  Point ToDrawing(QPointF position) const;
  /// The middle of a Terminal pixel on the widget.
  QPoint ToWidget(Point p) const;
  QSize sizeHint() const override;

 Q_SIGNALS:
  void Pointed(Point p);
  /// Ctrl and the wheel: steps up (positive) or down, with the pointer at `position`.
  void ZoomWanted(int steps, QPointF position);
  /// An arrow key: the way in Terminal pixels.
  void MoveWanted(int dx, int dy);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QRect RectOf(const Box& box) const;
  void RenderPixels();
  void PaintPixels(QPainter& painter, const QRect& area);
  void PaintGrid(QPainter& painter, const QRect& area) const;
  void PaintUnsent(QPainter& painter) const;
  void PaintSelection(QPainter& painter) const;
  ToolEvent EventAt(const QMouseEvent& event) const;
  void Resized();

  DrawingDocument& document_;
  const DeviceFonts& fonts_;
  Tool* tool_ = nullptr;
  int width_ = 0;
  int height_ = 0;
  int zoom_ = 1;
  std::int64_t threshold_ = 0;
  int wheelTurn_ = 0;  // eighths of a degree, less than a step
  int gridStep_ = 1;
  bool gridShown_ = false;
  std::optional<Box> rubberBand_;
  QImage pixels_;
  bool stale_ = true;  // pixels_ shows an older drawing
};

}  // namespace kelvo
