#include "graphics/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace kelvo {

namespace {

int Limited(int coordinate) { return std::clamp(coordinate, -kCoordinateLimit, kCoordinateLimit); }

std::int64_t FloorDivide(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

// The pixels from y0 to y1 of one column; none where y0 > y1.
void Column(PixelMap& map, int x, int y0, int y1, Ink ink) {
  const int end = std::min(y1, map.Height() - 1);
  for (int y = std::max(y0, 0); y <= end; ++y) map.Put(x, y, ink);
}

// Draws along the axis on which the line is longer: `along` counts from a0 to a1 (a0 < a1), and
// the other coordinate is the nearest whole number to the exact line. It is worked out for the
// first visible pixel and stepped from there, so a clipped line keeps the whole one's pixels.
template <typename Plot>
void StepLine(int a0, int b0, int a1, int b1, int mapLength, Plot plot) {
  const std::int64_t length = 2 * (std::int64_t{a1} - a0);
  const std::int64_t rise = 2 * (std::int64_t{b1} - b0);
  const int first = std::max(a0, 0);
  const int last = std::min(a1, mapLength - 1);
  const std::int64_t start = (first - a0) * rise + length / 2;
  std::int64_t across = b0 + FloorDivide(start, length);
  std::int64_t rest = start - FloorDivide(start, length) * length;
  for (int along = first; along <= last; ++along) {
    plot(along, static_cast<int>(across));
    rest += rise;
    if (rest >= length) {
      rest -= length;
      ++across;
    } else if (rest < 0) {
      rest += length;
      --across;
    }
  }
}

// How far the row `y` of an ellipse reaches from its centre column; -1 outside. A pixel belongs
// to it when the curve passes within half a pixel of it, measured along either axis.
int EllipseReach(int radiusX, int radiusY, int y) {
  if (y > radiusY) return -1;
  if (radiusY == 0) return radiusX;
  const double rx = radiusX;
  const double ry = radiusY;
  const double alongRow = rx * std::sqrt((ry - y) * (ry + y)) / ry + 0.5;
  const double low = 2.0 * y - 1.0;
  const double alongColumn = rx * std::sqrt((2 * ry - low) * (2 * ry + low)) / (2 * ry);
  const double reach = y == 0 ? rx : std::max(alongRow, alongColumn);
  return std::min(radiusX, static_cast<int>(reach));
}

// Where an outline crosses a row, and whether downward (1) or upward (-1).
struct Crossing {
  int x;
  int direction;
};

// Half-open crossing rule: an edge counts for the rows from its upper end to just above its lower
// one, so that a corner is never counted twice.
void AddCrossings(std::vector<Crossing>& crossings, const std::vector<PixelPoint>& points, int y) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    PixelPoint upper = points[i];
    PixelPoint lower = points[(i + 1) % points.size()];
    const int direction = upper.y > lower.y ? -1 : 1;
    if (direction < 0) std::swap(upper, lower);
    if (y < upper.y || y >= lower.y) continue;
    const std::int64_t height = lower.y - upper.y;
    const std::int64_t run = std::int64_t{lower.x - upper.x} * (y - upper.y);
    const auto x = static_cast<int>(upper.x + FloorDivide(2 * run + height, 2 * height));
    crossings.push_back({x, direction});
  }
}

void FillRow(PixelMap& map, std::vector<Crossing>& crossings, int y, FillRule rule, Ink ink) {
  std::sort(crossings.begin(), crossings.end(),
            [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
  int inside = 0;
  int start = 0;
  for (const Crossing& crossing : crossings) {
    const bool was = inside != 0;
    inside = rule == FillRule::EvenOdd ? 1 - inside : inside + crossing.direction;
    if (!was) start = crossing.x;
    if (was && inside == 0) map.PutRow(start, crossing.x, y, ink);
  }
}

std::optional<Ink> TextInk(TextMode mode, bool on) {
  switch (mode) {
    case TextMode::Replace:
      return on ? Ink::Set : Ink::Clear;
    case TextMode::Invert:
      return on ? std::optional(Ink::Invert) : std::nullopt;
    case TextMode::Clear:
      return on ? std::optional(Ink::Clear) : std::nullopt;
    case TextMode::Set:
      return on ? std::optional(Ink::Set) : std::nullopt;
  }
  return std::nullopt;
}

// The pixels of one row of a character's cell, bit width-1 on the left.
std::uint32_t StyledRow(const DeviceFont& font, unsigned char character, int y,
                        const TextStyle& style) {
  const std::uint32_t all = (std::uint32_t{2} << (font.Width() - 1)) - 1;
  std::uint32_t row = font.Row(character, y);
  if (style.bold && !DeviceFonts::IsBold(style.font)) row |= row >> 1;
  if (style.underline && y == font.Height() - 1) row = all;
  return style.inverse ? row ^ all : row;
}

// One row of a cell; neighbouring pixels that are alike at once.
void DrawCellRow(PixelMap& map, int left, int y, std::uint32_t row, int width,
                 const TextStyle& style) {
  const auto isSet = [&](int x) { return (row >> (width - 1 - x) & 1U) != 0; };
  for (int x = 0; x < width;) {
    const int from = x;
    while (x < width && isSet(x) == isSet(from)) ++x;
    const auto ink = TextInk(style.mode, isSet(from));
    if (ink) map.PutRow(left + from * style.zoomX, left + x * style.zoomX - 1, y, *ink);
  }
}

void DrawCell(PixelMap& map, const DeviceFont& font, int left, int top, unsigned char character,
              const TextStyle& style) {
  const int end = std::min(top + font.Height() * style.zoomY, map.Height());
  for (int y = std::max(top, 0); y < end; ++y) {
    const std::uint32_t row = StyledRow(font, character, (y - top) / style.zoomY, style);
    DrawCellRow(map, left, y, row, font.Width(), style);
  }
}

}  // namespace

void DrawLine(PixelMap& map, int x0, int y0, int x1, int y1, Ink ink) {
  PixelPoint from{Limited(x0), Limited(y0)};
  PixelPoint to{Limited(x1), Limited(y1)};
  if (from == to) {
    map.Put(from.x, from.y, ink);
  } else if (std::abs(to.x - from.x) >= std::abs(to.y - from.y)) {
    if (from.x > to.x) std::swap(from, to);
    StepLine(from.x, from.y, to.x, to.y, map.Width(), [&](int x, int y) { map.Put(x, y, ink); });
  } else {
    if (from.y > to.y) std::swap(from, to);
    StepLine(from.y, from.x, to.y, to.x, map.Height(), [&](int y, int x) { map.Put(x, y, ink); });
  }
}

void DrawRectangle(PixelMap& map, int x0, int y0, int x1, int y1, bool filled, Ink ink) {
  const auto [left, right] = std::minmax({Limited(x0), Limited(x1)});
  const auto [top, bottom] = std::minmax({Limited(y0), Limited(y1)});
  if (filled) {
    const int end = std::min(bottom, map.Height() - 1);
    for (int y = std::max(top, 0); y <= end; ++y) map.PutRow(left, right, y, ink);
    return;
  }
  map.PutRow(left, right, top, ink);
  if (bottom != top) map.PutRow(left, right, bottom, ink);
  Column(map, left, top + 1, bottom - 1, ink);
  if (right != left) Column(map, right, top + 1, bottom - 1, ink);
}

void DrawEllipse(PixelMap& map, int centreX, int centreY, int radiusX, int radiusY, bool filled,
                 Ink ink) {
  if (radiusX < 0 || radiusY < 0) return;
  const int cx = Limited(centreX);
  const int cy = Limited(centreY);
  const int rx = Limited(radiusX);
  const int ry = Limited(radiusY);
  const int end = std::min(cy + ry, map.Height() - 1);
  for (int y = std::max(cy - ry, 0); y <= end; ++y) {
    const int row = std::abs(y - cy);
    const int reach = EllipseReach(rx, ry, row);
    // Where the row beyond reaches, this row is inside; at the very end the outline closes.
    const int inner = filled ? -1 : std::min(EllipseReach(rx, ry, row + 1), reach - 1);
    if (inner < 0) {
      map.PutRow(cx - reach, cx + reach, y, ink);
    } else {
      map.PutRow(cx - reach, cx - inner - 1, y, ink);
      map.PutRow(cx + inner + 1, cx + reach, y, ink);
    }
  }
}

void FillPolygons(PixelMap& map, const std::vector<std::vector<PixelPoint>>& polygons,
                  FillRule rule, Ink ink) {
  int first = map.Height();
  int last = -1;
  for (const auto& polygon : polygons) {
    for (const PixelPoint& p : polygon) {
      first = std::min(first, p.y);
      last = std::max(last, p.y);
    }
  }
  std::vector<Crossing> crossings;
  for (int y = std::max(first, 0); y <= std::min(last, map.Height() - 1); ++y) {
    crossings.clear();
    for (const auto& polygon : polygons) AddCrossings(crossings, polygon, y);
    FillRow(map, crossings, y, rule, ink);
  }
}

void DrawPolygon(PixelMap& map, const std::vector<PixelPoint>& points, bool filled, Ink ink) {
  if (points.size() < 2) return;
  if (ink == Ink::Invert) {  // edges meet, and the outline lies on the inside: collect first
    PixelMap figure(map.Width(), map.Height());
    DrawPolygon(figure, points, filled, Ink::Set);
    DrawBitmap(map, 0, 0, figure, ink);
    return;
  }
  std::vector<PixelPoint> corners;
  corners.reserve(points.size());
  for (const PixelPoint& p : points) corners.push_back({Limited(p.x), Limited(p.y)});
  if (filled) FillPolygons(map, {corners}, FillRule::EvenOdd, ink);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const PixelPoint& next = corners[(i + 1) % corners.size()];
    DrawLine(map, corners[i].x, corners[i].y, next.x, next.y, ink);
  }
}

void DrawBitmap(PixelMap& map, int x, int y, const PixelMap& bits, Ink ink) {
  const int left = Limited(x);
  const int top = Limited(y);
  const int endX = std::min(left + bits.Width(), map.Width());
  const int endY = std::min(top + bits.Height(), map.Height());
  for (int row = std::max(top, 0); row < endY; ++row) {
    for (int column = std::max(left, 0); column < endX; ++column) {
      if (bits.At(column - left, row - top)) map.Put(column, row, ink);
    }
  }
}

int DrawText(PixelMap& map, const DeviceFonts& fonts, int x, int y, std::string_view text,
             const TextStyle& style) {
  const DeviceFont& font = fonts.Font(style.font);
  if (font.Empty()) return x;
  TextStyle inRange = style;
  inRange.zoomX = std::clamp(style.zoomX, 1, kMaxZoomX);
  inRange.zoomY = std::clamp(style.zoomY, 1, kMaxZoomY);
  const int advance = font.Width() * inRange.zoomX;
  int left = Limited(x);
  for (const char character : text) {
    if (left < map.Width()) {
      DrawCell(map, font, left, Limited(y), static_cast<unsigned char>(character), inRange);
    }
    left = Limited(left + advance);
  }
  return left;
}

}  // namespace kelvo
