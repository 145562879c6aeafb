#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/command_table.h"

// What can lie in a Terminal's EEPROM, and which of it a command changes.

namespace kelvo {

enum class ItemKind : std::uint8_t { Config, Macro, MatrixTable, AtTable, Bitmap };

/// Of either keyboard.
constexpr bool IsTable(ItemKind kind) {
  return kind == ItemKind::MatrixTable || kind == ItemKind::AtTable;
}

struct ItemKey {
  ItemKind kind = ItemKind::Config;
  int number = 0;  ///< 0..255; 0 for the configuration
  // The linter takes the zero that the compiler compares with for a pointer.
  auto operator<=>(const ItemKey&) const = default;  // NOLINT(modernize-use-nullptr)
};

struct Item {
  ItemKey key;
  /// The whole wire text, ESC first; of a configuration also the settings that it is known to keep,
  /// in front.
  std::string command;
  std::string name;  ///< of the record that it is made from, UTF-8; empty when there is none
  bool operator==(const Item&) const = default;
};

/// "Makro 7", "Matrix-Tabelle 3", UTF-8.
std::string ItemText(const ItemKey& key);
/// "Makro", "Matrix-Tabelle", UTF-8.
std::string ItemKindText(ItemKind kind);
/// The field `typ` of the database's records that are written as such an item: "MatrixTab"; empty
/// where there are none. Macros are written from records of other kinds, too.
std::string RecordTyp(ItemKind kind);
/// The kind that a record of that `typ` is written as; nothing for one that none is.
std::optional<ItemKind> KindOfRecord(std::string_view typ);
/// What is kept under the number: of a macro its text, else the parameters behind the number, as
/// they stand in the command. A view of the command.
std::string_view ItemContent(const Item& item);
/// How many characters that is: what the check of room counts of a macro or bitmap. The Terminal
/// packs tables and bitmaps, and nobody knows what it adds.
std::size_t ItemBytes(const Item& item);
/// The same place in the EEPROM: the tables of both keyboards have the same numbers.
bool SamePlace(const ItemKey& one, const ItemKey& other);

/// What a command does to the EEPROM.
struct ItemChange {
  enum class Kind : std::uint8_t { Written, Deleted, Erased };
  Kind kind = Kind::Written;
  ItemKey key;  ///< none where all is erased; a table is deleted whatever keyboard it is for
  bool operator==(const ItemChange&) const = default;
};

/// What a command that begins with its ESC does; nothing when it leaves the EEPROM as it is, or
/// names no number that there is. A table that is written is taken for the keyboard that it looks
/// made for, as the command does not tell.
std::optional<ItemChange> ChangeOf(std::string_view command);
std::optional<ItemChange> ChangeOf(const SentCommand& command);
/// The item that a command writes; nothing for any other command.
std::optional<Item> ItemOf(std::string_view command, std::string name = {},
                           std::optional<ItemKind> kind = {});

}  // namespace kelvo
