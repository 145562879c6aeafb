#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/compare.h"
#include "inventory/item.h"
#include "inventory/journal.h"

// What a Terminal is to be equipped with, and where it comes from.

namespace kelvo {

struct Equipment {
  std::string origin;       ///< German: "Bestand von Adresse 5 an /dev/ttyUSB0". UTF-8
  std::vector<Item> items;  ///< in the order in which they are written
  std::string settings;     ///< commands that set what the configuration keeps; may be empty
  /// What cannot be carried over, or not for certain, and why: a German sentence each. UTF-8
  std::vector<std::string> missing;

  bool operator==(const Equipment&) const = default;
};

/// Tables, macros, the one that starts by itself last of these, bitmaps, the configuration.
void SortForWriting(std::vector<Item>& items);

/// What was written from here into a Terminal.
Equipment EquipmentOf(const Inventory& inventory, std::string origin);

/// What these records are in a Terminal. Those that cannot be written are among the missing.
Equipment EquipmentOf(const std::vector<StoredRecord>& records, std::string origin);

/// Two items of which only one can lie in the Terminal: tables of both keyboards with one number,
/// two macros with one number.
struct ItemConflict {
  std::size_t one;  ///< which of the items
  std::size_t other;
  std::string text;  ///< says so, a German sentence, UTF-8
};
std::vector<ItemConflict> Conflicts(const std::vector<Item>& items);

/// Bytes that an item takes in the EEPROM at least. What the Terminal keeps beside it nobody tells.
std::size_t LeastBytes(const Item& item);
std::size_t LeastBytes(const std::vector<Item>& items);

/// A file that people can read, and that holds all 256 characters.
std::string EquipmentFile(const Equipment& equipment);
/// Nothing when this is no such file or it is damaged.
std::optional<Equipment> ReadEquipmentFile(std::string_view file);

// The lines that it is made of, without their ends.
std::string ItemLine(const Item& item);
/// Nothing when the line is none of an item.
std::optional<Item> ReadItemLine(const std::vector<std::string_view>& fields);

}  // namespace kelvo
