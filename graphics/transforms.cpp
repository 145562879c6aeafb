#include "graphics/transforms.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "graphics/painter.h"
#include "graphics/prepare.h"

namespace kelvo {

namespace {

using PointMap = std::function<Point(Point)>;

Box Mapped(const Box& box, const PointMap& map) {
  const Point a = map({box.left, box.bottom});
  const Point b = map({box.right, box.top});
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// Moves every point; `turn` does the same to a picture.
void MapSelected(Drawing& drawing, const PointMap& map,
                 const std::function<void(DrawingObject&)>& turn) {
  ForEachSelected(drawing, [&](DrawingObject& object) {
    if (object.kind == Kind::Group) return;
    for (Point& vertex : object.vertices) vertex = map(vertex);
    if (!object.vertices.empty()) return;
    const Box before = BoundsOf(object);
    const Box after = Mapped(before, map);
    if (object.kind == Kind::Text) {
      MoveBy(object, (after.left + after.right - before.left - before.right) / 2,
             (after.bottom + after.top - before.bottom - before.top) / 2);
      return;
    }
    SetCorners(object, after);
    if (object.kind == Kind::Picture) turn(object);
  });
}

Picture PictureOf(const PixelMap& pixels, const Box& box) {
  std::vector<Colour> colours;
  for (int y = box.top; y >= box.bottom; --y) {
    for (int x = box.left; x <= box.right; ++x) {
      colours.push_back(pixels.At(x, pixels.Height() - 1 - y) ? kBlack : kWhite);
    }
  }
  return {box.Width(), box.Height(), std::move(colours)};
}

std::optional<Box> BoundsOfSet(const PixelMap& pixels) {
  std::optional<Box> bounds;
  for (int row = 0; row < pixels.Height(); ++row) {
    const int y = pixels.Height() - 1 - row;
    for (int x = 0; x < pixels.Width(); ++x) {
      if (pixels.At(x, row)) bounds = United(bounds.value_or(Box{x, y, x, y}), {x, y, x, y});
    }
  }
  return bounds;
}

// The object's box as far as it lies on the display, and all that is set: the box that a drawing
// gives a text need not be as large as the text.
std::optional<Box> SeenBounds(const DrawingObject& object, const PixelMap& pixels) {
  const Box all = BoundsOf(object);
  const Box box{std::max(all.left, 0), std::max(all.bottom, 0),
                std::min(all.right, pixels.Width() - 1), std::min(all.top, pixels.Height() - 1)};
  const std::optional<Box> set = BoundsOfSet(pixels);
  if (box.Width() < 1 || box.Height() < 1) return set;
  return set ? United(box, *set) : box;
}

}  // namespace

void FlipSelected(Drawing& drawing, Axis axis) {
  const Box box = SelectionBounds(drawing);
  const bool x = axis == Axis::X;
  MapSelected(
      drawing,
      [&](Point p) {
        return x ? Point{box.left + box.right - p.x, p.y} : Point{p.x, box.bottom + box.top - p.y};
      },
      [x](DrawingObject& picture) {
        // Top and bottom change places: half a turn of what is mirrored.
        for (int i = x ? 2 : 0; i < 2; ++i) TurnPicture(picture);
        MirrorPicture(picture);
      });
}

void TurnSelected(Drawing& drawing) {
  const Box box = SelectionBounds(drawing);
  MapSelected(
      drawing,
      [&](Point p) {
        return Point{box.left + p.y - box.bottom, box.bottom + box.right - p.x};
      },
      TurnPicture);
}

void InvertSelected(Drawing& drawing) {
  ForEachSelected(drawing, [](DrawingObject& object) {
    if (object.kind == Kind::Picture) InvertPicture(object);
  });
}

void MakePictureOfSelected(Drawing& drawing, const PixelView& view) {
  Drawing grouped = drawing;
  GroupSelected(grouped);
  const auto selected = std::find_if(grouped.begin(), grouped.end(),
                                     [](const DrawingObject& object) { return object.selected; });
  if (selected == grouped.end()) return;
  PixelMap pixels(view.width, view.height);
  PaintDrawing(pixels, {*selected}, view.fonts, view.blackThreshold, Unsent::Drawn);
  const std::optional<Box> box = SeenBounds(*selected, pixels);
  if (!box) return;
  DrawingObject picture;
  picture.kind = Kind::Picture;
  picture.selected = true;
  picture.picture = PictureOf(pixels, *box);
  SetCorners(picture, *box);
  *selected = std::move(picture);
  drawing = std::move(grouped);
}

void MakePicturesOfShapes(Drawing& drawing, const PixelView& view) {
  ForEachSelected(drawing, [&view](DrawingObject& object) {
    if (object.kind != Kind::Vertices) return;
    PixelMap pixels(view.width, view.height);
    DrawingObject shape = object;
    shape.penMode = PenMode::Draw;
    PaintDrawing(pixels, {shape}, view.fonts, view.blackThreshold, Unsent::Drawn);
    const std::optional<Box> box = BoundsOfSet(pixels);
    if (!box) return;
    object.kind = Kind::Picture;
    object.filled = false;
    object.vertices.clear();
    object.picture = PictureOf(pixels, *box);
    SetCorners(object, *box);
  });
}

}  // namespace kelvo
