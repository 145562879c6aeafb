#pragma once

#include <optional>

#include "graphics/drawing.h"

// The points of lines, polylines and vertex shapes, one by one.

namespace kelvo {

/// The one object that is selected, where it has points; nothing otherwise.
std::optional<std::size_t> OnlyWithPoints(const Drawing& drawing);
/// Where a point can be put in: behind the point `before`, at `at`.
struct PointPlace {
  std::size_t before = 0;
  Point at;
};
/// On the object's path where it comes nearest to `p`. The object must have points.
PointPlace NearestPlace(const DrawingObject& object, Point p);
/// In the middle of what follows the point `picked` (or leads to it, where it is the last), or of
/// the longest way between two points.
PointPlace MiddlePlace(const DrawingObject& object, std::optional<std::size_t> picked);
/// A line becomes a polyline.
void InsertPoint(DrawingObject& object, const PointPlace& place);
/// Two points stay in any case; false where the point would be one of them.
bool RemovePoint(DrawingObject& object, std::size_t point);

}  // namespace kelvo
