#include "inventory/equip_progress.h"

#include <algorithm>

namespace kelvo {
namespace {

using What = EquipEntry::What;
using State = StepProgress::State;

void TakeStep(TargetProgress& target, const EquipEntry& entry) {
  if (entry.step >= target.steps.size()) return;
  StepProgress& step = target.steps[entry.step];
  step.time = entry.time;
  if (entry.what == What::Begun) {
    step.state = State::Begun;
    if (!step.freeBefore) step.freeBefore = target.freeBytes;
    target.begunSince = true;
  } else if (entry.what == What::NoRoom) {
    step.state = State::NoRoom;
  } else {
    step.state = State::Over;
    step.verdict = entry.verdict;
  }
  step.detail = entry.text;
}

void TakeFreeBytes(TargetProgress& target, std::int64_t bytes) {
  target.freeBytes = bytes;
  target.begunSince = false;
}

// The room that there was before a step stays known: it may be smaller now for what is replaced.
void BeginAnew(TargetProgress& target) {
  for (StepProgress& step : target.steps) step = {.freeBefore = step.freeBefore};
  target.anew = true;
}

void TakeOfTarget(TargetProgress& target, const EquipEntry& entry) {
  using Erase = TargetProgress::Erase;
  if (entry.what == What::EraseBegun || entry.what == What::Erased ||
      entry.what == What::EraseFailed) {
    target.eraseTime = entry.time;
  }
  switch (entry.what) {
    case What::Version:
      target.version = entry.text;
      break;
    case What::FreeBytes:
      return TakeFreeBytes(target, entry.bytes);
    case What::EraseBegun:
      target.erase = Erase::Begun;
      break;
    case What::Erased:
      target.erase = Erase::Done;
      break;
    case What::EraseFailed:
      target.erase = Erase::Failed;
      break;
    case What::Anew:
      return BeginAnew(target);
    case What::Stopped:
      target.stopped = entry.text;
      break;
    case What::Resumed:
      target.stopped.clear();
      break;
    default:
      TakeStep(target, entry);
  }
}

}  // namespace

bool TargetProgress::Done() const { return StepsDone() == steps.size(); }

std::size_t TargetProgress::StepsDone() const {
  return static_cast<std::size_t>(std::count_if(
      steps.begin(), steps.end(), [](const StepProgress& step) { return step.Done(); }));
}

bool TargetProgress::Touched() const {
  return std::any_of(steps.begin(), steps.end(),
                     [](const StepProgress& step) { return step.freeBefore.has_value(); });
}

EquipProgress::EquipProgress(const EquipJob& job) : targets(job.targets.size()) {
  for (TargetProgress& target : targets) target.steps.resize(job.Steps());
}

void EquipProgress::Take(const EquipEntry& entry) {
  if (!first) first = entry.time;
  last = entry.time;
  if (entry.target < targets.size()) TakeOfTarget(targets[entry.target], entry);
}

bool EquipProgress::Done() const {
  return std::all_of(targets.begin(), targets.end(),
                     [](const TargetProgress& target) { return target.Done(); });
}

}  // namespace kelvo
