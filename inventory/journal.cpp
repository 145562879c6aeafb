#include "inventory/journal.h"

#include <algorithm>
#include <set>
#include <utility>

#include "link/addresses.h"

namespace kelvo {
namespace {

template <typename Map>
auto FindPlace(Map& map, const ItemKey& key) {
  return std::find_if(map.begin(), map.end(),
                      [&key](const auto& entry) { return SamePlace(entry.first, key); });
}

}  // namespace

void Inventory::Take(const JournalEntry& entry, bool broadcast) {
  switch (entry.event) {
    case Event::Acknowledged:
      return Apply(entry, broadcast);
    case Event::Proven:
      return Prove(entry);
    case Event::FreeBytes:
      return;
    default:
      return DoubtPlace(entry.change, {entry.event, entry.time});
  }
}

void Inventory::TakeUncertain(const JournalEntry& entry) {
  if (entry.event == Event::FreeBytes || entry.event == Event::Proven) return;
  DoubtPlace(entry.change, {entry.event, entry.time});
}

void Inventory::Apply(const JournalEntry& entry, bool broadcast) {
  using enum ItemChange::Kind;
  const ItemChange& change = entry.change;
  if (change.kind == Erased) {
    items_.clear();
    doubtful_.clear();
    emptied_ = true;
    return;
  }
  Forget(change.key);
  if (change.kind == Deleted) return;
  items_[change.key] = {
      {change.key, entry.command, entry.name}, Proof::Acknowledged, entry.time, broadcast};
}

void Inventory::Prove(const JournalEntry& entry) {
  const auto held = items_.find(entry.change.key);
  if (held == items_.end() || held->second.broadcast) return;
  held->second.proof = Proof::Checksum;
}

void Inventory::DoubtPlace(const ItemChange& change, Doubt doubt) {
  if (change.kind != ItemChange::Kind::Erased) {
    Forget(change.key);
    doubtful_[change.key] = doubt;
    return;
  }
  for (const auto& [key, held] : items_) doubtful_[key] = doubt;
  items_.clear();
}

void Inventory::Forget(const ItemKey& key) {
  const auto held = FindPlace(items_, key);
  if (held != items_.end()) items_.erase(held);
  const auto doubt = FindPlace(doubtful_, key);
  if (doubt != doubtful_.end()) doubtful_.erase(doubt);
}

const Held* Inventory::At(const ItemKey& key) const {
  const auto held = FindPlace(items_, key);
  return held == items_.end() ? nullptr : &held->second;
}

const Doubt* Inventory::DoubtAt(const ItemKey& key) const {
  const auto doubt = FindPlace(doubtful_, key);
  return doubt == doubtful_.end() ? nullptr : &doubt->second;
}

void WriteJournal::Add(JournalEntry entry) { entries_.push_back(std::move(entry)); }

Inventory WriteJournal::Of(const TerminalId& terminal) const {
  Inventory inventory;
  for (const JournalEntry& entry : entries_) {
    if (entry.terminal.device != terminal.device) continue;
    if (entry.terminal.address == kAllAddresses) {
      inventory.Take(entry, true);
    } else if (entry.terminal.address == terminal.address) {
      inventory.Take(entry);
    } else if (entry.terminal.address == kUnknownAddress || terminal.address == kUnknownAddress ||
               terminal.address == kAllAddresses) {
      inventory.TakeUncertain(entry);
    }
  }
  return inventory;
}

std::vector<TerminalId> WriteJournal::Terminals() const {
  std::set<TerminalId> all;
  std::set<std::string> single;  // lines of which a Terminal is known
  for (const JournalEntry& entry : entries_) {
    all.insert(entry.terminal);
    if (entry.terminal.address != kAllAddresses) single.insert(entry.terminal.device);
  }
  std::erase_if(all, [&single](const TerminalId& id) {
    return id.address == kAllAddresses && single.contains(id.device);
  });
  return {all.begin(), all.end()};
}

}  // namespace kelvo
