#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/options.h"
#include "cli/outside.h"
#include "cli/person.h"
#include "cli/progress.h"
#include "cli/table.h"
#include "graphics/device_font.h"
#include "inventory/equip_plan.h"
#include "store/program_data.h"

namespace kelvo::cli {

/// What was asked for cannot be meant so; what() says why, German, UTF-8.
struct WrongRequest : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What all commands have at hand: options, database, fonts, and where results go.
class Bench {
 public:
  Bench(const Options& options, const Outside& outside);

  const Options& Asked() const { return options_; }
  const Outside& World() const { return outside_; }
  const std::string& DataPath() const { return dataPath_; }
  /// The database; at the first start the delivered one. Throws StoreError and
  /// std::runtime_error.
  ProgramData& Data();
  /// The same, but null where there is none yet: what needs it not makes none.
  ProgramData* DataIfThere();
  const DeviceFonts& Fonts();

  Person& Operator() { return person_; }
  Progress& Shown() { return progress_; }
  /// The result, in the form that was asked for.
  void Print(const Table& table);

 private:
  const Options& options_;
  const Outside& outside_;
  std::string dataPath_;
  Progress progress_;
  Person person_;
  std::optional<ProgramData> data_;
  std::optional<DeviceFonts> fonts_;
};

/// The display that texts are meant for: the one asked for, else the stored one.
DisplaySizeChoice DisplayOf(Bench& bench);

/// Colours below it are black.
std::int64_t BlackThreshold(Bench& bench);

/// The name that the list of Terminals has for an address; empty without one. UTF-8.
std::string StoredName(const ProgramData& data, int address);
/// The Terminals that were asked for, on that line. Throws WrongRequest when there are none.
std::vector<EquipTarget> TargetsOf(Bench& bench, const std::string& device);

}  // namespace kelvo::cli
