#include "graphics/drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvo {

namespace {

bool HasVertices(Kind kind) {
  return kind == Kind::Line || kind == Kind::Polyline || kind == Kind::Vertices;
}

Box BoxOf(Point a, Point b) {
  const auto [left, right] = std::minmax({a.x, b.x});
  const auto [bottom, top] = std::minmax({a.y, b.y});
  return {left, bottom, right, top};
}

// Where the box has no length to share out, its only pixel becomes the lower or the upper end.
int Mapped(int value, int from, int fromLength, int to, int toLength, bool upper) {
  if (fromLength <= 0) return upper ? to + toLength : to;
  const double share = static_cast<double>(value - from) / fromLength;
  return to + static_cast<int>(std::lround(share * toLength));
}

Point Mapped(Point p, const Box& from, const Box& to, bool upper) {
  return {Mapped(p.x, from.left, from.right - from.left, to.left, to.right - to.left, upper),
          Mapped(p.y, from.bottom, from.top - from.bottom, to.bottom, to.top - to.bottom, upper)};
}

// Only what an object's kind uses is changed; the rest keeps its zeros, so that equal objects
// compare equal. `change` is told whether a point is an upper right corner.
template <typename Change>
void ChangePoints(DrawingObject& object, Change change) {
  if (object.kind == Kind::Group) {
    for (DrawingObject& member : object.members) ChangePoints(member, change);
  } else if (HasVertices(object.kind)) {
    for (Point& p : object.vertices) change(p, false);
  } else {
    change(object.corner1, true);
    change(object.corner2, false);
  }
}

}  // namespace

Box United(const Box& a, const Box& b) {
  return {std::min(a.left, b.left), std::min(a.bottom, b.bottom), std::max(a.right, b.right),
          std::max(a.top, b.top)};
}

Box BoundsOf(const DrawingObject& object) {
  if (object.kind == Kind::Group) return BoundsOf(object.members);
  if (!HasVertices(object.kind)) return BoxOf(object.corner1, object.corner2);
  if (object.vertices.empty()) return {};
  Box box = BoxOf(object.vertices.front(), object.vertices.front());
  for (const Point& p : object.vertices) box = United(box, BoxOf(p, p));
  return box;
}

Box BoundsOf(const std::vector<DrawingObject>& objects) {
  if (objects.empty()) return {};
  Box box = BoundsOf(objects.front());
  for (const DrawingObject& object : objects) box = United(box, BoundsOf(object));
  return box;
}

void MoveBy(DrawingObject& object, int dx, int dy) {
  ChangePoints(object, [&](Point& p, bool) { p = {p.x + dx, p.y + dy}; });
}

void Stretch(DrawingObject& object, const Box& from, const Box& to) {
  ChangePoints(object, [&](Point& p, bool upper) { p = Mapped(p, from, to, upper); });
}

void SetCorners(DrawingObject& object, const Box& box) {
  object.corner1 = {box.right, box.top};
  object.corner2 = {box.left, box.bottom};
}

bool CanBeFilled(Kind kind) {
  return kind == Kind::Rectangle || kind == Kind::Ellipse || kind == Kind::Vertices;
}

std::size_t CountKind(const std::vector<DrawingObject>& objects, Kind kind) {
  std::size_t count = 0;
  for (const DrawingObject& object : objects) {
    count += (object.kind == kind ? 1U : 0U) + CountKind(object.members, kind);
  }
  return count;
}

}  // namespace kelvo
