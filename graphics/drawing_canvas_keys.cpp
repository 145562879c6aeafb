#include <QKeyEvent>
#include <algorithm>

#include "graphics/drawing_canvas.h"
#include "graphics/editing.h"
#include "graphics/grips.h"
#include "graphics/points.h"

// The keys of the drawing surface.

namespace kelvo {

// F2 is a tool's key, too, but not where something can be opened.
bool DrawingCanvas::event(QEvent* event) {
  const bool opens = hasFocus() && event->type() == QEvent::ShortcutOverride &&
                     static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
  if (opens) event->accept();
  return opens || QWidget::event(event);
}

void DrawingCanvas::keyPressEvent(QKeyEvent* event) {
  if (Arrow(*event)) return;
  switch (event->key()) {
    case Qt::Key_Escape:
      if (tool_ == nullptr || tool_->Escape()) return;
      hand_.Hide();
      update();
      return Q_EMIT ToolLeft();
    case Qt::Key_Backspace:
      return Q_EMIT BackWanted();
    case Qt::Key_Space:
      if (hand_.Shown() && tool_->Use() == ToolUse::Choose) Enter(*event);
      spaceHeld_ = true;
      return setCursor(Qt::OpenHandCursor);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Enter(*event);
    case Qt::Key_F2:
      if (tool_ != nullptr && !tool_->Open()) Q_EMIT ToolLeft();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

// Arrows move what is selected while that is what the tool is for, else the cross; with Ctrl always
// the cross.
bool DrawingCanvas::Arrow(const QKeyEvent& event) {
  constexpr int kLargeStep = 10;
  static constexpr struct {
    int key, dx, dy;
  } kArrows[] = {
      {Qt::Key_Left, -1, 0}, {Qt::Key_Right, 1, 0}, {Qt::Key_Up, 0, 1}, {Qt::Key_Down, 0, -1}};
  const auto* const arrow = std::find_if(std::begin(kArrows), std::end(kArrows),
                                         [&](const auto& row) { return row.key == event.key(); });
  if (arrow == std::end(kArrows) || tool_ == nullptr) return false;
  const int step = event.modifiers().testFlag(Qt::ShiftModifier) ? kLargeStep : 1;
  const bool selection = tool_->Use() == ToolUse::Choose && AnySelected(document_.Current()) &&
                         !event.modifiers().testFlag(Qt::ControlModifier);
  if (selection) {
    Q_EMIT MoveWanted(arrow->dx * step, arrow->dy * step);
  } else {
    MoveCross(arrow->dx * step, arrow->dy * step);
  }
  return true;
}

// It begins where the mouse was last, or in the middle of what is seen.
void DrawingCanvas::MoveCross(int dx, int dy) {
  const Point from = hand_.At().value_or(ToDrawing(visibleRegion().boundingRect().center()));
  hand_.MoveTo({std::clamp(from.x + dx, -kMargin, width_ + kMargin - 1),
                std::clamp(from.y + dy, -kMargin, height_ + kMargin - 1)});
  ShowCross();
}

void DrawingCanvas::ShowCross() {
  Q_EMIT Pointed(*hand_.At());
  Q_EMIT Dragged(ToWidget(*hand_.At()));
  update();
}

// With the mouse in use it opens what is selected, or ends what is begun; at the cross it is the
// mouse's button.
void DrawingCanvas::Enter(const QKeyEvent& event) {
  if (tool_ == nullptr || event.isAutoRepeat()) return;
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  if (!hand_.Shown() && tool_->Begun()) return tool_->Finish();
  if (tool_->Use() == ToolUse::Choose && !control) {
    const Drawing& drawing = document_.Current();
    const auto grip =
        hand_.Shown() ? GripAt(drawing, *hand_.At(), Tolerance()) : std::optional<Grip>();
    const auto hit = hand_.Shown() ? ObjectAt(drawing, *hand_.At(), Tolerance()) : std::nullopt;
    const bool onPoint = grip && grip->vertex;
    if (!onPoint && (hit ? drawing[*hit].selected : !hand_.Shown()) && tool_->Open()) return;
    if (!hand_.Shown() && AnySelected(drawing)) return;
  }
  if (!hand_.At()) MoveCross(0, 0);
  hand_.Enter(event.modifiers().testFlag(Qt::ShiftModifier), control);
  ShowCross();
}

void DrawingCanvas::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) {
    return QWidget::keyReleaseEvent(event);
  }
  spaceHeld_ = false;
  setCursor(toolCursor_);
}

// From a picked point to the next one, round and round.
bool DrawingCanvas::WalkPoints(bool next) {
  const auto picked = document_.Picked();
  const auto lines = OnlyWithPoints(document_.Current());
  if (!picked || !lines) return false;
  const std::size_t count = document_.Current()[*lines].vertices.size();
  document_.Pick((*picked + (next ? 1 : count - 1)) % count);
  return true;
}

// Tab walks the points of an opened object, else the objects; behind the last object it goes on to
// the next control.
bool DrawingCanvas::focusNextPrevChild(bool next) {
  if (hasFocus() && WalkPoints(next)) return true;
  const Drawing& drawing = document_.Current();
  const bool atEnd = drawing.empty() || (next ? drawing.back().selected : drawing.front().selected);
  if (atEnd || !hasFocus()) return QWidget::focusNextPrevChild(next);
  if (tool_ != nullptr && tool_->Use() == ToolUse::Choose) hand_.Hide();
  Q_EMIT WalkWanted(next);
  return true;
}

}  // namespace kelvo
