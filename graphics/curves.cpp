#include "graphics/curves.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

namespace kelvo {

namespace {

constexpr int kFullTurn = 360;
constexpr double kLastDigits = 1e-9;  // of sine and cosine
constexpr double kTurn = 2 * std::numbers::pi;

double Radians(int degrees) { return degrees * std::numbers::pi / 180; }

// From the nearer edge, and a half towards it: so what mirrors each other is rounded alike. In the
// middle the share's sign decides.
int Along(int low, int high, double share) {
  const double half = (high - low) / 2.0;
  const auto inwards = static_cast<int>(std::lround(half * (1 - std::abs(share)) - kLastDigits));
  return std::signbit(share) ? low + inwards : high - inwards;
}

Point At(const Box& box, double cosine, double sine) {
  return {Along(box.left, box.right, cosine), Along(box.bottom, box.top, sine)};
}

struct ArcPixel {
  double angle;
  Point at;
};

// The other leg of a right triangle whose long side is 1; never quite nothing, so that both sides
// of it can be told.
double Other(double leg) { return std::sqrt(std::max(kLastDigits * kLastDigits, 1 - leg * leg)); }

double Share(int at, int low, int high) {
  return high == low ? 0 : (2.0 * at - low - high) / (high - low);
}

// The ellipse's pixels: one in each column where it is flat, one in each row where it is steep, and
// where it touches the box.
std::vector<ArcPixel> EllipsePixels(const Box& box) {
  const int width = box.right - box.left;
  const int height = box.top - box.bottom;
  std::vector<ArcPixel> pixels;
  const auto add = [&](double cosine, double sine) {
    pixels.push_back({std::atan2(sine, cosine), At(box, cosine, sine)});
  };
  for (int x = box.left; x <= box.right; ++x) {
    const double cosine = Share(x, box.left, box.right);
    const bool flat = width * Other(cosine) + kLastDigits >= height * std::abs(cosine);
    if (!flat && x > box.left && x < box.right) continue;
    for (const double sine : {Other(cosine), -Other(cosine)}) add(cosine, sine);
  }
  for (int y = box.bottom; y <= box.top; ++y) {
    const double sine = Share(y, box.bottom, box.top);
    const bool steep = height * Other(sine) + kLastDigits >= width * std::abs(sine);
    if (!steep && y > box.bottom && y < box.top) continue;
    for (const double cosine : {Other(sine), -Other(sine)}) add(cosine, sine);
  }
  return pixels;
}

// Where flat and steep meet a pixel may be missing; what lies there halfway fills the gap.
void AppendJoined(std::vector<Point>& points, const Box& box, const ArcPixel& from,
                  const ArcPixel& to) {
  constexpr double kSameAngle = 1e-6;
  const bool gap = std::abs(to.at.x - from.at.x) > 1 || std::abs(to.at.y - from.at.y) > 1;
  if (gap && to.angle - from.angle > kSameAngle) {
    const double angle = (from.angle + to.angle) / 2;
    const ArcPixel halfway{angle, At(box, std::cos(angle), std::sin(angle))};
    AppendJoined(points, box, from, halfway);
    AppendJoined(points, box, halfway, to);
  } else if (!(points.back() == to.at)) {
    points.push_back(to.at);
  }
}

// Those of a part of it, in their order.
std::vector<Point> ArcPixels(const Box& box, double from, double sweep) {
  const auto atAngle = [&](double angle) {
    return ArcPixel{angle, At(box, std::cos(angle), std::sin(angle))};
  };
  std::vector<ArcPixel> pixels = {atAngle(from), atAngle(from + sweep)};
  for (ArcPixel pixel : EllipsePixels(box)) {
    pixel.angle = from + std::fmod(pixel.angle - from + 2 * kTurn, kTurn);
    if (pixel.angle > from && pixel.angle < from + sweep) pixels.push_back(pixel);
  }
  std::sort(pixels.begin(), pixels.end(),
            [](const ArcPixel& a, const ArcPixel& b) { return a.angle < b.angle; });
  std::vector<Point> points = {pixels.front().at};
  for (std::size_t i = 1; i < pixels.size(); ++i) {
    AppendJoined(points, box, pixels[i - 1], pixels[i]);
  }
  return points;
}

// Whether a line from one to the other has the pixels between them, none of which lies exactly
// beside it: of two such pixels the Terminal may take either.
bool IsLine(const Point* first, const Point* last) {
  const std::int64_t dx = last->x - first->x;
  const std::int64_t dy = last->y - first->y;
  const bool flat = std::abs(dx) >= std::abs(dy);
  const std::int64_t steps = std::max(std::abs(dx), std::abs(dy));
  return std::all_of(first + 1, last, [&](const Point& p) {
    const std::int64_t x = p.x - first->x;
    const std::int64_t y = p.y - first->y;
    const bool between =
        flat ? x * dx > 0 && std::abs(x) < steps : y * dy > 0 && std::abs(y) < steps;
    return between && 2 * std::abs(x * dy - y * dx) < steps;
  });
}

// The same pixels with the fewest points that a look at what comes next finds.
std::vector<Point> Joined(const std::vector<Point>& pixels) {
  constexpr std::size_t kFarthest = 100;
  std::vector<Point> points = {pixels.front()};
  for (std::size_t from = 0; from + 1 < pixels.size();) {
    std::size_t to = std::min(from + kFarthest, pixels.size() - 1);
    while (to > from + 1 && !IsLine(&pixels[from], &pixels[to])) --to;
    points.push_back(pixels[to]);
    from = to;
  }
  return points;
}

std::vector<Point> Arc(const Box& box, double from, double sweep) {
  return Joined(ArcPixels(box, from, sweep));
}

// A single pixel is a line as well.
std::vector<Point> AtLeastTwo(std::vector<Point> points) {
  if (points.size() == 1) points.push_back(points.front());
  return points;
}

}  // namespace

std::vector<Point> RoundedRectangle(const Box& box, int radius) {
  const int widest = (std::min(box.Width(), box.Height()) - 1) / 2;
  const int side = 2 * std::clamp(radius, 0, widest);
  const Box corners[] = {{box.right - side, box.top - side, box.right, box.top},
                         {box.left, box.top - side, box.left + side, box.top},
                         {box.left, box.bottom, box.left + side, box.bottom + side},
                         {box.right - side, box.bottom, box.right, box.bottom + side}};
  std::vector<Point> points;
  for (int i = 0; i < 4; ++i) {
    for (const Point& p : Arc(corners[i], Radians(90 * i), Radians(90))) {
      if (points.empty() || !(points.back() == p)) points.push_back(p);
    }
  }
  const Point first = points.front();
  if (!(points.back() == first)) points.push_back(first);
  return AtLeastTwo(std::move(points));
}

std::vector<Point> EllipseArc(const Box& box, const CurveStyle& style) {
  const int turn = ((style.arcTo - style.arcFrom) % kFullTurn + kFullTurn) % kFullTurn;
  const bool sector = style.sector && turn != 0;
  const Point middle{Along(box.left, box.right, 0), Along(box.bottom, box.top, 0)};
  std::vector<Point> points;
  if (sector) points.push_back(middle);
  const double sweep = Radians(turn == 0 ? kFullTurn : turn);
  for (const Point& p : Arc(box, Radians(style.arcFrom), sweep)) points.push_back(p);
  if (sector) points.push_back(middle);
  return AtLeastTwo(std::move(points));
}

}  // namespace kelvo
