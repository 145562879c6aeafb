#include "inventory/compare.h"

#include "store/new_name.h"

namespace kelvo {
namespace {

// Drawings and what else has a text can be written as a macro.
bool IsKind(const StoredRecord& record, ItemKind kind) {
  const auto known = KindOfRecord(record.typ);
  return known ? *known == kind : kind == ItemKind::Macro;
}

ItemKey KeyOf(const StoredRecord& record) {
  return {KindOfRecord(record.typ).value_or(ItemKind::Macro), record.number};
}

// A table's record holds its whole command, with the number that it had when it was saved.
bool HasContent(const StoredRecord& record, ItemKind kind, std::string_view content) {
  const ItemKey key = KeyOf(record);
  if (key.kind != kind) return false;
  if (kind == ItemKind::Macro) return record.wire == content;
  return ItemContent({key, record.wire, {}}) == content;
}

bool SameContent(const Held& held, const StoredRecord& record) {
  return HasContent(record, held.item.key.kind, ItemContent(held.item));
}

// Records that nobody has named have the same name and nothing else in common.
bool IsNamed(const Held& held, const std::string& name) {
  return !name.empty() && !IsNewRecordName(name) && held.item.name == name;
}

}  // namespace

InTerminal StateOf(const Inventory& inventory, const StoredRecord& record) {
  if (record.number < 0) return InTerminal::Absent;
  const ItemKey key = KeyOf(record);
  if (inventory.KnownEmpty(key)) return InTerminal::Absent;
  const Held* const held = inventory.At(key);
  if (held == nullptr || !inventory.Trusts(*held)) return InTerminal::Unknown;
  if (SameContent(*held, record)) return InTerminal::Same;
  return IsNamed(*held, record.name) && held->item.key.kind == key.kind ? InTerminal::Changed
                                                                        : InTerminal::Absent;
}

Against AgainstDatabase(const Inventory& inventory, const Held& held,
                        const std::vector<StoredRecord>& records) {
  const ItemKind kind = held.item.key.kind;
  const StoredRecord* named = nullptr;
  const StoredRecord* same = nullptr;
  const std::string_view itsContent = ItemContent(held.item);
  for (const StoredRecord& record : records) {
    if (!IsKind(record, kind)) continue;
    const bool name = IsNamed(held, record.name);
    const bool content = HasContent(record, kind, itsContent);
    if (name && (named == nullptr || content)) named = &record;
    if (content && (same == nullptr || name)) same = &record;
  }
  const StoredRecord* const record = same != nullptr ? same : named;
  const std::int64_t id = record == nullptr ? 0 : record->id;
  if (kind == ItemKind::Config || !inventory.Trusts(held)) return {Against::Kind::Unknown, id};
  if (same != nullptr) return {Against::Kind::Same, id};
  return {named != nullptr ? Against::Kind::Changed : Against::Kind::NotInDatabase, id};
}

std::string AgainstText(Against::Kind kind) {
  switch (kind) {
    case Against::Kind::Same:
      return "gleich";
    case Against::Kind::Changed:
      return "geändert";
    case Against::Kind::NotInDatabase:
      return "nicht in der Datenbank";
    case Against::Kind::Unknown:
      break;
  }
  return "unbekannt";
}

std::string TakenText(const Inventory& inventory, const ItemKey& key, const std::string& name,
                      const std::string& command) {
  const std::string number = "Nummer " + std::to_string(key.number) + ": ";
  if (inventory.DoubtAt(key) != nullptr) return number + "Was dort liegt, ist ungewiss.";
  const Held* const held = inventory.At(key);
  if (held == nullptr) return {};
  const auto item = ItemOf(command, {}, key.kind);
  const bool same = item && ItemContent(*item) == ItemContent(held->item);
  if (held->item.key.kind == key.kind && (same || IsNamed(*held, name))) return {};
  const std::string& other = held->item.name;
  const bool named = !other.empty() && !IsNewRecordName(other);
  const std::string what = named ? "„" + other + "“" : "ohne Namen";
  return number + "belegt mit " + ItemKindText(held->item.key.kind) + " " + what + ".";
}

}  // namespace kelvo
