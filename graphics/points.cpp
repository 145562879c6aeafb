#include "graphics/points.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "graphics/editing.h"

namespace kelvo {

namespace {

// Of the way that begins at a point; a vertex shape's last one leads back to its first.
Point EndOfWay(const DrawingObject& object, std::size_t from) {
  return object.vertices[(from + 1) % object.vertices.size()];
}

std::size_t Ways(const DrawingObject& object) {
  const std::size_t count = object.vertices.size();
  return object.kind == Kind::Vertices ? count : std::max<std::size_t>(count, 2) - 1;
}

double Distance(Point a, Point b) {
  return std::hypot(static_cast<double>(a.x) - b.x, static_cast<double>(a.y) - b.y);
}

Point NearestOn(Point a, Point b, Point p) {
  const double dx = static_cast<double>(b.x) - a.x;
  const double dy = static_cast<double>(b.y) - a.y;
  const double length2 = dx * dx + dy * dy;
  const double along =
      length2 == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0);
  return {static_cast<int>(std::lround(a.x + along * dx)),
          static_cast<int>(std::lround(a.y + along * dy))};
}

std::size_t LongestWay(const DrawingObject& object) {
  std::size_t longest = 0;
  for (std::size_t i = 1; i < Ways(object); ++i) {
    if (Distance(object.vertices[i], EndOfWay(object, i)) >
        Distance(object.vertices[longest], EndOfWay(object, longest))) {
      longest = i;
    }
  }
  return longest;
}

}  // namespace

std::optional<std::size_t> OnlyWithPoints(const Drawing& drawing) {
  const auto index = OnlySelected(drawing);
  return index && !drawing[*index].vertices.empty() ? index : std::nullopt;
}

PointPlace NearestPlace(const DrawingObject& object, Point p) {
  PointPlace nearest;
  double least = std::numeric_limits<double>::max();
  for (std::size_t i = 0; i < Ways(object); ++i) {
    const Point at = NearestOn(object.vertices[i], EndOfWay(object, i), p);
    const double distance = Distance(at, p);
    if (distance >= least) continue;
    least = distance;
    nearest = {i, at};
  }
  return nearest;
}

PointPlace MiddlePlace(const DrawingObject& object, std::optional<std::size_t> picked) {
  const std::size_t way = picked ? std::min(*picked, Ways(object) - 1) : LongestWay(object);
  const Point a = object.vertices[way];
  const Point b = EndOfWay(object, way);
  return {way, {a.x + (b.x - a.x) / 2, a.y + (b.y - a.y) / 2}};
}

void InsertPoint(DrawingObject& object, const PointPlace& place) {
  if (object.kind == Kind::Line) object.kind = Kind::Polyline;
  const auto behind = static_cast<std::ptrdiff_t>(place.before) + 1;
  object.vertices.insert(object.vertices.begin() + behind, place.at);
}

bool RemovePoint(DrawingObject& object, std::size_t point) {
  if (object.vertices.size() <= 2 || point >= object.vertices.size()) return false;
  object.vertices.erase(object.vertices.begin() + static_cast<std::ptrdiff_t>(point));
  return true;
}

}  // namespace kelvo
