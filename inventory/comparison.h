#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inventory/compare.h"
#include "inventory/readings.h"
#include "inventory/settings_trace.h"
#include "inventory/write_run.h"

// What a Terminal has told, what was written into it and what the database has, side by side.

namespace kelvo {

enum class Compared : std::uint8_t {
  Plain,  ///< there is nothing to compare it with
  Same,
  Different,
  Unknown,
};

/// One thing of one Terminal.
struct ComparisonRow {
  TerminalId terminal;
  std::string what;    ///< UTF-8
  std::string read{};  ///< a wire text, as it came
  std::optional<JournalTime> readAt{};
  std::optional<JournalTime> silentAt{};  ///< the last question, which was not answered
  std::string readBefore{};               ///< where that was another one
  std::optional<Held> written{};
  std::string sent{};       ///< of a setting, what was sent last
  std::string database{};   ///< the record's name, UTF-8
  std::int64_t record = 0;  ///< the one of a row whose state is not known; 0 for none
  Compared compared = Compared::Plain;
  bool uncertain = false;             ///< something came there of which nobody knows the end
  std::string words{};                ///< what the comparison says, UTF-8
  std::optional<WriteOrder> order{};  ///< writes what the database has otherwise
  /// Writes what the database has and the Terminal has not, or not for all that is known.
  std::optional<WriteOrder> offer{};
};

/// Everything that is known of a Terminal: its replies first, then what can lie in its EEPROM.
/// `settings`: what was set on it since it was started.
std::vector<ComparisonRow> Compare(const TerminalId& terminal, const Inventory& inventory,
                                   const Readings& readings,
                                   const std::vector<StoredRecord>& records,
                                   const Settings& settings = {});
/// What writes a record under a number; nothing for what cannot be written so.
std::optional<WriteOrder> OrderOf(const StoredRecord& record, const ItemKey& key);

}  // namespace kelvo
