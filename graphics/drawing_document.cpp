#include "graphics/drawing_document.h"

#include <utility>

#include "graphics/editing.h"
#include "graphics/points.h"

namespace kelvo {

namespace {

using Path = std::vector<std::size_t>;

template <typename Objects>
Objects& LevelOf(Objects& whole, const Path& path) {
  auto* level = &whole;
  for (const std::size_t index : path) level = &(*level)[index].members;
  return *level;
}

bool IsGroup(const Drawing& level, std::size_t index) {
  return index < level.size() && level[index].kind == Kind::Group;
}

// Whether a change has left the way to a group, and everything beside it, as it was.
bool Within(const Drawing& before, const Drawing& after, const Path& path) {
  const Drawing* was = &before;
  const Drawing* is = &after;
  for (const std::size_t index : path) {
    if (was->size() != is->size() || !IsGroup(*is, index)) return false;
    for (std::size_t i = 0; i < is->size(); ++i) {
      if (i != index && !((*was)[i] == (*is)[i])) return false;
    }
    was = &(*was)[index].members;
    is = &(*is)[index].members;
  }
  return true;
}

// Steps of different members must not merge, although all of them change the same group.
std::string Selection(const Drawing& level) {
  std::string flags;
  for (const DrawingObject& object : level) flags += object.selected ? '1' : '0';
  return flags;
}

}  // namespace

const Drawing& DrawingDocument::Current() const { return LevelOf(drawing_, path_); }

Drawing DrawingDocument::ShownWhole() const {
  Drawing whole = drawing_;
  if (preview_) LevelOf(whole, path_) = *preview_;
  return whole;
}

Drawing DrawingDocument::Above() const {
  Drawing above;
  const Drawing* level = &drawing_;
  for (const std::size_t index : path_) {
    above.insert(above.end(), level->begin() + static_cast<std::ptrdiff_t>(index) + 1,
                 level->end());
    level = &(*level)[index].members;
  }
  return above;
}

void DrawingDocument::Enter(std::size_t index) {
  if (!IsGroup(Current(), index)) return;
  SelectAll(LevelOf(drawing_, path_), false);
  path_.push_back(index);
  SelectAll(LevelOf(drawing_, path_), false);
  ShowLevel();
}

bool DrawingDocument::Leave() {
  if (path_.empty()) return false;
  SelectAll(LevelOf(drawing_, path_), false);
  const std::size_t index = path_.back();
  path_.pop_back();
  Drawing& level = LevelOf(drawing_, path_);
  SelectAll(level, false);
  level[index].selected = true;
  ShowLevel();
  return true;
}

void DrawingDocument::ShowLevel() {
  preview_.reset();
  picked_.reset();
  Q_EMIT Replaced();
  Q_EMIT Changed();
}

void DrawingDocument::Pick(std::optional<std::size_t> point) {
  const auto index = OnlyWithPoints(Current());
  if (!index || (point && *point >= Current()[*index].vertices.size())) point.reset();
  if (picked_ == point) return;
  picked_ = point;
  Q_EMIT Changed();
}

void DrawingDocument::Show(Drawing preview) {
  preview_ = std::move(preview);
  Q_EMIT Changed();
}

void DrawingDocument::GiveUp() {
  if (!preview_) return;
  preview_.reset();
  Q_EMIT Changed();
}

void DrawingDocument::Commit(Drawing drawing, const std::string& mergeKey) {
  if (!InGroup()) return Record(std::move(drawing), mergeKey);
  const std::string key = mergeKey.empty() ? mergeKey : mergeKey + Selection(drawing);
  Drawing whole = drawing_;
  LevelOf(whole, path_) = std::move(drawing);
  while (InGroup() && LevelOf(whole, path_).empty()) {
    const auto index = static_cast<std::ptrdiff_t>(path_.back());
    path_.pop_back();
    Drawing& level = LevelOf(whole, path_);
    level.erase(level.begin() + index);
  }
  Record(std::move(whole), key);
}

void DrawingDocument::Replace(Drawing whole) {
  path_.clear();
  Record(std::move(whole), {});
}

void DrawingDocument::Record(Drawing whole, const std::string& mergeKey) {
  const std::size_t before = history_.Revision();
  history_.Record(drawing_, whole, mergeKey);
  drawing_ = std::move(whole);
  ShowLevel();
  if (history_.Revision() != before) Q_EMIT Edited();
}

void DrawingDocument::Undo() {
  if (CanUndo()) Step(&History::Undo);
}

void DrawingDocument::Redo() {
  if (CanRedo()) Step(&History::Redo);
}

void DrawingDocument::Step(void (History::*way)(Drawing&)) {
  const Drawing before = InGroup() ? drawing_ : Drawing();
  (history_.*way)(drawing_);
  if (!Within(before, drawing_, path_)) path_.clear();
  // Older values may remember what was selected in a group that was open then.
  const auto unselect = [](DrawingObject& object) { SelectAll(object.members, false); };
  for (DrawingObject& object : drawing_) {
    if (!InGroup()) ForEachMember(object, unselect);
  }
  ShowLevel();
  Q_EMIT Edited();
}

void DrawingDocument::MarkSaved() {
  savedRevision_ = history_.Revision();
  Q_EMIT Changed();
}

void DrawingDocument::MarkUnsaved() {
  savedRevision_.reset();
  Q_EMIT Changed();
}

}  // namespace kelvo
