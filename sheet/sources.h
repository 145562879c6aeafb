#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bus/stored_terminals.h"
#include "inventory/compare.h"
#include "inventory/journal.h"
#include "inventory/readings.h"

// What a data sheet is made from.

namespace kelvo {

/// A Terminal of the list, or one that something is known of.
struct SheetTerminal {
  TerminalId id;
  std::string name;                        ///< UTF-8
  std::optional<StoredTerminal> stored{};  ///< what the list has of it
};

/// "Halle 1 Tor, Adresse 7"; "Terminal ohne Namen" where nothing is known of who listens.
std::string SheetName(const SheetTerminal& terminal);

/// Which lines of a keypad are wired, as its record has them.
struct SheetWiring {
  double outputMask = 0;
  double inputMask = 0;
};

/// A value of the database: what it is of, and its text.
struct SheetValue {
  std::string what;
  std::string value;
};

struct SheetSources {
  std::vector<SheetTerminal> terminals;  ///< those that the sheet is about
  std::vector<Inventory> inventories;    ///< theirs
  std::shared_ptr<const Readings> readings;
  std::vector<StoredRecord> records;
  std::map<std::int64_t, SheetWiring> wiring;  ///< by the ids of the keypads' records
  std::vector<SheetValue> line;                ///< the settings of the interfaces
  int width = 240;                             ///< of the display in pixels, as the database has it
  int height = 128;
  std::optional<JournalTime> made{};  ///< where that is to be said
};

}  // namespace kelvo
