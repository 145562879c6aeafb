#include "graphics/shape_tools.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "graphics/editing.h"
#include "graphics/select_tool.h"

namespace kelvo {

namespace {

int Sign(int value) { return value < 0 ? -1 : 1; }

// The nearest point with equal distances along both axes.
Point Square(Point from, Point to) {
  const int dx = to.x - from.x;
  const int dy = to.y - from.y;
  const int length = std::max(std::abs(dx), std::abs(dy));
  return {from.x + Sign(dx) * length, from.y + Sign(dy) * length};
}

// The nearest direction of eight.
Point Straight(Point from, Point to) {
  const int dx = std::abs(to.x - from.x);
  const int dy = std::abs(to.y - from.y);
  if (dx > 2 * dy) return {to.x, from.y};
  if (dy > 2 * dx) return {from.x, to.y};
  return Square(from, to);
}

}  // namespace

Point Tool::Snap(Point p) const { return Snapped(p, surface_.GridStep()); }

Drawing Tool::WithObject(DrawingObject object) const {
  Drawing drawing = surface_.Current();
  SelectAll(drawing, false);
  object.selected = true;
  drawing.push_back(std::move(object));
  return drawing;
}

void DragTool::Press(const ToolEvent& event) {
  start_ = Snap(event.at);
  state_ = State::Dragging;
}

void DragTool::Drag(const ToolEvent& event) {
  if (state_ == State::Dragging) surface_.Show(WithObject(ObjectTo(event)));
}

// A click without a way draws nothing: it was meant to select, or was a slip.
void DragTool::Release(const ToolEvent& event) {
  if (std::exchange(state_, State::Idle) == State::Idle) return;
  if (Snap(event.at) == start_) {
    surface_.GiveUp();
  } else {
    surface_.Commit(WithObject(ObjectTo(event)));
  }
}

void DragTool::Cancel() {
  if (std::exchange(state_, State::Idle) == State::Dragging) surface_.GiveUp();
}

DrawingObject DragTool::ObjectTo(const ToolEvent& event) const {
  const ObjectStyle style = surface_.Style();
  const Point end = Snap(event.at);
  DrawingObject object;
  object.kind = kind_;
  object.penMode = style.penMode;
  if (kind_ == Kind::Line) {
    object.vertices = {start_, event.shift ? Straight(start_, end) : end};
    return object;
  }
  const Point corner = event.shift ? Square(start_, end) : end;
  object.filled = style.filled;
  SetCorners(object, {std::min(start_.x, corner.x), std::min(start_.y, corner.y),
                      std::max(start_.x, corner.x), std::max(start_.y, corner.y)});
  return object;
}

void PolylineTool::Press(const ToolEvent& event) {
  const Point next = Next(event);
  if (points_.empty() || !(points_.back() == next)) points_.push_back(next);
  surface_.Show(WithObject(ObjectOf(points_)));
}

void PolylineTool::Hover(const ToolEvent& event) {
  if (points_.empty()) return;
  std::vector<Point> points = points_;
  points.push_back(Next(event));
  surface_.Show(WithObject(ObjectOf(std::move(points))));
}

// Its first click has set the last point.
void PolylineTool::DoubleClick(const ToolEvent&) { Finish(); }

void PolylineTool::Finish() {
  const std::vector<Point> points = std::exchange(points_, {});
  if (points.size() > 1) {
    surface_.Commit(WithObject(ObjectOf(points)));
  } else {
    surface_.GiveUp();
  }
}

void PolylineTool::Cancel() {
  points_.clear();
  surface_.GiveUp();
}

Point PolylineTool::Next(const ToolEvent& event) const {
  const Point p = Snap(event.at);
  return event.shift && !points_.empty() ? Straight(points_.back(), p) : p;
}

DrawingObject PolylineTool::ObjectOf(std::vector<Point> points) const {
  DrawingObject object;
  object.kind = Kind::Polyline;
  object.penMode = surface_.Style().penMode;
  object.vertices = std::move(points);
  return object;
}

void TextTool::Release(const ToolEvent& event) {
  const auto hit = ObjectAt(surface_.Current(), event.at, 0);
  if (hit && surface_.Current()[*hit].kind == Kind::Text) {
    EditText(surface_, *hit);
    return;
  }
  const TextAttributes attributes = surface_.Style().text;
  const Point topLeft = Snap(event.at);
  const auto withText = [&](const std::string& text) {
    return WithObject(MakeText(topLeft, attributes, text, surface_.Fonts()));
  };
  surface_.Show(withText({}));  // where it will begin
  const std::optional<std::string> text =
      surface_.AskText({}, [&](const std::string& typed) { surface_.Show(withText(typed)); });
  surface_.GiveUp();
  if (text && !text->empty()) surface_.Commit(withText(*text));
}

void EditText(ToolSurface& surface, std::size_t index) {
  const auto textOf = [](const DrawingObject& o) { return std::pair(o.style, o.text); };
  const auto old = textOf(surface.Current()[index]);
  // Nothing where the drawing has become another one while the operator was asked.
  const auto withText = [&](const std::string& text) -> std::optional<Drawing> {
    Drawing drawing = surface.Current();
    if (index >= drawing.size() || textOf(drawing[index]) != old) return std::nullopt;
    DrawingObject& object = drawing[index];
    object.text = text;
    SetStyle(object, object.style.value_or(TextAttributes()), surface.Fonts());
    return drawing;
  };
  const auto text = surface.AskText(old.second, [&](const std::string& typed) {
    if (auto drawing = withText(typed)) surface.Show(std::move(*drawing));
  });
  surface.GiveUp();
  if (!text || text->empty()) return;
  if (auto drawing = withText(*text)) surface.Commit(std::move(*drawing));
}

std::unique_ptr<Tool> MakeTool(ToolKind kind, ToolSurface& surface) {
  switch (kind) {
    case ToolKind::Line:
      return std::make_unique<DragTool>(surface, Kind::Line);
    case ToolKind::Rectangle:
      return std::make_unique<DragTool>(surface, Kind::Rectangle);
    case ToolKind::Ellipse:
      return std::make_unique<DragTool>(surface, Kind::Ellipse);
    case ToolKind::Polyline:
      return std::make_unique<PolylineTool>(surface);
    case ToolKind::Text:
      return std::make_unique<TextTool>(surface);
    case ToolKind::Select:
      break;
  }
  return std::make_unique<SelectTool>(surface);
}

}  // namespace kelvo
