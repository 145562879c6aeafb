#pragma once

#include <string>
#include <vector>

#include "sheet/sheet.h"
#include "sheet/sources.h"

// What a data sheet says of how it knows something. German, UTF-8.

namespace kelvo {

/// A Terminal with what is known of it.
struct SheetSubject {
  const SheetSources& sources;
  const SheetTerminal& terminal;
  const Inventory& inventory;
};
SheetSubject SubjectOf(const SheetSources& sources, std::size_t index);

/// "geschrieben und bestätigt 22.11.2026 16:31"
std::string HeldBasis(const Inventory& inventory, const Held& held);
/// "ungewiss: keine Antwort, 22.11.2026 16:31"
std::string DoubtBasis(const Doubt& doubt);
/// "gelesen 22.11.2026 16:31"
std::string ReadBasis(JournalTime time);
inline constexpr char kDatabaseBasis[] = "Datenbank";
inline constexpr char kNotRead[] = "nicht gelesen";

/// What the database has of an item: "gleich „Gruß“", "nicht in der Datenbank".
std::string AgainstWords(const SheetSubject& subject, const Held& held);
/// A record's or item's name, as quoted behind what it is; empty where there is none.
std::string QuotedName(const std::string& name);

/// A row of a table for each item of these kinds that is held or in doubt, by kind and number:
/// with its kind when there are several, else with what the database has.
SheetTable ItemTable(const SheetSubject& subject, const std::vector<ItemKind>& kinds);
/// What stands in front of an item: its name, and what that it lies there rests on.
std::vector<SheetBlock> ItemHead(const SheetSubject& subject, const Held& held);
/// Whether anything is known of such items.
bool KnowsAny(const Inventory& inventory, ItemKind kind);
/// What is to be said of all that nobody has written from here.
std::string ElseWords(const Inventory& inventory);

}  // namespace kelvo
