#include "graphics/editing.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "graphics/prepare.h"

namespace kelvo {

namespace {

bool IsSelected(const DrawingObject& object) { return object.selected; }

std::vector<DrawingObject*> Selected(Drawing& drawing) {
  std::vector<DrawingObject*> selected;
  for (DrawingObject& object : drawing) {
    if (object.selected) selected.push_back(&object);
  }
  return selected;
}

int NearestZoom(int length, int cellLength, int maxZoom) {
  const double zoom = static_cast<double>(length) / std::max(1, cellLength);
  return std::clamp(static_cast<int>(std::lround(zoom)), 1, maxZoom);
}

// Inverse texts have one of their own.
PenMode PenModeOf(const TextAttributes& style) {
  return style.inverse ? PenMode::InverseText : PenMode::Draw;
}

void FitText(DrawingObject& object, const DeviceFonts& fonts) {
  if (object.kind != Kind::Text) return;
  const Box box = BoundsOf(object);
  TextAttributes style = object.style.value_or(TextAttributes());
  style.zoomX = style.zoomY = 1;
  SetStyle(object, style, fonts);
  const Box cell = BoundsOf(object);
  style.zoomX = NearestZoom(box.Width(), cell.Width(), kMaxZoomX);
  style.zoomY = NearestZoom(box.Height(), cell.Height(), kMaxZoomY);
  SetStyle(object, style, fonts);
}

// What an alignment moves an object by.
Point AlignmentStep(const Box& box, Alignment alignment, const Box& frame) {
  switch (alignment) {
    case Alignment::Left:
      return {frame.left - box.left, 0};
    case Alignment::CentreX:
      return {(frame.left + frame.right - box.left - box.right) / 2, 0};
    case Alignment::Right:
      return {frame.right - box.right, 0};
    case Alignment::Top:
      return {0, frame.top - box.top};
    case Alignment::CentreY:
      return {0, (frame.bottom + frame.top - box.bottom - box.top) / 2};
    case Alignment::Bottom:
      return {0, frame.bottom - box.bottom};
  }
  return {};
}

}  // namespace

bool AnySelected(const Drawing& drawing) {
  return std::any_of(drawing.begin(), drawing.end(), IsSelected);
}

std::size_t SelectedCount(const Drawing& drawing) {
  return static_cast<std::size_t>(std::count_if(drawing.begin(), drawing.end(), IsSelected));
}

std::optional<std::size_t> OnlySelected(const Drawing& drawing) {
  if (SelectedCount(drawing) != 1) return std::nullopt;
  const auto selected = std::find_if(drawing.begin(), drawing.end(), IsSelected);
  return static_cast<std::size_t>(selected - drawing.begin());
}

void SelectAll(Drawing& drawing, bool selected) {
  for (DrawingObject& object : drawing) object.selected = selected;
}

void SelectInside(Drawing& drawing, const Box& box) {
  for (DrawingObject& object : drawing) {
    const Box own = BoundsOf(object);
    const bool inside = own.left >= box.left && own.right <= box.right &&
                        own.bottom >= box.bottom && own.top <= box.top;
    object.selected = object.selected || inside;
  }
}

Box SelectionBounds(const Drawing& drawing) {
  std::optional<Box> bounds;
  for (const DrawingObject& object : drawing) {
    if (!object.selected) continue;
    const Box box = BoundsOf(object);
    bounds = bounds ? United(*bounds, box) : box;
  }
  return bounds.value_or(Box());
}

void DeleteSelected(Drawing& drawing) { std::erase_if(drawing, IsSelected); }

void GroupSelected(Drawing& drawing) {
  std::size_t left = SelectedCount(drawing);
  if (left < 2) return;
  DrawingObject group;
  Drawing grouped;
  for (DrawingObject& object : drawing) {
    if (!object.selected) {
      grouped.push_back(std::move(object));
      continue;
    }
    object.selected = false;
    group.members.push_back(std::move(object));
    if (--left > 0) continue;
    group.selected = true;
    grouped.push_back(std::exchange(group, {}));
  }
  drawing = std::move(grouped);
}

void UngroupSelected(Drawing& drawing) {
  Drawing dissolved;
  for (DrawingObject& object : drawing) {
    if (object.selected && object.kind == Kind::Group) {
      SelectAll(object.members, true);
      std::move(object.members.begin(), object.members.end(), std::back_inserter(dissolved));
    } else {
      dissolved.push_back(std::move(object));
    }
  }
  drawing = std::move(dissolved);
}

void ReorderSelected(Drawing& drawing, Order order) {
  const auto unselected = [](const DrawingObject& object) { return !object.selected; };
  if (order == Order::ToFront) {
    std::stable_partition(drawing.begin(), drawing.end(), unselected);
  } else if (order == Order::ToBack) {
    std::stable_partition(drawing.begin(), drawing.end(), IsSelected);
  } else if (order == Order::Forward) {
    for (std::size_t i = drawing.size(); i > 1; --i) {
      if (drawing[i - 2].selected && !drawing[i - 1].selected) {
        std::swap(drawing[i - 2], drawing[i - 1]);
      }
    }
  } else {
    for (std::size_t i = 1; i < drawing.size(); ++i) {
      if (drawing[i].selected && !drawing[i - 1].selected) std::swap(drawing[i], drawing[i - 1]);
    }
  }
}

void PutSelectedBefore(Drawing& drawing, std::size_t index) {
  const auto place = drawing.begin() + static_cast<std::ptrdiff_t>(std::min(index, drawing.size()));
  std::stable_partition(drawing.begin(), place,
                        [](const DrawingObject& object) { return !object.selected; });
  std::stable_partition(place, drawing.end(), IsSelected);
}

void AlignSelected(Drawing& drawing, Alignment alignment, const Box& display) {
  const Box frame = SelectedCount(drawing) == 1 ? display : SelectionBounds(drawing);
  for (DrawingObject* object : Selected(drawing)) {
    const Point step = AlignmentStep(BoundsOf(*object), alignment, frame);
    MoveBy(*object, step.x, step.y);
  }
}

void DistributeSelected(Drawing& drawing, Axis axis) {
  std::vector<DrawingObject*> objects = Selected(drawing);
  if (objects.size() < 3) return;
  const auto low = [axis](const DrawingObject* o) {
    return axis == Axis::X ? BoundsOf(*o).left : BoundsOf(*o).bottom;
  };
  const auto length = [axis](const DrawingObject* o) {
    return axis == Axis::X ? BoundsOf(*o).Width() : BoundsOf(*o).Height();
  };
  std::stable_sort(objects.begin(), objects.end(),
                   [&](const auto* a, const auto* b) { return low(a) < low(b); });
  double room = low(objects.back()) - low(objects.front());
  for (std::size_t i = 0; i + 1 < objects.size(); ++i) room -= length(objects[i]);
  const double gap = room / static_cast<double>(objects.size() - 1);
  double next = low(objects.front());
  for (DrawingObject* object : objects) {
    const int step = static_cast<int>(std::lround(next)) - low(object);
    next += length(object) + gap;
    MoveBy(*object, axis == Axis::X ? step : 0, axis == Axis::X ? 0 : step);
  }
}

void MoveSelected(Drawing& drawing, int dx, int dy) {
  for (DrawingObject* object : Selected(drawing)) MoveBy(*object, dx, dy);
}

void StretchSelected(Drawing& drawing, const Box& from, const Box& to, const DeviceFonts& fonts) {
  for (DrawingObject* object : Selected(drawing)) Stretch(*object, from, to);
  ForEachSelected(drawing, [&](DrawingObject& object) {
    FitText(object, fonts);
    PrepareForBox(object);
  });
}

std::vector<DrawingObject> CopySelected(const Drawing& drawing) {
  std::vector<DrawingObject> copies;
  std::copy_if(drawing.begin(), drawing.end(), std::back_inserter(copies), IsSelected);
  return copies;
}

void Paste(Drawing& drawing, std::vector<DrawingObject> objects, int dx, int dy) {
  SelectAll(drawing, false);
  for (DrawingObject& object : objects) {
    MoveBy(object, dx, dy);
    object.selected = true;
    drawing.push_back(std::move(object));
  }
}

void SetPenMode(Drawing& drawing, PenMode penMode) {
  ForEachSelected(drawing, [penMode](DrawingObject& object) {
    if (object.kind != Kind::Text && object.kind != Kind::Group) object.penMode = penMode;
  });
}

void SetFilled(Drawing& drawing, bool filled) {
  ForEachSelected(drawing, [filled](DrawingObject& object) {
    if (CanBeFilled(object.kind)) object.filled = filled;
  });
}

DrawingObject MakeText(Point topLeft, const TextAttributes& style, std::string text,
                       const DeviceFonts& fonts) {
  DrawingObject object;
  object.kind = Kind::Text;
  object.penMode = PenModeOf(style);
  object.corner1 = object.corner2 = topLeft;
  object.text = std::move(text);
  SetStyle(object, style, fonts);
  return object;
}

void SetStyle(DrawingObject& object, const TextAttributes& style, const DeviceFonts& fonts) {
  object.style = style;
  const DeviceFont& font = fonts.Font(style.font);
  const int cells = std::max(1, static_cast<int>(object.text.size()));
  const int width = cells * std::max(1, font.Width()) * std::clamp(style.zoomX, 1, kMaxZoomX);
  const int height = std::max(1, font.Height()) * std::clamp(style.zoomY, 1, kMaxZoomY);
  const Box box = BoundsOf(object);
  SetCorners(object, {box.left, box.top - height + 1, box.left + width - 1, box.top});
}

void SetText(DrawingObject& object, std::string text, const DeviceFonts& fonts) {
  object.text = std::move(text);
  SetStyle(object, object.style.value_or(TextAttributes()), fonts);
}

void ChangeTexts(Drawing& drawing, const std::function<void(TextAttributes&)>& change,
                 const DeviceFonts& fonts) {
  ForEachSelected(drawing, [&](DrawingObject& object) {
    if (object.kind != Kind::Text) return;
    TextAttributes attributes = object.style.value_or(TextAttributes());
    change(attributes);
    object.penMode = PenModeOf(attributes);
    SetStyle(object, attributes, fonts);
  });
}

void OutlineSelected(Drawing& drawing) {
  ForEachSelected(drawing, [](DrawingObject& object) {
    if (object.kind != Kind::Vertices || object.vertices.empty()) return;
    object.kind = Kind::Polyline;
    object.filled = false;
    if (!(object.vertices.front() == object.vertices.back())) {
      const Point first = object.vertices.front();
      object.vertices.push_back(first);
    }
  });
}

Point Snapped(Point p, int step) {
  if (step < 2) return p;
  const auto nearest = [step](int value) {
    return static_cast<int>(std::floor((value + step / 2.0) / step)) * step;
  };
  return {nearest(p.x), nearest(p.y)};
}

}  // namespace kelvo
