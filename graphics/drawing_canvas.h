#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "graphics/device_font.h"
#include "graphics/drawing_document.h"
#include "graphics/keyboard_hand.h"
#include "graphics/pixel_map.h"
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
  std::int64_t BlackThreshold() const { return threshold_; }
  void SetGrid(int step, bool shown);
  void SetTool(Tool* tool, Qt::CursorShape cursor);
  void SetRubberBand(std::optional<Box> box);
  /// The keyboard's cross, while it is shown.
  std::optional<Point> Cross() const { return hand_.Shown() ? hand_.At() : std::nullopt; }
  /// The lines that hold what is dragged.
  void SetSnapPlaces(const SnapPlaces& places);
  /// Grips would hide the letters of a text that is being typed.
  void ShowGrips(bool shown);
  /// How near a click must come to what is drawn, in Terminal pixels: at every zoom as near on the
  /// screen.
  double Tolerance() const { return kHitReach / zoom_; }
  /// How near to a line it must come to snap to it, likewise.
  double SnapReach() const { return kSnapReach / zoom_; }

  /// The pixel under a position of the widget.
  Point ToDrawing(QPointF position) const;
  /// The middle of a Terminal pixel on the widget.
  QPoint ToWidget(Point p) const;
  /// What a box of Terminal pixels covers on the widget.
  QRect RectOf(const Box& box) const;
  QSize sizeHint() const override;

 Q_SIGNALS:
  void Pointed(Point p);
  /// Ctrl and the wheel: steps up (positive) or down, with the pointer at `position`.
  void ZoomWanted(int steps, QPointF position);
  /// An arrow key, for what is selected: the way in Terminal pixels.
  void MoveWanted(int dx, int dy);
  /// Tab: to the next object, or the one before.
  void WalkWanted(bool forward);
  /// Escape, with nothing begun: the tool is put down.
  void ToolLeft();
  /// Backspace: the last step of what is begun.
  void BackWanted();
  /// The view moves by this way, in screen pixels.
  void PanWanted(QPoint way);
  /// The pointer was dragged there, or the cross moved, in positions of the widget.
  void Dragged(QPoint at);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  static constexpr double kHitReach = 5;   // screen pixels
  static constexpr double kSnapReach = 6;  // screen pixels
  // Terminal pixels around the display, to take hold of what leaves it.
  static constexpr int kMargin = 6;

  const Drawing& All() const { return document_.InGroup() ? whole_ : document_.Shown(); }
  void RenderPixels();
  void TintUnsent(const PixelMap& sent);
  void PaintPixels(QPainter& painter, const QRect& area);
  void PaintGrid(QPainter& painter, const QRect& area) const;
  void PaintUnsent(QPainter& painter) const;
  void PaintSelection(QPainter& painter) const;
  void PaintGrips(QPainter& painter) const;
  void PaintCross(QPainter& painter) const;
  void PaintSnapPlaces(QPainter& painter) const;
  ToolEvent EventAt(const QMouseEvent& event) const;
  bool Pans(const QMouseEvent& event);
  void UseMouse(const QMouseEvent& event);
  bool Arrow(const QKeyEvent& event);
  void ShowHold();
  bool WalkPoints(bool next);
  void MoveCross(int dx, int dy);
  void ShowCross();
  void Enter(const QKeyEvent& event);
  void Resized();

  DrawingDocument& document_;
  const DeviceFonts& fonts_;
  Tool* tool_ = nullptr;
  KeyboardHand hand_;
  std::optional<QPoint> mouse_;  // where it was last, on the screen
  Qt::CursorShape toolCursor_ = Qt::ArrowCursor;
  int width_ = 0;
  int height_ = 0;
  int zoom_ = 1;
  std::int64_t threshold_ = 0;
  int wheelTurn_ = 0;  // eighths of a degree, less than a step
  int gridStep_ = 1;
  bool gridShown_ = false;
  bool spaceHeld_ = false;        // the left button moves the view
  std::optional<QPoint> panned_;  // where the pointer was last, on the screen
  std::optional<Box> rubberBand_;
  SnapPlaces snapPlaces_;
  Drawing whole_;  // what is shown around an open group, and of it
  QImage pixels_;
  bool gripsShown_ = true;
  bool stale_ = true;  // pixels_ shows an older drawing
};

}  // namespace kelvo
