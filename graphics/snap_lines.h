#pragma once

#include <optional>
#include <vector>

#include "graphics/drawing.h"

namespace kelvo {

/// Places on both axes that hold what is dragged, counted in half pixels: the middle of a pixel p
/// is 2 p, so that the middle between two pixels has a place, too.
struct SnapPlaces {
  std::optional<int> x;
  std::optional<int> y;
  bool operator==(const SnapPlaces&) const = default;
};

/// The lines to which edges and middles snap. They are gathered once and then only looked up.
class SnapLines {
 public:
  /// Edges and middles of the objects that are not `selected`, where that is wanted, and of the
  /// display.
  SnapLines(const Drawing& drawing, const Box& display, bool withoutSelected);

  /// How far to move a box (of a point: of one pixel) so that one of its edges or middles lies on a
  /// line, and which line that is; nothing along an axis without a line within `reach` pixels.
  struct Snap {
    int dx = 0;
    int dy = 0;
    SnapPlaces held;
  };
  Snap Of(const Box& box, double reach) const;

 private:
  // Sorted, each once, in half pixels.
  std::vector<int> x_;
  std::vector<int> y_;
};

}  // namespace kelvo
