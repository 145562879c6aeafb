#pragma once

#include <optional>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/drawing.h"

// The little squares by which the operator takes hold of what is selected.

namespace kelvo {

/// A grip moves the edges of the selection's box (-1 the lower, 1 the upper, 0 none), or, for a
/// single line or polyline, one of its points. Around what is so small that its grips would hide it
/// they stand outside.
struct Grip {
  Point at;
  Point away;  ///< from what it moves to where it stands
  int edgeX = 0;
  int edgeY = 0;
  std::optional<std::size_t> vertex;
};

/// None without a selection. `tolerance` is how near a press must come to a grip, in drawing
/// pixels.
std::vector<Grip> GripsOf(const Drawing& drawing, double tolerance);
/// Whether the points of a single line lie so near to each other that their grips would hide it.
bool GripsCrowded(const Drawing& drawing, double tolerance);
/// The grip within `tolerance` of `p`. Inside of what is so small that its grips would cover it
/// there is none: it could not be moved.
std::optional<Grip> GripAt(const Drawing& drawing, Point p, double tolerance);
/// The drawing with what a grip moves dragged to `p`; `keepShape` keeps a box's proportions.
Drawing DragGrip(const Drawing& drawing, const Grip& grip, Point p, bool keepShape,
                 const DeviceFonts& fonts);

}  // namespace kelvo
