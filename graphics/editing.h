#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/drawing.h"

// What the operator does to a drawing, as changes of its value. "Selected" means the objects of the
// outermost level; members of groups move with their group.

namespace kelvo {

bool AnySelected(const Drawing& drawing);
std::size_t SelectedCount(const Drawing& drawing);
/// The one object that is selected; nothing where there are none or several.
std::optional<std::size_t> OnlySelected(const Drawing& drawing);
void SelectAll(Drawing& drawing, bool selected);
/// Selects the objects that lie wholly inside `box`, in addition to those selected already.
void SelectInside(Drawing& drawing, const Box& box);
Box SelectionBounds(const Drawing& drawing);
/// The uppermost object whose pixels are within `tolerance` of `p`. The inside of an outline is not
/// the outline: within a frame a rubber band can begin.
std::optional<std::size_t> ObjectAt(const Drawing& drawing, Point p, double tolerance);
/// The next object at `p` below the selected one there, and behind the lowest the uppermost again;
/// without a selected one the uppermost.
std::optional<std::size_t> ObjectBelow(const Drawing& drawing, Point p, double tolerance);
/// Whether `p` lies within the outline of a selected object.
bool InsideSelected(const Drawing& drawing, Point p);

void DeleteSelected(Drawing& drawing);
/// Puts the selected objects into one group in the place of the uppermost.
void GroupSelected(Drawing& drawing);
/// Dissolves the selected groups; their members are selected afterwards.
void UngroupSelected(Drawing& drawing);

enum class Order { ToFront, Forward, Backward, ToBack };
void ReorderSelected(Drawing& drawing, Order order);
/// Puts the selected objects, in their order, in front of the one that is at `index` now.
void PutSelectedBefore(Drawing& drawing, std::size_t index);

enum class Alignment { Left, CentreX, Right, Top, CentreY, Bottom };
/// Within the selection's box; a single object within `display`.
void AlignSelected(Drawing& drawing, Alignment alignment, const Box& display);
enum class Axis { X, Y };
/// Makes the gaps between the selected objects equal; the outer two stay.
void DistributeSelected(Drawing& drawing, Axis axis);

void MoveSelected(Drawing& drawing, int dx, int dy);
/// Maps the selected objects from one box to another. Texts, whose cells come in whole sizes alone,
/// take the zoom that comes nearest; pictures are made anew from their source.
void StretchSelected(Drawing& drawing, const Box& from, const Box& to, const DeviceFonts& fonts);
std::vector<DrawingObject> CopySelected(const Drawing& drawing);
/// Adds the objects on top, moved by (dx, dy), and selects them alone.
void Paste(Drawing& drawing, std::vector<DrawingObject> objects, int dx, int dy);

/// Pen modes of texts follow from their attributes and stay.
void SetPenMode(Drawing& drawing, PenMode penMode);
void SetFilled(Drawing& drawing, bool filled);
DrawingObject MakeText(Point topLeft, const TextAttributes& style, std::string text,
                       const DeviceFonts& fonts);
/// Gives a text attributes and the box of its cells, at least one, so that an empty text can still
/// be seen and taken hold of; its top left corner stays.
void SetStyle(DrawingObject& text, const TextAttributes& style, const DeviceFonts& fonts);
/// Gives a text other letters; its attributes and its top left corner stay.
void SetText(DrawingObject& object, std::string text, const DeviceFonts& fonts);
/// Changes attributes of the selected texts; their top left corners stay.
void ChangeTexts(Drawing& drawing, const std::function<void(TextAttributes&)>& change,
                 const DeviceFonts& fonts);

/// Turns selected vertex shapes, which are never sent, into closed polylines, which are; what was
/// filled becomes an outline.
void OutlineSelected(Drawing& drawing);

/// The nearest point of a grid of `step` pixels; a step below 2 means no grid.
Point Snapped(Point p, int step);

/// Calls for an object and, where it is a group, for all its members.
template <typename Object, typename Call>
void ForEachMember(Object& object, Call& call) {
  call(object);
  for (auto& member : object.members) ForEachMember(member, call);
}

/// Applies `change` to the selected objects and, where they are groups, to all their members.
template <typename Change>
void ForEachSelected(Drawing& drawing, Change change) {
  for (DrawingObject& object : drawing) {
    if (object.selected) ForEachMember(object, change);
  }
}

}  // namespace kelvo
