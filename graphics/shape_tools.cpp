#include "graphics/shape_tools.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "graphics/editing.h"
#include "graphics/flood_fill.h"
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

Point Tool::ToGrid(Point p) const { return Snapped(p, surface_.GridStep()); }

// A direction or a shape that is kept decides alone.
Point Tool::Snap(const ToolEvent& event) const {
  const Point p = event.at;
  const SnapLines::Snap snap =
      event.shift ? SnapLines::Snap() : SnapOf(event, {p.x, p.y, p.x, p.y}, false);
  surface_.ShowSnapPlaces(snap.held);
  const Point grid = ToGrid(p);
  return {snap.held.x ? p.x + snap.dx : grid.x, snap.held.y ? p.y + snap.dy : grid.y};
}

SnapLines::Snap Tool::SnapOf(const ToolEvent& event, const Box& box, bool withoutSelected) const {
  const auto reach = surface_.SnapReach();
  if (!reach || event.control) return {};
  if (!lines_) lines_.emplace(surface_.Current(), surface_.Display(), withoutSelected);
  return lines_->Of(box, *reach);
}

void Tool::EndSnapping() {
  lines_.reset();
  surface_.ShowSnapPlaces({});
}

Drawing Tool::WithObject(DrawingObject object) const {
  Drawing drawing = surface_.Current();
  SelectAll(drawing, false);
  object.selected = true;
  drawing.push_back(std::move(object));
  return drawing;
}

Drawing Tool::WithStroke(DrawingObject object) const {
  Drawing drawing = WithObject(std::move(object));
  drawing.back().selected = false;
  return drawing;
}

bool Tool::Escape() {
  const bool begun = Begun();
  Cancel();
  return begun;
}

bool Tool::StepBack() {
  const bool begun = Begun();
  if (begun) Cancel();
  return begun;
}

void DragTool::Press(const ToolEvent& event) {
  start_ = Snap(event);
  state_ = State::Dragging;
}

void DragTool::Drag(const ToolEvent& event) {
  if (state_ == State::Dragging) surface_.Show(WithObject(ObjectTo(event)));
}

// A click without a way draws nothing: it was meant to select, or was a slip.
void DragTool::Release(const ToolEvent& event) {
  if (std::exchange(state_, State::Idle) == State::Idle) return;
  if (Snap(event) == start_) {
    surface_.GiveUp();
  } else {
    surface_.Commit(WithObject(ObjectTo(event)));
  }
  EndSnapping();
}

void DragTool::Cancel() {
  if (std::exchange(state_, State::Idle) == State::Dragging) surface_.GiveUp();
  EndSnapping();
}

DrawingObject DragTool::ObjectTo(const ToolEvent& event) const {
  const Point end = Snap(event);
  if (kind_ == Kind::Line) {
    DrawingObject line;
    line.kind = kind_;
    line.penMode = surface_.Style().penMode;
    line.vertices = {start_, event.shift ? Straight(start_, end) : end};
    return line;
  }
  const Point corner = event.shift ? Square(start_, end) : end;
  return ObjectIn({std::min(start_.x, corner.x), std::min(start_.y, corner.y),
                   std::max(start_.x, corner.x), std::max(start_.y, corner.y)});
}

DrawingObject DragTool::ObjectIn(const Box& box) const {
  const ObjectStyle style = surface_.Style();
  DrawingObject object;
  object.kind = kind_;
  object.penMode = style.penMode;
  object.filled = style.filled;
  SetCorners(object, box);
  return object;
}

DrawingObject CurveTool::ObjectIn(const Box& box) const {
  const ObjectStyle style = surface_.Style();
  DrawingObject object;
  object.kind = Kind::Polyline;
  object.penMode = style.penMode;
  object.vertices = arc_ ? EllipseArc(box, style.curve) : RoundedRectangle(box, style.curve.radius);
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

bool PolylineTool::EndsAt(const ToolEvent& event) const {
  return !points_.empty() && points_.back() == Next(event);
}

void PolylineTool::Finish() {
  EndSnapping();
  const std::vector<Point> points = std::exchange(points_, {});
  if (points.size() > 1) {
    surface_.Commit(WithObject(ObjectOf(points)));
  } else {
    surface_.GiveUp();
  }
}

bool PolylineTool::StepBack() {
  if (points_.empty()) return false;
  points_.pop_back();
  points_.empty() ? surface_.GiveUp() : surface_.Show(WithObject(ObjectOf(points_)));
  return true;
}

bool PolylineTool::Escape() {
  const bool begun = Begun();
  Finish();
  return begun;
}

void PolylineTool::Cancel() {
  EndSnapping();
  points_.clear();
  surface_.GiveUp();
}

Point PolylineTool::Next(const ToolEvent& event) const {
  const Point p = Snap(event);
  return event.shift && !points_.empty() ? Straight(points_.back(), p) : p;
}

DrawingObject PolylineTool::ObjectOf(std::vector<Point> points) const {
  DrawingObject object;
  object.kind = Kind::Polyline;
  object.penMode = surface_.Style().penMode;
  object.vertices = std::move(points);
  return object;
}

void FreehandTool::Press(const ToolEvent& event) {
  points_ = {event.at};
  surface_.Show(WithObject(Object()));
}

void FreehandTool::Drag(const ToolEvent& event) {
  if (points_.empty() || points_.back() == event.at) return;
  points_.push_back(event.at);
  surface_.Show(WithObject(Object()));
}

void FreehandTool::Release(const ToolEvent& event) {
  if (points_.empty()) return;
  Drag(event);
  Drawing drawing = WithStroke(Object());
  points_.clear();
  surface_.Commit(std::move(drawing));
}

void FreehandTool::Cancel() {
  points_.clear();
  surface_.GiveUp();
}

DrawingObject FreehandTool::Object() const {
  DrawingObject object;
  object.kind = points_.size() > 1 ? Kind::Polyline : Kind::Line;
  object.penMode = penMode_;
  object.vertices = points_;
  if (points_.size() == 1) object.vertices.push_back(points_.front());
  return object;
}

void FillTool::Press(const ToolEvent& event) {
  auto fill = MakeFill(surface_.Pixels(), event.at, surface_.Style().penMode);
  if (fill) surface_.Commit(WithStroke(std::move(*fill)));
}

void TextTool::Release(const ToolEvent& event) {
  const auto hit = ObjectAt(surface_.Current(), event.at, 0);
  if (hit && surface_.Current()[*hit].kind == Kind::Text) return EditText(surface_, *hit, event.at);
  const Point topLeft = ToGrid(event.at);
  Drawing drawing = WithObject(MakeText(topLeft, surface_.Style().text, {}, surface_.Fonts()));
  const std::size_t index = drawing.size() - 1;
  surface_.TypeText(std::move(drawing), index, topLeft);
}

void EditText(ToolSurface& surface, std::size_t index, Point at) {
  Drawing drawing = surface.Current();
  SelectAll(drawing, false);
  drawing[index].selected = true;
  surface.TypeText(std::move(drawing), index, at);
}

std::unique_ptr<Tool> MakeTool(ToolKind kind, ToolSurface& surface) {
  switch (kind) {
    case ToolKind::Line:
      return std::make_unique<DragTool>(surface, Kind::Line);
    case ToolKind::Rectangle:
      return std::make_unique<DragTool>(surface, Kind::Rectangle);
    case ToolKind::Ellipse:
      return std::make_unique<DragTool>(surface, Kind::Ellipse);
    case ToolKind::RoundedRectangle:
      return std::make_unique<CurveTool>(surface, false);
    case ToolKind::Arc:
      return std::make_unique<CurveTool>(surface, true);
    case ToolKind::Polyline:
      return std::make_unique<PolylineTool>(surface);
    case ToolKind::Pencil:
      return std::make_unique<FreehandTool>(surface, PenMode::Draw);
    case ToolKind::Eraser:
      return std::make_unique<FreehandTool>(surface, PenMode::Erase);
    case ToolKind::Text:
      return std::make_unique<TextTool>(surface);
    case ToolKind::Fill:
      return std::make_unique<FillTool>(surface);
    case ToolKind::Select:
      break;
  }
  return std::make_unique<SelectTool>(surface);
}

}  // namespace kelvo
