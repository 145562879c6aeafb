#include "graphics/wmf_canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>

#include "graphics/editing.h"
#include "graphics/text_prefix.h"

namespace kelvo::wmf {

namespace {

// Foreign coordinates stay where commands can still name them, sums included.
constexpr double kFarthestForeign = 16000;

// One axis of the window: the first extent gives the unit, later ones stretch it.
double AlongAxis(int value, int origin, int extent, int firstExtent) {
  const double distance = value - origin;
  return extent == 0 ? distance : distance * std::abs(firstExtent) / extent;
}

}  // namespace

void Canvas::SetWindowExtent(Point extent) {
  state_.windowExtent = extent;
  if (firstExtent_.x == 0) firstExtent_.x = extent.x;
  if (firstExtent_.y == 0) firstExtent_.y = extent.y;
}

Canvas::Exact Canvas::ToDisplay(Point logical) const {
  if (!placement_.foreign) return {static_cast<double>(logical.x), static_cast<double>(logical.y)};
  const double x =
      AlongAxis(logical.x, state_.windowOrigin.x, state_.windowExtent.x, firstExtent_.x);
  const double y =
      AlongAxis(logical.y, state_.windowOrigin.y, state_.windowExtent.y, firstExtent_.y);
  const auto place = [&](double value, double origin) {
    return std::clamp((value - origin) * placement_.scale, -kFarthestForeign, kFarthestForeign);
  };
  return {place(x, placement_.originX), place(y, placement_.originY)};
}

int Canvas::Turned(double y) const {
  return placement_.displayHeight - 1 - static_cast<int>(std::lround(y));
}

Point Canvas::ToDrawing(Point logical) const {
  const Exact exact = ToDisplay(logical);
  return {static_cast<int>(std::lround(exact.x)), Turned(exact.y)};
}

std::vector<Point> Canvas::ToDrawing(const std::vector<Point>& points) const {
  std::vector<Point> placed;
  placed.reserve(points.size());
  for (const Point& p : points) placed.push_back(ToDrawing(p));
  return placed;
}

// Own boxes keep their corners, crossed ones too; foreign ones are at least one pixel large.
void Canvas::SetBox(DrawingObject& object, Point upperLeft, Point lowerRight) const {
  Point low = ToDrawing({upperLeft.x, lowerRight.y});
  Point high = ToDrawing({lowerRight.x, upperLeft.y});
  if (placement_.foreign) {
    std::tie(low.x, high.x) = std::pair(std::min(low.x, high.x), std::max(low.x, high.x));
    std::tie(low.y, high.y) = std::pair(std::min(low.y, high.y), std::max(low.y, high.y));
    high.x = std::max(high.x, low.x + 1);
    low.y = std::min(low.y, high.y - 1);
  }
  object.corner1 = {high.x - 1, high.y};
  object.corner2 = {low.x, low.y + 1};
}

PenMode Canvas::PenModeFor(bool dark) const {
  if (!placement_.foreign) return state_.penMode;
  return dark && state_.penMode != PenMode::Erase ? PenMode::Draw : PenMode::Erase;
}

void Canvas::AddStroke(DrawingObject object) {
  if (!state_.pen.visible) return;
  object.penMode = PenModeFor(state_.pen.dark);
  builder_.CountVertices(object.vertices.size());
  builder_.Add(std::move(object));
}

// A shape whose inside and outline differ becomes two objects, the inside below.
void Canvas::AddShape(DrawingObject object) {
  const bool alike = !placement_.foreign || !state_.pen.visible ||
                     state_.pen.dark == state_.brush.dark || !state_.brush.visible;
  if (state_.brush.visible) {
    DrawingObject inside = object;
    inside.filled = true;
    inside.penMode = PenModeFor(state_.brush.dark);
    builder_.CountVertices(inside.vertices.size());
    builder_.Add(std::move(inside));
    if (alike) return;
  }
  AddStroke(std::move(object));
}

void Canvas::Path(const std::vector<Point>& points) {
  if (points.size() < 2) return;
  DrawingObject object;
  object.kind = points.size() == 2 ? Kind::Line : Kind::Polyline;
  object.vertices = ToDrawing(points);
  AddStroke(std::move(object));
}

void Canvas::Polyline(const std::vector<Point>& points) {
  DrawingObject object;
  object.kind = Kind::Polyline;
  object.vertices = ToDrawing(points);
  AddStroke(std::move(object));
}

void Canvas::Polygon(const std::vector<Point>& points) {
  DrawingObject object;
  object.kind = Kind::Vertices;
  object.vertices = ToDrawing(points);
  AddShape(std::move(object));
}

// A first look asks only where it lies.
bool Canvas::AddFill(const Outlines& outlines) {
  if (!state_.brush.visible) return true;
  std::optional<DrawingObject> fill;
  if (placement_.firstLook) {
    fill.emplace();
    fill->kind = Kind::Vertices;
    for (const std::vector<Point>& outline : outlines) {
      fill->vertices.insert(fill->vertices.end(), outline.begin(), outline.end());
    }
  } else {
    fill = FillOf(outlines, state_.windingFill ? FillRule::Winding : FillRule::EvenOdd,
                  placement_.displayWidth, placement_.displayHeight);
  }
  if (!fill) return true;
  fill->penMode = PenModeFor(state_.brush.dark);
  const std::size_t pixels = fill->kind == Kind::Picture ? PicturePixels(*fill) : 0;
  if (pixels > builder_.PixelsLeft()) return false;
  builder_.CountPixels(pixels);
  builder_.Add(std::move(*fill));
  return true;
}

bool Canvas::Polygons(const std::vector<std::vector<Point>>& polygons) {
  Outlines outlines;
  for (const std::vector<Point>& polygon : polygons) {
    builder_.CountVertices(polygon.size());
    outlines.push_back(ToDrawing(polygon));
  }
  const bool filled = AddFill(outlines);
  for (std::vector<Point>& outline : outlines) {
    if (outline.empty()) continue;
    const Point first = outline.front();
    outline.push_back(first);
    DrawingObject object;
    object.kind = Kind::Polyline;
    object.vertices = std::move(outline);
    AddStroke(std::move(object));
  }
  return filled;
}

bool Canvas::AddCurve(std::vector<Point> points, bool filled) {
  builder_.CountVertices(points.size());
  const bool done = !filled || AddFill({points});
  DrawingObject object;
  object.kind = Kind::Polyline;
  object.vertices = std::move(points);
  AddStroke(std::move(object));
  return done;
}

bool Canvas::Arc(ArcKind kind, Point upperLeft, Point lowerRight, Point from, Point to) {
  DrawingObject frame;
  frame.kind = Kind::Ellipse;
  SetBox(frame, upperLeft, lowerRight);
  return AddCurve(ArcPoints(kind, BoundsOf(frame), ToDrawing(from), ToDrawing(to)),
                  kind != ArcKind::Arc);
}

bool Canvas::RoundedBox(Point upperLeft, Point lowerRight, Point corner) {
  const Exact none = ToDisplay(upperLeft);
  const Exact ellipse = ToDisplay({upperLeft.x + corner.x, upperLeft.y + corner.y});
  const auto radius = [](double length) { return static_cast<int>(std::abs(length) / 2); };
  const int radiusX = radius(ellipse.x - none.x);
  const int radiusY = radius(ellipse.y - none.y);
  if (radiusX == 0 || radiusY == 0 || !placement_.foreign) {
    Boxed(Kind::Rectangle, upperLeft, lowerRight);
    return true;
  }
  DrawingObject frame;
  frame.kind = Kind::Rectangle;
  SetBox(frame, upperLeft, lowerRight);
  return AddCurve(wmf::RoundedBox(BoundsOf(frame), radiusX, radiusY), true);
}

void Canvas::Boxed(Kind kind, Point upperLeft, Point lowerRight) {
  DrawingObject object;
  object.kind = kind;
  SetBox(object, upperLeft, lowerRight);
  AddShape(std::move(object));
}

void Canvas::FilledBox(Point upperLeft, Point size, bool dark) {
  DrawingObject object;
  object.kind = Kind::Rectangle;
  object.filled = true;
  object.penMode = PenModeFor(dark);
  SetBox(object, upperLeft, {upperLeft.x + size.x, upperLeft.y + size.y});
  builder_.Add(std::move(object));
}

void Canvas::Pixel(Point point, bool dark) {
  DrawingObject object;
  object.kind = Kind::Line;
  object.vertices = ToDrawing({point, point});
  object.penMode = PenModeFor(dark);
  builder_.CountVertices(2);
  builder_.Add(std::move(object));
}

bool Canvas::Image(Point upperLeft, Point size, DrawingObject object) {
  object.kind = Kind::Picture;
  object.penMode = placement_.foreign ? PenMode::Draw : state_.penMode;
  SetBox(object, upperLeft, {upperLeft.x + size.x, upperLeft.y + size.y});
  const std::size_t pixels = PicturePixels(object);
  if (pixels > builder_.PixelsLeft()) return false;
  builder_.CountPixels(pixels);
  builder_.Add(std::move(object));
  return true;
}

void Canvas::Text(Point reference, std::string_view text) {
  if (text.empty()) return;
  const double scaleY = state_.windowExtent.y == 0
                            ? placement_.scale
                            : placement_.scale * std::abs(static_cast<double>(firstExtent_.y) /
                                                          state_.windowExtent.y);
  constexpr int kUnknownHeight = 16;
  const int height = state_.font.height == 0 ? kUnknownHeight : std::abs(state_.font.height);
  TextAttributes style = NearestStyle(fonts_, state_.font, height * scaleY,
                                      std::abs(state_.font.width) * placement_.scale);
  style.inverse = state_.opaqueGround && state_.darkGround && !state_.darkText;

  std::string characters = ToLatin1(std::string(text));
  // Older drawings carry the attributes in front of the text.
  if (HasPrefix(characters)) {
    DrawingObject prefixed;
    TakePrefixedText(prefixed, characters);
    style = prefixed.style.value_or(style);
    characters = prefixed.text;
  }
  DrawingObject object = MakeText(ToDrawing(reference), style, characters, fonts_);
  if (!style.inverse) object.penMode = PenModeFor(state_.darkText);
  const Box box = BoundsOf(object);
  const unsigned align = state_.textAlign;
  if ((align & U_TA_CENTER) == U_TA_CENTER) {
    MoveBy(object, -box.Width() / 2, 0);
  } else if ((align & U_TA_RIGHT) != 0) {
    MoveBy(object, -box.Width(), 0);
  }
  if ((align & U_TA_BASELINE) == U_TA_BASELINE) {
    MoveBy(object, 0, box.Height() * 4 / 5);
  } else if ((align & U_TA_BOTTOM) != 0) {
    MoveBy(object, 0, box.Height());
  }
  builder_.Add(std::move(object));
}

void Canvas::OwnText(Point corner1, Point corner2, std::string_view prefixedText) {
  DrawingObject object;
  object.kind = Kind::Text;
  object.penMode = state_.penMode;
  object.corner1 = ToDrawing(corner1);
  object.corner2 = ToDrawing(corner2);
  TakePrefixedText(object, prefixedText);
  builder_.Add(std::move(object));
}

}  // namespace kelvo::wmf
