#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inventory/equipment.h"
#include "inventory/journal.h"

// What is going to be written to whom, before anything is.

namespace kelvo {

/// A Terminal that is to be equipped.
struct EquipTarget {
  TerminalId id;
  std::string name;  ///< as it is stored, UTF-8
  /// Whether it computes a checksum, as the list says; where nothing does, its version decides.
  std::optional<bool> checksum;

  bool operator==(const EquipTarget&) const = default;
};

/// All that a run needs to know. It does not change any more once the run has begun.
struct EquipJob {
  Equipment equipment;
  std::vector<EquipTarget> targets;
  bool erase = false;  ///< before anything is written

  /// The items, and the settings with the configuration where there are any.
  std::size_t Steps() const { return equipment.items.size() + (HasSettings() ? 1 : 0); }
  bool HasSettings() const { return !equipment.settings.empty(); }
  bool operator==(const EquipJob&) const = default;
};

/// "Makro 7 \"Begrüßung\"" or what the step behind the items is.
std::string StepText(const EquipJob& job, std::size_t step);
/// "Pumpe 3, Adresse 5"
std::string TargetText(const EquipTarget& target);

/// What a Terminal tells of itself when it is asked.
struct TargetReading {
  std::string problem;    ///< why it has not told all of it, a German sentence; UTF-8
  std::string version{};  ///< UTF-8
  double versionNumber = 0;
  std::int64_t freeBytes = 0;

  bool Complete() const { return problem.empty(); }
};

/// What an item meets in its place.
enum class Outlook : std::uint8_t {
  Unknown,     ///< nobody knows what lies there
  Free,        ///< nothing, as it was erased from here
  Same,        ///< the same was written there from here
  Overwrites,  ///< something else was written there from here
  Doubtful,    ///< a write from here ended unclear
  AfterErase,  ///< nothing, as it is going to be erased
};
/// `there` is what was written to the target; nothing without one.
Outlook OutlookOf(const Item& item, const Inventory* there, bool erase);
/// In German. UTF-8.
std::string OutlookText(Outlook outlook, const Item& item, const Inventory* there);

/// What is known of a target before the run.
struct TargetView {
  EquipTarget target;
  std::optional<TargetReading> reading{};  ///< when it was asked
  Inventory there{};                       ///< what was written to it from here
  bool isOrigin = false;  ///< at its place was the Terminal that the equipment comes from
};
/// What has to be known of one target before the run: a sentence each, UTF-8.
struct TargetPlan {
  std::vector<std::string> remarks;
  bool fits = true;  ///< as far as it is known
};
TargetPlan PlanFor(const EquipJob& job, const TargetView& view);
/// The whole plan as a text of lines. UTF-8.
std::string PlanText(const EquipJob& job, const std::vector<TargetView>& targets);

/// Why nothing can be begun with this job: sentences, UTF-8; empty when it can.
std::vector<std::string> Obstacles(const EquipJob& job);

}  // namespace kelvo
