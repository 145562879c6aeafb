#include "graphics/command_walk.h"

#include <algorithm>
#include <limits>

namespace kelvo {

namespace {

// Numbers that remember whether one of them left the 16-bit range.
class Sixteen {
 public:
  int operator()(int value) {
    fits_ = fits_ && value >= std::numeric_limits<std::int16_t>::min() &&
            value <= std::numeric_limits<std::int16_t>::max();
    return fits_ ? value : 0;
  }
  bool Fits() const { return fits_; }

 private:
  bool fits_ = true;
};

int HalfTowardMinusInfinity(int value) { return (value - (value & 1)) / 2; }

// One level of the drawing. An object's numbers are worked out by the same routine for the check
// and for the hand-over, which differ in whether the handler is called.
class Level {
 public:
  Level(const std::vector<DrawingObject>& objects, int top, CommandHandler& handler)
      : objects_(objects), top_(top), handler_(handler) {}

  bool Walk() {
    const bool fits = std::all_of(objects_.begin(), objects_.end(), [this](const auto& object) {
      Sixteen number;
      Convert(object, number, false);
      return number.Fits();
    });
    if (!fits) {
      handler_.Overflow();
      return false;
    }
    for (const DrawingObject& object : objects_) {
      FollowPenMode(object);
      Sixteen number;
      Convert(object, number, true);
    }
    return true;
  }

 private:
  void FollowPenMode(const DrawingObject& object) {
    if (object.kind == Kind::Group || object.penMode == penMode_) return;
    penMode_ = object.penMode;
    if (penMode_ == PenMode::Draw) handler_.PenMode(Ink::Set);
    if (penMode_ == PenMode::Erase) handler_.PenMode(Ink::Clear);
  }

  void Convert(const DrawingObject& object, Sixteen& number, bool handOver) {
    switch (object.kind) {
      case Kind::Group:
        if (handOver) Level(object.members, top_, handler_).Walk();
        break;
      case Kind::Line:
      case Kind::Polyline:
        ConvertLines(object, number, handOver);
        break;
      case Kind::Rectangle:
        ConvertRectangle(object, number, handOver);
        break;
      case Kind::Ellipse:
        ConvertEllipse(object, number, handOver);
        break;
      case Kind::Picture:
        ConvertPicture(object, number, handOver);
        break;
      case Kind::Text:
        ConvertText(object, number, handOver);
        break;
      case Kind::Vertices:
        ConvertVertices(object, number, handOver);
        break;
    }
  }

  PixelPoint ToTerminal(Point p, Sixteen& number) const {
    return {number(p.x), number(top_ - number(p.y))};
  }

  void ConvertLines(const DrawingObject& object, Sixteen& number, bool handOver) {
    const std::size_t count = object.kind == Kind::Line
                                  ? std::min<std::size_t>(2, object.vertices.size())
                                  : object.vertices.size();
    if (count == 0) return;
    points_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      points_.push_back(ToTerminal(object.vertices[i], number));
    }
    if (handOver) handler_.Lines(points_);
  }

  void ConvertRectangle(const DrawingObject& object, Sixteen& number, bool handOver) {
    const PixelPoint from = ToTerminal(object.corner1, number);
    const PixelPoint to = ToTerminal(object.corner2, number);
    if (handOver) handler_.Rectangle(from, to, object.filled);
  }

  void ConvertEllipse(const DrawingObject& object, Sixteen& number, bool handOver) {
    const PixelPoint topLeft = ToTerminal({object.corner2.x, object.corner1.y}, number);
    const int radiusX = HalfTowardMinusInfinity(number(number(object.corner1.x) - topLeft.x));
    const int radiusY =
        HalfTowardMinusInfinity(number(object.corner1.y - number(object.corner2.y)));
    const PixelPoint centre{number(topLeft.x + radiusX), number(topLeft.y + radiusY)};
    if (handOver) handler_.Ellipse(centre, radiusX, radiusY, object.filled);
  }

  void ConvertPicture(const DrawingObject& object, Sixteen& number, bool handOver) {
    const PixelPoint topLeft = ToTerminal({object.corner2.x, object.corner1.y}, number);
    const int width = number(number(object.corner1.x - object.corner2.x) + 1);
    const int height = number(number(object.corner1.y - object.corner2.y) + 1);
    if (handOver) handler_.Bitmap(topLeft, object, width, height);
  }

  void ConvertText(const DrawingObject& object, Sixteen& number, bool handOver) {
    if (!object.style) return;
    const PixelPoint topLeft = ToTerminal({object.corner2.x, object.corner1.y}, number);
    if (handOver) handler_.Text(topLeft, *object.style, object.text);
  }

  // Its numbers count like those of all others, although it is never sent.
  void ConvertVertices(const DrawingObject& object, Sixteen& number, bool handOver) {
    points_.clear();
    for (const Point& p : object.vertices) points_.push_back({number(p.x), top_ - number(p.y)});
    if (handOver) handler_.Shape(points_, object.filled);
  }

  const std::vector<DrawingObject>& objects_;
  int top_;
  CommandHandler& handler_;
  PenMode penMode_ = PenMode::Draw;
  std::vector<PixelPoint> points_;
};

}  // namespace

bool WalkDrawing(const Drawing& drawing, int displayHeight, CommandHandler& handler) {
  return Level(drawing, displayHeight - 1, handler).Walk();
}

}  // namespace kelvo
