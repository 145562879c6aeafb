#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inventory/equip_plan.h"
#include "inventory/proven_write.h"

// How far a run is: made of its entries, in the order in which they happened.

namespace kelvo {

struct EquipEntry {
  enum class What : std::uint8_t {
    Version,     ///< the Terminal has told its version: text
    FreeBytes,   ///< and its free bytes
    EraseBegun,  ///< the erase is about to be sent
    Erased,      ///< and acknowledged
    EraseFailed,
    Begun,    ///< a step is about to be sent
    Result,   ///< what came of it: verdict, and why in text
    NoRoom,   ///< a step was not sent because the free bytes are too few
    Anew,     ///< the Terminal does not hold what was written: all steps are to be done again
    Stopped,  ///< no more of this target, and why in text
    Resumed,  ///< the run goes on with this target
  };
  What what = What::Resumed;
  std::size_t target = 0;
  std::size_t step = 0;
  WriteVerdict verdict = WriteVerdict::Proven;
  std::int64_t bytes = 0;
  std::string text{};  ///< UTF-8
  JournalTime time{};

  bool operator==(const EquipEntry&) const = default;
};

/// How far one step is.
struct StepProgress {
  enum class State : std::uint8_t {
    Open,
    Begun,  ///< the command may have gone out, the answer was not seen
    Over,
    NoRoom,
  };
  State state = State::Open;
  WriteVerdict verdict = WriteVerdict::LineLost;
  std::string detail{};
  std::optional<std::int64_t> freeBefore;  ///< free bytes when it was begun first
  JournalTime time{};

  bool Done() const {
    return state == State::Over &&
           (verdict == WriteVerdict::Proven || verdict == WriteVerdict::AcknowledgedOnly);
  }
  bool Failed() const { return state == State::NoRoom || (state == State::Over && !Done()); }
};

struct TargetProgress {
  enum class Erase : std::uint8_t { No, Begun, Done, Failed };
  std::optional<std::string> version;
  Erase erase = Erase::No;
  std::optional<std::int64_t> freeBytes;  ///< as read last
  JournalTime eraseTime{};
  bool begunSince = false;  ///< a step was begun after that
  std::vector<StepProgress> steps;
  std::string stopped;  ///< why nothing more was done; UTF-8
  bool anew = false;    ///< it did not hold any more what had been written

  bool Done() const;
  std::size_t StepsDone() const;
  /// Something of it may have been written.
  bool Touched() const;
};

struct EquipProgress {
  explicit EquipProgress(const EquipJob& job);
  void Take(const EquipEntry& entry);
  bool Done() const;

  std::vector<TargetProgress> targets;
  std::optional<JournalTime> first;  ///< when the first entry was made
  JournalTime last{};                ///< and the last one so far
};

}  // namespace kelvo
