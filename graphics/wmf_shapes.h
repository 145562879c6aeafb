#pragma once

#include <optional>
#include <vector>

#include "graphics/drawing.h"
#include "graphics/raster.h"

// Shapes of other programs' metafiles for which a drawing has no kind, as what comes nearest.

namespace kelvo::wmf {

enum class ArcKind { Arc, Pie, Chord };

/// A part of the ellipse in a box, counter-clockwise from where the ray towards `from` meets it to
/// where that towards `to` does; the same ray is a whole turn. Pies and chords are closed.
std::vector<Point> ArcPoints(ArcKind kind, const Box& box, Point from, Point to);
/// Closed; the radii are those of the corners.
std::vector<Point> RoundedBox(const Box& box, int radiusX, int radiusY);

using Outlines = std::vector<std::vector<Point>>;
/// What lies inside of outlines, as far as the display goes: a picture of these pixels, or the
/// rectangle that they are. Nothing where nothing is to be seen.
std::optional<DrawingObject> FillOf(const Outlines& outlines, FillRule rule, int displayWidth,
                                    int displayHeight);

}  // namespace kelvo::wmf
