#include "graphics/select_tool.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "graphics/editing.h"
#include "graphics/points.h"

namespace kelvo {

void SelectTool::Press(const ToolEvent& event) {
  start_ = event.at;
  unselectOnRelease_.reset();
  unselectAllOnRelease_ = false;
  selectOnRelease_.reset();
  while (surface_.InGroup() && IsBeside(event.at)) surface_.LeaveGroup();
  if (event.alt && PressBelow(event.at)) return;
  const Drawing& drawing = surface_.Current();
  if (const auto grip = GripAt(drawing, event.at, surface_.Tolerance())) {
    grip_ = *grip;
    state_ = State::Resizing;
    surface_.PickPoint(grip_.vertex);
  } else if (const auto index = ObjectAt(drawing, event.at, surface_.Tolerance())) {
    PressOnObject(*index, event.control || event.shift);
    state_ = State::Pressed;
  } else if (!event.control && !event.shift && InsideSelected(drawing, event.at)) {
    unselectAllOnRelease_ = true;
    state_ = State::Pressed;
  } else {
    Drawing unselected = drawing;
    if (!event.control && !event.shift) SelectAll(unselected, false);
    surface_.Select(std::move(unselected));
    state_ = State::RubberBand;
  }
}

HoldKind SelectTool::HoldAt(Point p) const {
  const Drawing& drawing = surface_.Current();
  if (const auto grip = GripAt(drawing, p, surface_.Tolerance())) {
    if (grip->vertex) return HoldKind::Point;
    if (grip->edgeX == 0) return HoldKind::Vertical;
    if (grip->edgeY == 0) return HoldKind::Horizontal;
    return grip->edgeX == grip->edgeY ? HoldKind::Rising : HoldKind::Falling;
  }
  const auto index = ObjectAt(drawing, p, surface_.Tolerance());
  const bool inside = index ? drawing[*index].selected : InsideSelected(drawing, p);
  return inside ? HoldKind::Inside : HoldKind::Nothing;
}

void SelectTool::PressOnObject(std::size_t index, bool add) {
  Drawing drawing = surface_.Current();
  const bool selected = drawing[index].selected;
  if (!add && !selected) SelectAll(drawing, false);
  if (add && selected) unselectOnRelease_ = index;
  drawing[index].selected = true;
  surface_.Select(std::move(drawing));
}

// A click takes the object below; a drag moves what is selected, however much lies on it.
bool SelectTool::PressBelow(Point at) {
  const auto below = ObjectBelow(surface_.Current(), at, surface_.Tolerance());
  if (!below) return false;
  state_ = State::Pressed;
  if (InsideSelected(surface_.Current(), at)) {
    selectOnRelease_ = below;
  } else {
    PressOnObject(*below, false);
  }
  return true;
}

void SelectTool::SelectOnly(std::size_t index) {
  Drawing drawing = surface_.Current();
  SelectAll(drawing, false);
  drawing[index].selected = true;
  surface_.Select(std::move(drawing));
}

void SelectTool::Drag(const ToolEvent& event) {
  const bool away = std::max(std::abs(event.at.x - start_.x), std::abs(event.at.y - start_.y)) > 0;
  if (state_ == State::Pressed && away) state_ = State::Moving;
  if (state_ == State::Moving) {
    surface_.Show(Moved(event));
  } else if (state_ == State::Resizing) {
    surface_.Show(Resized(event));
  } else if (state_ == State::RubberBand) {
    surface_.ShowRubberBand(Band(event.at));
  }
}

void SelectTool::Release(const ToolEvent& event) {
  const State state = std::exchange(state_, State::Idle);
  if (state == State::Idle) return;  // behind a double click, which may have begun something else
  if (state == State::Moving) {
    surface_.Commit(Moved(event));
  } else if (state == State::Resizing && !(event.at == start_)) {
    surface_.Commit(Resized(event));
    surface_.PickPoint(grip_.vertex);
  } else if (state == State::RubberBand) {
    surface_.ShowRubberBand(std::nullopt);
    Drawing drawing = surface_.Current();
    SelectInside(drawing, Band(event.at));
    surface_.Select(std::move(drawing));
  } else if (state == State::Pressed && selectOnRelease_) {
    SelectOnly(*selectOnRelease_);
  } else if (state == State::Pressed && (unselectOnRelease_ || unselectAllOnRelease_)) {
    Drawing drawing = surface_.Current();
    if (unselectAllOnRelease_) SelectAll(drawing, false);
    if (unselectOnRelease_) drawing[*unselectOnRelease_].selected = false;
    surface_.Select(std::move(drawing));
  } else {
    surface_.GiveUp();
  }
  EndSnapping();
}

// Beside an open group a click is meant for what is around it.
bool SelectTool::IsBeside(Point p) const {
  const Drawing& members = surface_.Current();
  const Box box = BoundsOf(members);
  const bool inside = p.x >= box.left && p.x <= box.right && p.y >= box.bottom && p.y <= box.top;
  return !inside && !GripAt(members, p, surface_.Tolerance()) &&
         !ObjectAt(members, p, surface_.Tolerance());
}

void SelectTool::DoubleClick(const ToolEvent& event) {
  Cancel();
  const auto grip = GripAt(surface_.Current(), event.at, surface_.Tolerance());
  if (grip && grip->vertex) return surface_.PickPoint(grip->vertex);
  const auto index = ObjectAt(surface_.Current(), event.at, surface_.Tolerance());
  if (!index) {
    surface_.LeaveGroup();
  } else if (!surface_.Current()[*index].vertices.empty()) {
    InsertPointAt(*index, event.at);
  } else if (OpenObject(*index, event.at) && surface_.InGroup()) {
    const auto member = ObjectAt(surface_.Current(), event.at, surface_.Tolerance());
    if (member && !surface_.Current()[*member].selected) PressOnObject(*member, false);
  }
}

void SelectTool::InsertPointAt(std::size_t index, Point at) {
  Drawing drawing = surface_.Current();
  SelectAll(drawing, false);
  drawing[index].selected = true;
  const PointPlace place = NearestPlace(drawing[index], at);
  InsertPoint(drawing[index], place);
  surface_.Commit(std::move(drawing));
  surface_.PickPoint(place.before + 1);
}

bool SelectTool::OpenObject(std::size_t index, Point at) {
  const Kind kind = surface_.Current()[index].kind;
  if (kind == Kind::Text) EditText(surface_, index, at);
  if (kind == Kind::Group) surface_.EnterGroup(index);
  if (kind == Kind::Picture) surface_.ChangePicture();
  return kind == Kind::Text || kind == Kind::Group || kind == Kind::Picture;
}

bool SelectTool::Open() {
  const auto index = OnlySelected(surface_.Current());
  if (Begun() || !index) return false;
  if (OnlyWithPoints(surface_.Current())) {
    surface_.PickPoint(surface_.PickedPoint().value_or(0));
    return true;
  }
  const Box box = BoundsOf(surface_.Current()[*index]);
  return OpenObject(*index, {box.right + 1, box.top});
}

void SelectTool::Cancel() {
  state_ = State::Idle;
  EndSnapping();
  surface_.ShowRubberBand(std::nullopt);
  surface_.GiveUp();
}

bool SelectTool::Escape() {
  if (Tool::Escape()) return true;
  if (surface_.PickedPoint()) {
    surface_.PickPoint(std::nullopt);
    return true;
  }
  if (surface_.LeaveGroup()) return true;
  if (!AnySelected(surface_.Current())) return false;
  Drawing drawing = surface_.Current();
  SelectAll(drawing, false);
  surface_.Select(std::move(drawing));
  return true;
}

// The selection's lower left corner goes to the grid, where no line of other objects is near; Shift
// keeps the row or the column.
Drawing SelectTool::Moved(const ToolEvent& event) const {
  Drawing drawing = surface_.Current();
  const Box box = SelectionBounds(drawing);
  Point way{event.at.x - start_.x, event.at.y - start_.y};
  if (event.shift) (std::abs(way.x) < std::abs(way.y) ? way.x : way.y) = 0;
  const Point corner = ToGrid({box.left + way.x, box.bottom + way.y});
  SnapLines::Snap snap = SnapOf(
      event, {box.left + way.x, box.bottom + way.y, box.right + way.x, box.top + way.y}, true);
  if (way.x == 0) snap.held.x.reset();
  if (way.y == 0) snap.held.y.reset();
  surface_.ShowSnapPlaces(snap.held);
  const int dx = snap.held.x ? way.x + snap.dx : corner.x - box.left;
  const int dy = snap.held.y ? way.y + snap.dy : corner.y - box.bottom;
  MoveSelected(drawing, way.x == 0 ? 0 : dx, way.y == 0 ? 0 : dy);
  return drawing;
}

// A shape that is kept snaps to the grid alone.
Drawing SelectTool::Resized(const ToolEvent& event) const {
  const Point at{event.at.x - grip_.away.x, event.at.y - grip_.away.y};
  Point to = ToGrid(at);
  SnapLines::Snap snap;
  if (!event.shift) snap = SnapOf(event, {at.x, at.y, at.x, at.y}, true);
  if (!grip_.vertex && grip_.edgeX == 0) snap.held.x.reset();
  if (!grip_.vertex && grip_.edgeY == 0) snap.held.y.reset();
  surface_.ShowSnapPlaces(snap.held);
  if (snap.held.x) to.x = at.x + snap.dx;
  if (snap.held.y) to.y = at.y + snap.dy;
  return DragGrip(surface_.Current(), grip_, to, event.shift, surface_.Fonts());
}

Box SelectTool::Band(Point to) const {
  return {std::min(start_.x, to.x), std::min(start_.y, to.y), std::max(start_.x, to.x),
          std::max(start_.y, to.y)};
}

}  // namespace kelvo
