#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "graphics/drawing.h"

namespace kelvo {

/// Undo and redo. A step keeps the objects that it changed, and where; undoing exchanges them with
/// those in the drawing, and redoing exchanges them back.
class History {
 public:
  /// Records the way from `before` to `after`. Steps with the same key that is not empty, one right
  /// after the other on the same objects, become one ("move" by arrow keys). Nothing is recorded
  /// when only the selection differs.
  void Record(const Drawing& before, const Drawing& after, const std::string& mergeKey = {});
  bool CanUndo() const { return done_ > 0; }
  bool CanRedo() const { return done_ < steps_.size(); }
  void Undo(Drawing& drawing);
  void Redo(Drawing& drawing);

  /// A step's number that changes with every change of the drawing and comes back with undo: equal
  /// numbers mean equal drawings.
  std::size_t Revision() const { return done_ == 0 ? firstRevision_ : steps_[done_ - 1].revision; }

 private:
  struct Step {
    std::size_t at = 0;                   // the first object that differs
    std::size_t count = 0;                // how many stand in the drawing now
    std::vector<DrawingObject> exchange;  // what stood, or will stand, in their place
    std::string mergeKey;
    std::size_t revision = 0;
  };
  static void Exchange(Step& step, Drawing& drawing);
  void DropOldest();

  static constexpr std::size_t kMaxSteps = 500;
  std::vector<Step> steps_;
  std::size_t done_ = 0;
  std::size_t firstRevision_ = 0;
  std::size_t newestRevision_ = 0;
};

}  // namespace kelvo
