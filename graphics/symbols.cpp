#include "graphics/symbols.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "graphics/editing.h"
#include "graphics/pic_reader.h"

namespace kelvo {

namespace {

// The pixels of a symbol: x and y count from its upper left corner to `end`, `middle` lies between.
class Sketch {
 public:
  explicit Sketch(int size) : end(size - 2), middle((size - 2) / 2) {}

  Sketch& Lines(const std::vector<Point>& points) {
    DrawingObject& object = Add(points.size() == 2 ? Kind::Line : Kind::Polyline);
    for (const Point& p : points) object.vertices.push_back(Upward(p));
    return *this;
  }
  Sketch& Box(Kind kind, Point topLeft, Point bottomRight, bool filled = false) {
    DrawingObject& object = Add(kind);
    object.filled = filled;
    object.corner1 = Upward({bottomRight.x, topLeft.y});
    object.corner2 = Upward({topLeft.x, bottomRight.y});
    return *this;
  }
  Sketch& Circle() { return Box(Kind::Ellipse, {0, 0}, {end, end}); }
  // Where the circle meets the diagonal.
  int OnCircle() const { return middle - static_cast<int>(std::lround(middle * std::sqrt(0.5))); }
  Drawing Take() { return std::move(drawing_); }

  const int end;
  const int middle;

 private:
  Point Upward(Point p) const { return {p.x, end - p.y}; }
  DrawingObject& Add(Kind kind) {
    drawing_.emplace_back().kind = kind;
    return drawing_.back();
  }

  Drawing drawing_;
};

// Lines at 45°, and such as go over an odd number of pixels, have no pixel halfway between two, and
// so are mirrored exactly.

Drawing ArrowRight(int size) {
  Sketch s(size);
  const int shaft = size / 6;
  const int up = s.middle - shaft;
  const int down = s.middle + shaft;
  s.Lines({{0, up},
           {s.middle, up},
           {s.middle, 0},
           {s.end, s.middle},
           {s.middle, s.end},
           {s.middle, down},
           {0, down},
           {0, up}});
  return s.Take();
}

template <typename Change>
Drawing Turned(Drawing drawing, Change change) {
  for (DrawingObject& object : drawing) {
    for (Point& p : object.vertices) p = change(p);
  }
  return drawing;
}

Drawing ArrowLeft(int size) {
  return Turned(ArrowRight(size), [size](Point p) { return Point{size - 2 - p.x, p.y}; });
}

Drawing ArrowUp(int size) {
  return Turned(ArrowRight(size), [](Point p) { return Point{p.y, p.x}; });
}

Drawing ArrowDown(int size) {
  return Turned(ArrowRight(size), [size](Point p) { return Point{p.y, size - 2 - p.x}; });
}

Drawing Warning(int size) {
  Sketch s(size);
  const int half = size / 32;  // of the mark's width
  const int left = s.middle - half;
  const int right = s.middle + half;
  const int dot = s.end - 1 - size / 8;
  const int base = s.end - 1;
  s.Lines({{s.middle, 0}, {s.end, base}, {0, base}, {s.middle, 0}});
  s.Box(Kind::Rectangle, {left, size * 5 / 16}, {right, dot - 3 - half}, true);
  s.Box(Kind::Rectangle, {left, dot - half}, {right, dot}, true);
  return s.Take();
}

// It points to where it delivers.
Drawing Pump(int size) {
  Sketch s(size);
  const int low = s.OnCircle();
  const int back = low + (s.end - low + 1) % 2;
  s.Circle().Lines({{back, low}, {s.end, s.middle}, {back, s.end - low}, {back, low}});
  return s.Take();
}

// Two triangles, tip to tip, with a hand wheel on its stem.
Drawing Valve(int size) {
  Sketch s(size);
  const int half = size / 4;
  const int axis = s.end - half;
  for (const int side : {0, s.end}) {
    s.Lines({{s.middle, axis}, {side, axis - half}, {side, axis + half}, {s.middle, axis}});
  }
  s.Lines({{s.middle, axis}, {s.middle, size / 8}});
  s.Lines({{s.middle - half, size / 8}, {s.middle + half, size / 8}});
  return s.Take();
}

Drawing Motor(int size) {
  Sketch s(size);
  const int reach = s.middle / 2;
  const int left = s.middle - reach;
  const int right = s.middle + reach;
  const int top = s.middle - reach;
  const int bottom = s.middle + reach;
  s.Circle().Lines(
      {{left, bottom}, {left, top}, {s.middle, s.middle}, {right, top}, {right, bottom}});
  return s.Take();
}

// Half full.
Drawing Tank(int size) {
  Sketch s(size);
  const int corner = size / 6;
  const int left = size / 8;
  const int right = s.end - left;
  s.Lines({{left + corner, 0},
           {right - corner, 0},
           {right, corner},
           {right, s.end - corner},
           {right - corner, s.end},
           {left + corner, s.end},
           {left, s.end - corner},
           {left, corner},
           {left + corner, 0}});
  s.Lines({{left, s.middle}, {right, s.middle}});
  for (int y = s.middle + 2, in = 2; y < s.end - corner; y += 2, in += 1) {
    s.Lines({{left + in, y}, {right - in, y}});
  }
  return s.Take();
}

Drawing Lamp(int size) {
  Sketch s(size);
  const int low = s.OnCircle();
  const int high = s.end - low;
  s.Circle().Lines({{low, low}, {high, high}}).Lines({{low, high}, {high, low}});
  return s.Take();
}

Drawing Door(int size) {
  Sketch s(size);
  const int left = size / 4;
  const int right = s.end - left;
  const int knob = right - size / 8;
  s.Box(Kind::Rectangle, {left, 0}, {right, s.end});
  s.Lines({{0, s.end}, {s.end, s.end}});
  s.Box(Kind::Rectangle, {knob, s.middle}, {knob + size / 24, s.middle + size / 12}, true);
  return s.Take();
}

constexpr auto kDelivered = std::to_array<DeliveredSymbol>({{"Pfeil rechts", ArrowRight},
                                                            {"Pfeil links", ArrowLeft},
                                                            {"Pfeil auf", ArrowUp},
                                                            {"Pfeil ab", ArrowDown},
                                                            {"Warnung", Warning},
                                                            {"Pumpe", Pump},
                                                            {"Ventil", Valve},
                                                            {"Motor", Motor},
                                                            {"Behälter", Tank},
                                                            {"Lampe", Lamp},
                                                            {"Tür", Door}});

}  // namespace

std::span<const DeliveredSymbol> DeliveredSymbols() { return kDelivered; }

DrawingObject AsSymbol(Drawing objects) {
  SelectAll(objects, false);
  DrawingObject symbol;
  if (objects.size() == 1) {
    symbol = std::move(objects.front());
  } else {
    symbol.members = std::move(objects);
  }
  const Box box = BoundsOf(symbol);
  MoveBy(symbol, -box.left, -box.bottom);
  return symbol;
}

Translation SymbolCommands(const Drawing& objects, std::int64_t blackThreshold) {
  const DrawingObject symbol = AsSymbol(objects);
  TerminalTraits terminal;
  terminal.displayHeight = BoundsOf(symbol).Height();
  terminal.blackThreshold = blackThreshold;
  terminal.terminalVersion = 1;  // any: then it takes pixel widths, and is not asked
  return CreatePic({symbol}, terminal);
}

std::optional<DrawingObject> SymbolOf(std::string_view commands, const DeviceFonts& fonts) {
  LoadedDrawing loaded = ReadPic(commands, 1, fonts);
  if (!loaded.error.empty() || loaded.drawing.empty()) return std::nullopt;
  return AsSymbol(std::move(loaded.drawing));
}

}  // namespace kelvo
