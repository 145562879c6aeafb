#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "graphics/editing.h"

namespace kelvo {

namespace {

bool Inside(const Box& box, Point p, double margin) {
  return p.x >= box.left - margin && p.x <= box.right + margin && p.y >= box.bottom - margin &&
         p.y <= box.top + margin;
}

double DistanceToSegment(Point p, Point a, Point b) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double length2 = dx * dx + dy * dy;
  const double along =
      length2 == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0);
  return std::hypot(p.x - (a.x + along * dx), p.y - (a.y + along * dy));
}

// A pixel of a line lies up to half a pixel beside it.
bool HitsPath(const std::vector<Point>& points, bool closed, Point p, double tolerance) {
  tolerance += 0.5;
  if (points.size() == 1) return DistanceToSegment(p, points[0], points[0]) <= tolerance;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (DistanceToSegment(p, points[i - 1], points[i]) <= tolerance) return true;
  }
  return closed && points.size() > 2 &&
         DistanceToSegment(p, points.back(), points.front()) <= tolerance;
}

bool HitsEllipse(const Box& box, bool filled, Point p, double tolerance) {
  const double rx = std::max((box.Width() - 1) / 2.0, 0.5);
  const double ry = std::max((box.Height() - 1) / 2.0, 0.5);
  const double x = (p.x - (box.left + box.right) / 2.0) / rx;
  const double y = (p.y - (box.bottom + box.top) / 2.0) / ry;
  const double miss = (std::hypot(x, y) - 1) * std::min(rx, ry);  // in pixels, roughly
  return filled ? miss <= tolerance : std::abs(miss) <= tolerance + 0.5;
}

bool HitsRectangle(const Box& box, bool filled, Point p, double tolerance) {
  return Inside(box, p, tolerance) && (filled || !Inside(box, p, -tolerance - 1));
}

bool Hits(const DrawingObject& object, Point p, double tolerance) {
  switch (object.kind) {
    case Kind::Group:
      return std::any_of(object.members.begin(), object.members.end(),
                         [&](const auto& member) { return Hits(member, p, tolerance); });
    case Kind::Line:
    case Kind::Polyline:
      return HitsPath(object.vertices, false, p, tolerance);
    case Kind::Vertices:
      return HitsPath(object.vertices, true, p, tolerance);
    case Kind::Rectangle:
      return HitsRectangle(BoundsOf(object), object.filled, p, tolerance);
    case Kind::Ellipse:
      return HitsEllipse(BoundsOf(object), object.filled, p, tolerance);
    case Kind::Picture:
    case Kind::Text:
      return Inside(BoundsOf(object), p, 0);
  }
  return false;
}

}  // namespace

std::optional<std::size_t> ObjectAt(const Drawing& drawing, Point p, double tolerance) {
  for (std::size_t i = drawing.size(); i > 0; --i) {
    if (Hits(drawing[i - 1], p, tolerance)) return i - 1;
  }
  return std::nullopt;
}

std::optional<std::size_t> ObjectBelow(const Drawing& drawing, Point p, double tolerance) {
  std::optional<std::size_t> uppermost;
  bool passed = false;
  for (std::size_t i = drawing.size(); i > 0; --i) {
    if (!Hits(drawing[i - 1], p, tolerance)) continue;
    if (passed && !drawing[i - 1].selected) return i - 1;
    passed = passed || drawing[i - 1].selected;
    if (!uppermost) uppermost = i - 1;
  }
  return uppermost;
}

bool InsideSelected(const Drawing& drawing, Point p) {
  return std::any_of(drawing.begin(), drawing.end(), [p](const DrawingObject& object) {
    return object.selected && Inside(BoundsOf(object), p, 0);
  });
}

}  // namespace kelvo
