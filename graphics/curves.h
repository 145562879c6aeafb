#pragma once

#include <vector>

#include "graphics/drawing.h"

// Shapes for which the Terminal has no command, as the points of a polyline that has exactly the
// pixels nearest to them, however the Terminal draws what lies between two pixels.

namespace kelvo {

struct CurveStyle {
  int radius = 8;       ///< of a rounded rectangle's corners, in pixels
  int arcFrom = 0;      ///< degrees, counter-clockwise from three o'clock; 45 is towards the corner
  int arcTo = 90;       ///< as `arcFrom`; the same angle is a whole turn
  bool sector = false;  ///< the arc's ends are joined to the middle
};

/// Closed: the last point is the first. A radius that does not fit becomes the largest that does.
std::vector<Point> RoundedRectangle(const Box& box, int radius);
/// A part of the ellipse in the box.
std::vector<Point> EllipseArc(const Box& box, const CurveStyle& style);

}  // namespace kelvo
