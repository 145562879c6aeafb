#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inventory/journal.h"
#include "settings/in_terminal.h"

// What was written into a Terminal against the records of the database. That something is the same
// means: the same as what was last written from here. What others do with the Terminal nobody sees.

namespace kelvo {

/// A record of the table `Makro`.
struct StoredRecord {
  std::int64_t id = 0;
  std::string typ;
  std::string name;  ///< UTF-8
  int number = -1;   ///< in the Terminal; below 0 for none
  std::string wire;
};

/// Whether a record lies in a Terminal. Another text under its number is an older one of it only
/// where it was written under the record's name; of one that nobody has named none is.
InTerminal StateOf(const Inventory& inventory, const StoredRecord& record);

/// What the database has of an item.
struct Against {
  enum class Kind : std::uint8_t { Same, Changed, NotInDatabase, Unknown };
  Kind kind = Kind::Unknown;
  std::int64_t record = 0;  ///< the one that was compared; 0 for none
};
Against AgainstDatabase(const Inventory& inventory, const Held& held,
                        const std::vector<StoredRecord>& records);
/// "gleich", "geändert", "nicht in der Datenbank", "unbekannt"
std::string AgainstText(Against::Kind kind);

/// What a number is taken by that a command, made from the record of that `name`, is about to write
/// under, in German: "Nummer 3: belegt mit AT-Tabelle „Zehner“."; empty when that overwrites
/// nothing else that is known: an older one of the same record, or just this.
std::string TakenText(const Inventory& inventory, const ItemKey& key, const std::string& name,
                      const std::string& command);

}  // namespace kelvo
