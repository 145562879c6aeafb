#include "graphics/object_sight.h"

#include <utility>

#include "graphics/editing.h"
#include "graphics/painter.h"

namespace kelvo {

SightSearch::SightSearch(int displayWidth, int displayHeight, const DeviceFonts& fonts,
                         std::int64_t blackThreshold)
    : fonts_(fonts),
      blackThreshold_(blackThreshold),
      touched_(displayWidth, displayHeight),
      covered_(displayWidth, displayHeight) {}

void SightSearch::Begin(Drawing objects, const Drawing& above) {
  objects_ = std::move(objects);
  found_.assign(objects_.size(), Sight::Seen);
  covered_.Clear();
  for (const DrawingObject& object : above) Look(object);
}

bool SightSearch::Step(std::size_t objects) {
  for (; objects > 0 && !objects_.empty(); --objects) {
    found_[objects_.size() - 1] = Look(objects_.back());
    objects_.pop_back();
  }
  return objects_.empty();
}

// What erases touches the same pixels as what draws.
Sight SightSearch::Look(const DrawingObject& object) {
  Drawing alone = {object};
  const auto draw = [](DrawingObject& member) { member.penMode = PenMode::Draw; };
  ForEachMember(alone.front(), draw);
  touched_.Clear();
  PaintDrawing(touched_, alone, fonts_, blackThreshold_);
  switch (covered_.Add(touched_)) {
    case PixelMap::Added::Nothing:
      return Sight::Nothing;
    case PixelMap::Added::NothingNew:
      return Sight::Covered;
    case PixelMap::Added::New:
      break;
  }
  return Sight::Seen;
}

}  // namespace kelvo
