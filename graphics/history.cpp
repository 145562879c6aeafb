#include "graphics/history.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {

namespace {

bool SameButForSelection(const DrawingObject& a, const DrawingObject& b) {
  return a.kind == b.kind && a.penMode == b.penMode && a.filled == b.filled &&
         a.corner1 == b.corner1 && a.corner2 == b.corner2 && a.vertices == b.vertices &&
         a.style == b.style && a.text == b.text && a.picture == b.picture && a.source == b.source &&
         a.preparation == b.preparation &&
         std::equal(a.members.begin(), a.members.end(), b.members.begin(), b.members.end(),
                    SameButForSelection);
}

auto At(std::vector<DrawingObject>& objects, std::size_t index) {
  return objects.begin() + static_cast<std::ptrdiff_t>(index);
}

}  // namespace

void History::Record(const Drawing& before, const Drawing& after, const std::string& mergeKey) {
  const auto [first, firstAfter] =
      std::mismatch(before.begin(), before.end(), after.begin(), after.end(), SameButForSelection);
  if (first == before.end() && firstAfter == after.end()) return;
  const auto at = static_cast<std::size_t>(std::distance(before.begin(), first));
  const std::size_t most = std::min(before.size(), after.size()) - at;
  std::size_t tail = 0;
  while (tail < most &&
         SameButForSelection(before[before.size() - 1 - tail], after[after.size() - 1 - tail])) {
    ++tail;
  }
  steps_.resize(done_);
  const std::size_t count = after.size() - tail - at;
  const bool merges = !mergeKey.empty() && done_ > 0 && steps_.back().mergeKey == mergeKey &&
                      steps_.back().at == at && steps_.back().count == count &&
                      before.size() == after.size();
  if (merges) {
    steps_.back().revision = ++newestRevision_;
    return;
  }
  steps_.push_back({at,
                    count,
                    {first, before.end() - static_cast<std::ptrdiff_t>(tail)},
                    mergeKey,
                    ++newestRevision_});
  done_ = steps_.size();
  if (steps_.size() > kMaxSteps) DropOldest();
}

void History::DropOldest() {
  firstRevision_ = steps_.front().revision;
  steps_.erase(steps_.begin());
  --done_;
}

void History::Exchange(Step& step, Drawing& drawing) {
  const auto from = At(drawing, step.at);
  const auto to = At(drawing, step.at + step.count);
  std::vector<DrawingObject> taken(std::make_move_iterator(from), std::make_move_iterator(to));
  const auto gap = drawing.erase(from, to);
  const std::size_t count = step.exchange.size();
  drawing.insert(gap, std::make_move_iterator(step.exchange.begin()),
                 std::make_move_iterator(step.exchange.end()));
  step.exchange = std::move(taken);
  step.count = count;
}

void History::Undo(Drawing& drawing) {
  if (!CanUndo()) return;
  Exchange(steps_[--done_], drawing);
}

void History::Redo(Drawing& drawing) {
  if (!CanRedo()) return;
  Exchange(steps_[done_++], drawing);
}

}  // namespace kelvo
