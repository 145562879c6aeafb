#pragma once

#include <cstdint>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

namespace kelvo {

/// What is left of an object when all of the drawing is drawn.
enum class Sight {
  Seen,
  Covered,  ///< each of its pixels is drawn or erased again by a later object
  Nothing,  ///< it touches no pixel of the display
};

/// Finds what of a drawing cannot be seen, in steps, so that a large drawing holds up nobody.
class SightSearch {
 public:
  /// The display in pixels. Fonts must outlive the search.
  SightSearch(int displayWidth, int displayHeight, const DeviceFonts& fonts,
              std::int64_t blackThreshold);

  /// Begins anew with `objects`, the lowest first; `above` are drawn after all of them and are not
  /// asked for.
  void Begin(Drawing objects, const Drawing& above);
  /// Looks at some more objects; true when all have been seen to.
  bool Step(std::size_t objects);
  /// One for each object; those that were not looked at yet count as seen.
  const std::vector<Sight>& Found() const { return found_; }

 private:
  Sight Look(const DrawingObject& object);

  const DeviceFonts& fonts_;
  std::int64_t blackThreshold_;
  PixelMap touched_;  // by the object that is looked at
  PixelMap covered_;  // by those above it
  Drawing objects_;   // still to be looked at
  std::vector<Sight> found_;
};

}  // namespace kelvo
