#include "graphics/drawing_canvas.h"

#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "graphics/editing.h"
#include "graphics/grips.h"
#include "graphics/painter.h"
#include "graphics/pixel_image.h"

namespace kelvo {

namespace {

constexpr int kFinestGrid = 6;             // screen pixels; a finer grid would hide the drawing
constexpr std::size_t kMaxOutlines = 200;  // outlines of more objects would only be a tangle
constexpr int kGripReach = 3;              // screen pixels from a grip's middle to its edge
constexpr int kMaxWidgetSide = 32700;
const QColor kSelectionColour(0x1e, 0x6f, 0xd9);
const QColor kUnsentColour(0xd0, 0x60, 0x00);
const QColor kUnsentSet(0xe8, 0xa0, 0x58);
const QColor kUnsentCleared(0x6e, 0x40, 0x18);
const QColor kCrossColour(0xc4, 0x18, 0x4a);
const QColor kDimmedColour(0xb8, 0xb8, 0xb8);
const QColor kSnapColour(0xd0, 0x20, 0x90);

}  // namespace

DrawingCanvas::DrawingCanvas(DrawingDocument& document, const DeviceFonts& fonts, QWidget* parent)
    : QWidget(parent), document_(document), fonts_(fonts) {
  setObjectName(QStringLiteral("Display"));
  setAccessibleName(QStringLiteral("Zeichenfläche"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  connect(&document_, &DrawingDocument::Changed, this, [this] {
    stale_ = true;
    update();
    ShowHold();
  });
}

void DrawingCanvas::SetDisplaySize(int width, int height) {
  width_ = width;
  height_ = height;
  hand_.Hide();
  zoom_ = std::min(zoom_, MaxZoom());
  Resized();
}

// The sides are compared as text, like the fields in which they are typed: deliberate. "64" counts
// as larger than "128", so such a display can be enlarged further.
int DrawingCanvas::MaxZoom() const {
  const int larger = std::to_string(width_) > std::to_string(height_) ? width_ : height_;
  return std::max(1, kMaxWidgetSide / std::max(1, larger));
}

void DrawingCanvas::SetZoom(int zoom) {
  zoom_ = std::clamp(zoom, 1, MaxZoom());
  Resized();
}

void DrawingCanvas::SetBlackThreshold(std::int64_t threshold) {
  if (threshold == threshold_) return;
  threshold_ = threshold;
  stale_ = true;
  update();
}

void DrawingCanvas::SetGrid(int step, bool shown) {
  gridStep_ = step;
  gridShown_ = shown;
  update();
}

void DrawingCanvas::SetTool(Tool* tool, Qt::CursorShape cursor) {
  tool_ = tool;
  hand_.Take(tool);
  toolCursor_ = cursor;
  setCursor(cursor);
}

void DrawingCanvas::SetRubberBand(std::optional<Box> box) {
  rubberBand_ = box;
  update();
}

void DrawingCanvas::SetSnapPlaces(const SnapPlaces& places) {
  if (places == snapPlaces_) return;
  snapPlaces_ = places;
  update();
}

void DrawingCanvas::ShowGrips(bool shown) {
  gripsShown_ = shown;
  update();
}

Point DrawingCanvas::ToDrawing(QPointF position) const {
  const int x = static_cast<int>(std::floor(position.x() / zoom_)) - kMargin;
  const int y = static_cast<int>(std::floor(position.y() / zoom_)) - kMargin;
  return {x, height_ - 1 - y};
}

QPoint DrawingCanvas::ToWidget(Point p) const {
  return {(p.x + kMargin) * zoom_ + zoom_ / 2, (height_ - 1 - p.y + kMargin) * zoom_ + zoom_ / 2};
}

QSize DrawingCanvas::sizeHint() const {
  return {(width_ + 2 * kMargin) * zoom_, (height_ + 2 * kMargin) * zoom_};
}

void DrawingCanvas::Resized() {
  stale_ = true;
  setFixedSize(sizeHint());
  updateGeometry();
  update();
}

QRect DrawingCanvas::RectOf(const Box& box) const {
  return {(box.left + kMargin) * zoom_, (height_ - 1 - box.top + kMargin) * zoom_,
          box.Width() * zoom_, box.Height() * zoom_};
}

void DrawingCanvas::RenderPixels() {
  if (!std::exchange(stale_, false)) return;
  if (document_.InGroup()) whole_ = document_.ShownWhole();
  PixelMap map(width_, height_);
  PaintDrawing(map, All(), fonts_, threshold_);
  pixels_ = ToImage(map);
  TintUnsent(map);
  if (!document_.InGroup()) return;
  // Around an open group all is dimmed.
  PixelMap own(width_, height_);
  PaintDrawing(own, document_.Shown(), fonts_, threshold_);
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) {
      if (map.At(x, y) && !own.At(x, y)) pixels_.setPixel(x, y, kDimmedColour.rgb());
    }
  }
}

// What vertex shapes would set or clear if they were sent, as a picture of them will.
void DrawingCanvas::TintUnsent(const PixelMap& sent) {
  if (CountKind(All(), Kind::Vertices) == 0) return;
  PixelMap all(width_, height_);
  PaintDrawing(all, All(), fonts_, threshold_, Unsent::Drawn);
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) {
      if (all.At(x, y) == sent.At(x, y)) continue;
      pixels_.setPixel(x, y, (all.At(x, y) ? kUnsentSet : kUnsentCleared).rgb());
    }
  }
}

void DrawingCanvas::paintEvent(QPaintEvent* event) {
  RenderPixels();
  QPainter painter(this);
  painter.fillRect(event->rect(), palette().color(QPalette::Mid));
  PaintPixels(painter, event->rect());
  if (gridShown_ && gridStep_ * zoom_ >= kFinestGrid) PaintGrid(painter, event->rect());
  PaintUnsent(painter);
  PaintSelection(painter);
  PaintSnapPlaces(painter);
  if (hasFocus()) {
    PaintCross(painter);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(RectOf({0, 0, width_ - 1, height_ - 1}).adjusted(-2, -2, 1, 1));
  }
}

// Only the pixels that lie in the area: a large zoom would otherwise enlarge the whole display.
void DrawingCanvas::PaintPixels(QPainter& painter, const QRect& area) {
  const QRect display = RectOf({0, 0, width_ - 1, height_ - 1});
  const QRect visible = area.intersected(display).translated(-display.topLeft());
  if (visible.isEmpty()) return;
  const QPoint first(visible.left() / zoom_, visible.top() / zoom_);
  const QPoint last(visible.right() / zoom_, visible.bottom() / zoom_);
  const QRect source(first, last);
  painter.drawImage(QRect(display.topLeft() + first * zoom_, source.size() * zoom_), pixels_,
                    source);
}

void DrawingCanvas::PaintGrid(QPainter& painter, const QRect& area) const {
  painter.setPen(QColor(0, 0, 0, 40));
  const int step = std::max(1, gridStep_);
  const QRect display = RectOf({0, 0, width_ - 1, height_ - 1}).intersected(area);
  for (int x = 0; x <= width_; x += step) {
    const int at = (x + kMargin) * zoom_;
    if (at >= area.left() && at <= area.right()) {
      painter.drawLine(at, display.top(), at, display.bottom());
    }
  }
  for (int y = 0; y <= height_; y += step) {
    const int at = (height_ - y + kMargin) * zoom_;
    if (at >= area.top() && at <= area.bottom()) {
      painter.drawLine(display.left(), at, display.right(), at);
    }
  }
}

// Vertex shapes are part of the drawing, but the Terminal never sees them.
void DrawingCanvas::PaintUnsent(QPainter& painter) const {
  painter.setPen(QPen(kUnsentColour, 1, Qt::DashLine));
  const auto paint = [&](const DrawingObject& object) {
    if (object.kind != Kind::Vertices) return;
    QPolygon polygon;
    for (const Point& p : object.vertices) polygon << ToWidget(p);
    painter.drawPolygon(polygon);
  };
  for (const DrawingObject& object : All()) ForEachMember(object, paint);
}

void DrawingCanvas::PaintSelection(QPainter& painter) const {
  painter.setBrush(Qt::NoBrush);
  if (document_.InGroup()) {
    painter.setPen(QPen(kSelectionColour, 1, Qt::DotLine));
    painter.drawRect(RectOf(BoundsOf(document_.Shown())).adjusted(-5, -5, 4, 4));
  }
  painter.setPen(QPen(kSelectionColour, 1, Qt::DashLine));
  const bool few = SelectedCount(document_.Shown()) <= kMaxOutlines;
  const auto outline = [&](const Box& box) {
    painter.drawRect(RectOf(box).adjusted(-1, -1, 0, 0));
  };
  for (const DrawingObject& object : document_.Shown()) {
    if (few && object.selected) outline(BoundsOf(object));
  }
  if (!few) outline(SelectionBounds(document_.Shown()));
  if (rubberBand_) painter.drawRect(RectOf(*rubberBand_));
  if (gripsShown_) PaintGrips(painter);
}

// Where the points of a line are crowded, as of a stroke of the pencil, its ends are enough.
void DrawingCanvas::PaintGrips(QPainter& painter) const {
  const std::vector<Grip> grips = GripsOf(document_.Shown(), Tolerance());
  const bool crowded = GripsCrowded(document_.Shown(), Tolerance());
  painter.setPen(kSelectionColour);
  const QPoint reach(kGripReach, kGripReach);
  for (std::size_t i = 0; i < grips.size(); ++i) {
    const bool picked = grips[i].vertex && grips[i].vertex == document_.Picked();
    if (crowded && !picked && i > 0 && i + 1 < grips.size()) continue;
    painter.setBrush(picked ? QBrush(kSelectionColour) : crowded ? QBrush() : QBrush(Qt::white));
    const QPoint middle = ToWidget(grips[i].at);
    painter.drawRect(QRect(middle - reach, middle + reach));
  }
}

// Thin, with a rim that keeps it visible on black; the pixel itself stays free.
void DrawingCanvas::PaintCross(QPainter& painter) const {
  if (!hand_.Shown()) return;
  constexpr int kArm = 12;  // screen pixels
  const Point at = *hand_.At();
  const QRect pixel = RectOf({at.x, at.y, at.x, at.y}).adjusted(-1, -1, 0, 0);
  const QPoint middle = pixel.center();
  const QLine arms[] = {{pixel.left() - kArm, middle.y(), pixel.left(), middle.y()},
                        {pixel.right(), middle.y(), pixel.right() + kArm, middle.y()},
                        {middle.x(), pixel.top() - kArm, middle.x(), pixel.top()},
                        {middle.x(), pixel.bottom(), middle.x(), pixel.bottom() + kArm}};
  painter.setBrush(Qt::NoBrush);
  for (const QPen& pen : {QPen(Qt::white, 3), QPen(kCrossColour, 1)}) {
    painter.setPen(pen);
    painter.drawLines(arms, static_cast<int>(std::size(arms)));
    painter.drawRect(pixel);
  }
}

// Places count half pixels from the middle of the first one.
void DrawingCanvas::PaintSnapPlaces(QPainter& painter) const {
  painter.setPen(kSnapColour);
  const auto middle = [this](int halves) { return (halves + 1 + 2 * kMargin) * zoom_ / 2; };
  if (snapPlaces_.x) painter.drawLine(middle(*snapPlaces_.x), 0, middle(*snapPlaces_.x), height());
  if (!snapPlaces_.y) return;
  const int y = middle(2 * (height_ - 1) - *snapPlaces_.y);
  painter.drawLine(0, y, width(), y);
}

ToolEvent DrawingCanvas::EventAt(const QMouseEvent& event) const {
  return {ToDrawing(event.position()), event.modifiers().testFlag(Qt::ShiftModifier),
          event.modifiers().testFlag(Qt::ControlModifier),
          event.modifiers().testFlag(Qt::AltModifier)};
}

// The middle button, or the left one while the blank is held, moves the view.
bool DrawingCanvas::Pans(const QMouseEvent& event) {
  const bool begins =
      event.type() == QEvent::MouseButtonPress &&
      (event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && spaceHeld_));
  if (!begins && !panned_) return false;
  const QPoint at = event.globalPosition().toPoint();
  if (panned_ && event.type() == QEvent::MouseMove) Q_EMIT PanWanted(at - *panned_);
  panned_ = event.type() == QEvent::MouseButtonRelease ? std::nullopt : std::optional(at);
  return true;
}

void DrawingCanvas::mousePressEvent(QMouseEvent* event) {
  if (tool_ == nullptr || Pans(*event)) return;
  if (hand_.Shown()) update();
  if (event->button() == Qt::LeftButton) hand_.MousePressed(ToDrawing(event->position()));
  if (event->button() == Qt::LeftButton) tool_->Press(EventAt(*event));
  if (event->button() == Qt::RightButton) tool_->Finish();
}

void DrawingCanvas::mouseMoveEvent(QMouseEvent* event) {
  Q_EMIT Pointed(ToDrawing(event->position()));
  if (tool_ == nullptr || Pans(*event)) return;
  UseMouse(*event);
  if (event->buttons().testFlag(Qt::LeftButton)) {
    Q_EMIT Dragged(event->position().toPoint());
    tool_->Drag(EventAt(*event));
  } else if (!hand_.Draws()) {
    tool_->Hover(EventAt(*event));
    ShowHold();
  }
}

// The pointer's shape where the mouse is; while something is dragged it stays.
void DrawingCanvas::ShowHold() {
  constexpr Qt::CursorShape kShapes[] = {Qt::ArrowCursor,    Qt::SizeAllCursor, Qt::CrossCursor,
                                         Qt::SizeHorCursor,  Qt::SizeVerCursor, Qt::SizeBDiagCursor,
                                         Qt::SizeFDiagCursor};  // in the order of HoldKind
  if (!mouse_ || tool_ == nullptr || tool_->Begun() || panned_ || spaceHeld_) return;
  const HoldKind hold = tool_->HoldAt(ToDrawing(mapFromGlobal(QPointF(*mouse_))));
  setCursor(hold == HoldKind::Nothing ? toolCursor_ : kShapes[static_cast<int>(hold)]);
}

// The view that follows the cross goes away under a mouse that lies still.
void DrawingCanvas::UseMouse(const QMouseEvent& event) {
  const QPoint at = event.globalPosition().toPoint();
  if (std::exchange(mouse_, at) == at) return;
  if (hand_.Shown()) update();
  hand_.MouseMoved(ToDrawing(event.position()));
}

void DrawingCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (Pans(*event)) return;
  if (tool_ != nullptr && event->button() == Qt::LeftButton) tool_->Release(EventAt(*event));
  ShowHold();
}

void DrawingCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (tool_ != nullptr && event->button() == Qt::LeftButton) tool_->DoubleClick(EventAt(*event));
}

void DrawingCanvas::wheelEvent(QWheelEvent* event) {
  if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    const QPoint turn = event->angleDelta();  // some systems turn it sideways themselves
    Q_EMIT PanWanted({(turn.x() + turn.y()) / 4, 0});
    return event->accept();
  }
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    event->ignore();  // scrolls
    return;
  }
  wheelTurn_ += event->angleDelta().y();  // touchpads send parts of a step
  const int steps = wheelTurn_ / QWheelEvent::DefaultDeltasPerStep;
  wheelTurn_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) Q_EMIT ZoomWanted(steps, event->position());
  event->accept();
}

}  // namespace kelvo
