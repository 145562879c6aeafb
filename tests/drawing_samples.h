#pragma once

#include <random>
#include <string>

#include "graphics/drawing.h"

namespace kelvo {

inline DrawingObject Boxed(Kind kind, Point corner1, Point corner2, bool filled = false) {
  DrawingObject object;
  object.kind = kind;
  object.corner1 = corner1;
  object.corner2 = corner2;
  object.filled = filled;
  return object;
}

inline DrawingObject WithVertices(Kind kind, std::vector<Point> vertices) {
  DrawingObject object;
  object.kind = kind;
  object.vertices = std::move(vertices);
  return object;
}

inline DrawingObject GroupOf(std::vector<DrawingObject> members) {
  DrawingObject object;
  object.members = std::move(members);
  return object;
}

inline DrawingObject TextAt(Point topLeft, const TextAttributes& style, std::string text) {
  DrawingObject object = Boxed(Kind::Text, {topLeft.x + 39, topLeft.y}, {topLeft.x, topLeft.y - 7});
  object.style = style;
  object.text = std::move(text);
  return object;
}

inline DrawingObject PictureAt(Point topLeft, Picture picture) {
  DrawingObject object = Boxed(Kind::Picture, {topLeft.x + picture.Width() - 1, topLeft.y},
                               {topLeft.x, topLeft.y - picture.Height() + 1});
  object.picture = std::move(picture);
  return object;
}

inline DrawingObject Erasing(DrawingObject object) {
  object.penMode = PenMode::Erase;
  return object;
}

/// Drawings that only chance would draw; the same for the same start value.
class RandomDrawings {
 public:
  explicit RandomDrawings(unsigned start) : random_(start) {}

  Drawing Next() { return Level(3, Number(0, 8)); }

  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

 private:
  Drawing Level(int depth, int count) {
    Drawing level;
    for (int i = 0; i < count; ++i) level.push_back(Object(depth));
    return level;
  }

  DrawingObject Object(int depth) {
    constexpr Kind kKinds[] = {Kind::Line,     Kind::Rectangle, Kind::Ellipse, Kind::Vertices,
                               Kind::Polyline, Kind::Picture,   Kind::Text,    Kind::Group};
    const Kind kind = kKinds[Number(0, depth > 0 ? 7 : 6)];
    if (kind == Kind::Group) return GroupOf(Level(depth - 1, Number(0, 4)));
    DrawingObject object = OfKind(kind);
    object.penMode = Number(0, 3) == 0 ? PenMode::Erase : object.penMode;
    return object;
  }

  DrawingObject OfKind(Kind kind) {
    switch (kind) {
      case Kind::Line:
        return WithVertices(kind, {AnyPoint(), AnyPoint()});
      case Kind::Polyline:
        return WithVertices(kind, Points(Number(1, 6)));
      case Kind::Vertices: {
        DrawingObject shape = WithVertices(kind, Points(Number(2, 6)));
        shape.filled = Number(0, 1) == 1;
        return shape;
      }
      case Kind::Picture:
        return AnyPicture();
      case Kind::Text:
        return AnyText();
      default:
        return AnyBox(kind);
    }
  }

  Point AnyPoint() { return {Number(-20, 260), Number(-20, 150)}; }

  std::vector<Point> Points(int count) {
    std::vector<Point> points;
    for (int i = 0; i < count; ++i) points.push_back(AnyPoint());
    return points;
  }

  DrawingObject AnyBox(Kind kind) {
    const Point low = AnyPoint();
    return Boxed(kind, {low.x + Number(0, 90), low.y + Number(0, 60)}, low, Number(0, 1) == 1);
  }

  DrawingObject AnyPicture() {
    const int width = Number(1, 20);
    const int height = Number(1, 12);
    std::vector<Colour> pixels;
    for (int i = 0; i < width * height; ++i) {
      pixels.push_back(static_cast<Colour>(Number(0, static_cast<int>(kWhite))));
    }
    DrawingObject object = PictureAt(AnyPoint(), Picture(width, height, std::move(pixels)));
    if (Number(0, 2) == 0) object.corner1.x += Number(0, 30);  // stretched
    if (Number(0, 3) == 0) {
      object.source = PictureSource(object.picture);
      object.preparation.turns = Number(0, 3);
    }
    return object;
  }

  DrawingObject AnyText() {
    const TextAttributes style{Number(0, 9),      Number(1, 4),      Number(1, 8),
                               Number(0, 1) == 1, Number(0, 1) == 1, Number(0, 1) == 1};
    std::string text;
    for (int i = Number(0, 12); i > 0; --i) text += static_cast<char>(Number(32, 255));
    DrawingObject object = TextAt(AnyPoint(), style, text);
    if (style.inverse) object.penMode = PenMode::InverseText;
    return object;
  }

  std::minstd_rand random_;
};

}  // namespace kelvo
