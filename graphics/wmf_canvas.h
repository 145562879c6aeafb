#pragma once

#include <string_view>
#include <vector>

#include "graphics/wmf_builder.h"
#include "graphics/wmf_shapes.h"

namespace kelvo::wmf {

/// How a metafile lands on the display.
struct Placement {
  bool foreign = true;  ///< without this program's mark
  double originX = 0;   ///< device units that lie on the display's left edge and top row
  double originY = 0;
  double scale = 1;
  int displayHeight = 0;
  int displayWidth = 0;    ///< of foreign metafiles alone
  bool firstLook = false;  ///< for where things lie; fills are boxes
};

/// Turns what a metafile draws into objects. Points are logical units.
///
/// This program's own drawings come back exactly, with the pen mode as recorded. Those of others
/// are drawn or erased by their colours: dark ones draw, bright ones erase.
class Canvas {
 public:
  Canvas(Placement placement, Builder& builder, const DeviceFonts& fonts)
      : placement_(placement), builder_(builder), fonts_(fonts) {}

  Context& State() { return state_; }
  Placement& Place() { return placement_; }
  /// The first window extent, which the later ones are measured by; 0 while there is none.
  Point FirstExtent() const { return firstExtent_; }
  void SetWindowExtent(Point extent);

  /// One point of this is no object.
  void Path(const std::vector<Point>& points);
  void Polyline(const std::vector<Point>& points);
  void Polygon(const std::vector<Point>& points);
  /// Several, one of which may be a hole in another. False when the limit of pixels is reached.
  bool Polygons(const std::vector<std::vector<Point>>& polygons);
  bool Arc(ArcKind kind, Point upperLeft, Point lowerRight, Point from, Point to);
  /// `corner` is width and height of the ellipse that the corners are taken from.
  bool RoundedBox(Point upperLeft, Point lowerRight, Point corner);
  /// The right and bottom edges are outside.
  void Boxed(Kind kind, Point upperLeft, Point lowerRight);
  void FilledBox(Point upperLeft, Point size, bool dark);
  void Pixel(Point point, bool dark);
  /// False, and nothing drawn, when the limit of pixels is reached: those of the picture, or those
  /// that it is stretched to.
  bool Image(Point upperLeft, Point size, DrawingObject picture);
  void Text(Point reference, std::string_view text);
  /// This program's own text object.
  void OwnText(Point corner1, Point corner2, std::string_view prefixedText);

 private:
  struct Exact {
    double x = 0;
    double y = 0;
  };
  Exact ToDisplay(Point logical) const;
  int Turned(double y) const;
  Point ToDrawing(Point logical) const;
  std::vector<Point> ToDrawing(const std::vector<Point>& points) const;
  void SetBox(DrawingObject& object, Point upperLeft, Point lowerRight) const;
  PenMode PenModeFor(bool dark) const;
  void AddStroke(DrawingObject object);
  void AddShape(DrawingObject object);
  bool AddFill(const Outlines& outlines);
  bool AddCurve(std::vector<Point> points, bool filled);

  Placement placement_;
  Builder& builder_;
  const DeviceFonts& fonts_;
  Context state_;
  Point firstExtent_;
};

}  // namespace kelvo::wmf
