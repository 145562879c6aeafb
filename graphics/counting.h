#pragma once

#include "graphics/drawing.h"

namespace kelvo {

/// How the editor's numbers count. A drawing is kept with its origin at the bottom left, y upward;
/// the Terminal's commands count from the top left, y downward. Every number that the operator
/// reads or types in the editor goes through here; drawings, files and commands do not.
class Counting {
 public:
  enum class Way { Stored, LikeCommands };

  Counting() = default;
  /// `displayHeight` in pixels.
  Counting(Way way, int displayHeight) : way_(way), displayHeight_(displayHeight) {}

  bool LikeCommands() const { return way_ == Way::LikeCommands; }

  /// A point of the drawing, as it is shown.
  Point Shown(Point stored) const { return {stored.x, Turned(stored.y)}; }
  /// A point that was read or typed, as the drawing keeps it.
  Point Stored(Point shown) const { return {shown.x, Turned(shown.y)}; }

  /// The corner by which a box is named, as it is shown: where both numbers are the smallest. Like
  /// the commands that is the upper left one, else the lower left one.
  Point FirstCorner(const Box& box) const;
  /// The corner across from it.
  Point LastCorner(const Box& box) const;
  /// The box whose first corner is shown as `corner`; width and height in pixels.
  Box BoxAt(Point corner, int width, int height) const;

 private:
  int Turned(int y) const { return LikeCommands() ? displayHeight_ - 1 - y : y; }

  Way way_ = Way::Stored;
  int displayHeight_ = 0;
};

}  // namespace kelvo
