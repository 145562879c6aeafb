#include "graphics/wmf_shapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "graphics/flood_fill.h"

namespace kelvo::wmf {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

struct Ellipse {
  double centreX;
  double centreY;
  double radiusX;
  double radiusY;
};

Ellipse In(const Box& box) {
  return {(box.left + box.right) / 2.0, (box.bottom + box.top) / 2.0, (box.right - box.left) / 2.0,
          (box.top - box.bottom) / 2.0};
}

// Of the circle that the ellipse is a stretched picture of.
double AngleTowards(const Ellipse& ellipse, Point p) {
  return std::atan2((p.y - ellipse.centreY) / std::max(ellipse.radiusY, 0.5),
                    (p.x - ellipse.centreX) / std::max(ellipse.radiusX, 0.5));
}

// Some pixels apart, and never many of them, however large the ellipse is.
void AddArc(std::vector<Point>& points, const Ellipse& ellipse, double from, double sweep) {
  constexpr double kPixelsApart = 3;
  constexpr double kMostPoints = 180;
  const double length = sweep * std::max(ellipse.radiusX, ellipse.radiusY);
  const int steps = static_cast<int>(std::clamp(length / kPixelsApart, 2.0, kMostPoints));
  for (int i = 0; i <= steps; ++i) {
    const double angle = from + sweep * i / steps;
    const double x = ellipse.centreX + ellipse.radiusX * std::cos(angle);
    const double y = ellipse.centreY + ellipse.radiusY * std::sin(angle);
    const Point p{static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
    if (points.empty() || !(points.back() == p)) points.push_back(p);
  }
}

void Close(std::vector<Point>& points) {
  const Point first = points.front();
  if (points.size() == 1 || !(points.back() == first)) points.push_back(first);
}

Box Visible(const Outlines& outlines, int width, int height) {
  std::optional<Box> box;
  for (const std::vector<Point>& outline : outlines) {
    for (const Point& p : outline) {
      const Box own{p.x, p.y, p.x, p.y};
      box = box ? United(*box, own) : own;
    }
  }
  const Box all = box.value_or(Box{0, 0, -1, -1});
  return {std::max(all.left, 0), std::max(all.bottom, 0), std::min(all.right, width - 1),
          std::min(all.top, height - 1)};
}

}  // namespace

std::vector<Point> ArcPoints(ArcKind kind, const Box& box, Point from, Point to) {
  const Ellipse ellipse = In(box);
  const double begin = AngleTowards(ellipse, from);
  double sweep = AngleTowards(ellipse, to) - begin;
  if (sweep <= 0) sweep += kTurn;
  std::vector<Point> points;
  AddArc(points, ellipse, begin, sweep);
  if (kind == ArcKind::Pie) {
    points.push_back({static_cast<int>(std::lround(ellipse.centreX)),
                      static_cast<int>(std::lround(ellipse.centreY))});
  }
  if (kind != ArcKind::Arc || points.size() == 1) Close(points);
  return points;
}

std::vector<Point> RoundedBox(const Box& box, int radiusX, int radiusY) {
  const int rx = std::clamp(radiusX, 0, (box.Width() - 1) / 2);
  const int ry = std::clamp(radiusY, 0, (box.Height() - 1) / 2);
  const int middlesX[] = {box.right - rx, box.left + rx, box.left + rx, box.right - rx};
  const int middlesY[] = {box.top - ry, box.top - ry, box.bottom + ry, box.bottom + ry};
  std::vector<Point> points;
  for (int i = 0; i < 4; ++i) {
    const Ellipse corner{double(middlesX[i]), double(middlesY[i]), double(rx), double(ry)};
    AddArc(points, corner, kTurn / 4 * i, kTurn / 4);
  }
  Close(points);
  return points;
}

std::optional<DrawingObject> FillOf(const Outlines& outlines, FillRule rule, int displayWidth,
                                    int displayHeight) {
  const Box box = Visible(outlines, displayWidth, displayHeight);
  if (box.Width() < 1 || box.Height() < 1) return std::nullopt;
  std::vector<std::vector<PixelPoint>> polygons;
  for (const std::vector<Point>& outline : outlines) {
    std::vector<PixelPoint>& polygon = polygons.emplace_back();
    for (const Point& p : outline) polygon.push_back({p.x - box.left, box.top - p.y});
  }
  PixelMap area(box.Width(), box.Height());
  FillPolygons(area, polygons, rule, Ink::Set);
  auto fill = ObjectOf(area);
  if (fill) MoveBy(*fill, box.left, box.bottom);
  return fill;
}

}  // namespace kelvo::wmf
