#pragma once

#include <cstdint>
#include <optional>

#include "inventory/entry.h"
#include "inventory/item.h"

namespace kelvo {

/// The free bytes that a Terminal has told, against what was written from here between two such
/// answers. How much the Terminal needs for what is not known, nor how large its EEPROM is: only
/// bounds are reckoned, and wide ones.
class Room {
 public:
  struct Reading {
    JournalTime time;
    std::int64_t bytes = 0;
  };
  /// An answer that cannot come from what was written from here.
  struct Disagreement {
    Reading before;
    Reading read;
    std::int64_t least = 0;  ///< what could have been free
    std::int64_t most = 0;
  };

  void Read(Reading reading);
  /// Written in the place of `replaced`; nullptr where nobody knows what was there.
  void Written(const Item& item, const Item* replaced);
  /// The place was empty.
  void WrittenAnew(const Item& item);
  void Deleted(const Item* item);
  /// Nobody knows what has happened.
  void LoseCount() { lost_ = true; }
  /// A command is under way; what came of it is told later, or it counts as lost.
  void Begun() { begun_ = true; }
  void Ended() { begun_ = false; }

  const std::optional<Reading>& LastReading() const { return reading_; }
  /// Something may have changed since.
  bool Changed() const { return changed_ || lost_ || begun_; }
  /// The last one that there was.
  const std::optional<Disagreement>& LastDisagreement() const { return disagreement_; }

 private:
  std::optional<Reading> reading_;
  std::optional<Disagreement> disagreement_;
  std::int64_t leastUsed_ = 0;  // since the reading
  std::int64_t mostUsed_ = 0;
  bool changed_ = false;
  bool begun_ = false;
  bool lost_ = false;
};

}  // namespace kelvo
