#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "graphics/preparation.h"
#include "graphics/text_attributes.h"

// A drawing as plain values: what the editor edits, the files hold and the Terminal is sent.
//
// Coordinates are Terminal pixels, the origin is the bottom left corner of the display and y grows
// upward. They are meant to lie in the 16-bit range -32768..32767; the conversion into commands
// reports those that do not.

namespace kelvo {

/// The numbers are those of the drawing surface's object kinds.
enum class Kind {
  Group = 0,
  Line = 1,
  Rectangle = 2,
  Ellipse = 4,
  Vertices = 5,  ///< drawn by the editor, never sent
  Polyline = 8,
  Picture = 10,
  Text = 11,
};

/// Raster operation numbers. Drawings may hold others; like InverseText they are remembered, but
/// have no command of their own.
enum class PenMode : int {
  Draw = 13,   ///< in the pen's colour: sets pixels
  Erase = 14,  ///< merged with the inverted pen: clears pixels
  InverseText = 4,
};

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

/// A box of pixels, all four edges inside.
struct Box {
  int left = 0;
  int bottom = 0;
  int right = 0;
  int top = 0;
  int Width() const { return right - left + 1; }
  int Height() const { return top - bottom + 1; }
  bool operator==(const Box&) const = default;
};

struct DrawingObject {
  Kind kind = Kind::Group;
  PenMode penMode = PenMode::Draw;
  bool filled = false;  ///< rectangles, ellipses, vertex shapes
  bool selected = false;
  /// Rectangle, ellipse, picture, text: the upper right and the lower left corner of the box.
  Point corner1;
  Point corner2;
  std::vector<Point> vertices;          ///< line (two), polyline, vertex shape
  std::optional<TextAttributes> style;  ///< of a text; one that was stored without is not sent
  std::string text;                     ///< Latin-1, as the Terminal shows it
  Picture picture;                      ///< shown stretched to the box
  PictureSource source;                 ///< what the picture was prepared from, if it was
  Preparation preparation;
  std::vector<DrawingObject> members;  ///< of a group, the lowest first
  bool operator==(const DrawingObject&) const = default;
};

/// The lowest object first, as they are drawn and sent.
using Drawing = std::vector<DrawingObject>;

/// The pixels an object may touch; a group's box covers its members (empty groups: one pixel).
Box BoundsOf(const DrawingObject& object);
Box BoundsOf(const std::vector<DrawingObject>& objects);
/// The smallest box around both.
Box United(const Box& a, const Box& b);
void MoveBy(DrawingObject& object, int dx, int dy);
/// Maps everything of the object from one box to another, rounding to pixels.
void Stretch(DrawingObject& object, const Box& from, const Box& to);
void SetCorners(DrawingObject& object, const Box& box);
/// Whether objects of a kind have an inside: rectangles, ellipses, vertex shapes.
bool CanBeFilled(Kind kind);
/// Objects of a kind, groups' members included.
std::size_t CountKind(const std::vector<DrawingObject>& objects, Kind kind);

}  // namespace kelvo
