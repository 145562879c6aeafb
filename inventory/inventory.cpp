#include <algorithm>
#include <utility>

#include "inventory/journal.h"
#include "inventory/macro_effects.h"

namespace kelvo {
namespace {

template <typename Map>
auto FindPlace(Map& map, const ItemKey& key) {
  return std::find_if(map.begin(), map.end(),
                      [&key](const auto& entry) { return SamePlace(entry.first, key); });
}

// The number that a place goes by, whatever keyboard its table is for.
ItemKey PlaceOf(ItemKey key) {
  if (key.kind == ItemKind::AtTable) key.kind = ItemKind::MatrixTable;
  return key;
}

// What was begun, and nothing came of it before the next.
bool CutOffBy(const Doubt* before, Event next) {
  return before != nullptr && before->event == Event::Begun && next == Event::Begun &&
         before->change != ItemChange::Kind::Erased;
}

bool IsCutOff(Event event) { return event == Event::LineLost || event == Event::Unclear; }

}  // namespace

void Inventory::Take(const JournalEntry& entry, bool broadcast) {
  switch (entry.event) {
    case Event::Acknowledged:
      return Apply(entry, broadcast);
    case Event::Proven:
      return Prove(entry);
    case Event::FreeBytes:
      return broadcast ? void() : Read(entry);
    case Event::Begun:
      return Begin(entry);
    default:
      room_.LoseCount();
      return DoubtPlace(entry);
  }
}

void Inventory::Begin(const JournalEntry& entry) {
  before_ = Now(entry.change.key);
  room_.Begun();
  DoubtPlace(entry);
}

Inventory::Before Inventory::Now(const ItemKey& key) const {
  const Held* const held = At(key);
  return {key, held == nullptr ? std::nullopt : std::optional(*held), KnownEmpty(key)};
}

Inventory::Before Inventory::TakeBefore(const ItemKey& key) {
  const bool same = before_ && SamePlace(before_->place, key);
  Before before = same ? *std::move(before_) : Now(key);
  before_.reset();
  return before;
}

void Inventory::TakeUncertain(const JournalEntry& entry) {
  if (entry.event == Event::FreeBytes || entry.event == Event::Proven) return;
  room_.LoseCount();
  const int address = entry.terminal.address;
  DoubtPlace(entry, address == kUnknownAddress ? std::nullopt : std::optional(address));
}

void Inventory::Apply(const JournalEntry& entry, bool broadcast) {
  using enum ItemChange::Kind;
  room_.Ended();
  // Whoever has answered, another one may not have heard it.
  if (broadcast && entry.change.kind != Written) {
    room_.LoseCount();
    return DoubtPlace(entry);
  }
  switch (entry.change.kind) {
    case Erased:
      items_.clear();
      doubtful_.clear();
      deleted_.clear();
      emptied_ = true;
      erased_ = entry.time;
      written_ = false;
      return room_.LoseCount();
    case Deleted: {
      const Before before = TakeBefore(entry.change.key);
      if (!before.empty) room_.Deleted(before.held ? &before.held->item : nullptr);
      Forget(entry.change.key);
      deleted_.insert(PlaceOf(entry.change.key));
      return;
    }
    case Written:
      return Write(entry, broadcast);
  }
}

void Inventory::Write(const JournalEntry& entry, bool broadcast) {
  const ItemKey& key = entry.change.key;
  const Item item{key, entry.command, entry.name};
  const Before before = TakeBefore(key);
  if (before.empty) {
    room_.WrittenAnew(item);
  } else {
    room_.Written(item, before.held ? &before.held->item : nullptr);
  }
  Forget(key);
  written_ = true;
  items_[key] = {item, Proof::Acknowledged, entry.time, broadcast};
}

void Inventory::Prove(const JournalEntry& entry) {
  const auto held = items_.find(entry.change.key);
  if (held == items_.end() || held->second.broadcast) return;
  held->second.proof = Proof::Checksum;
}

void Inventory::Read(const JournalEntry& entry) {
  const auto before = room_.LastDisagreement();
  room_.Read({entry.time, entry.bytes});
  const auto& now = room_.LastDisagreement();
  if (!now || (before && before->read.time == now->read.time)) return;
  emptied_ = false;
  deleted_.clear();
}

// What a doubt knew of the place goes on to hold; that some macro may have done something, too,
// says less than it did.
Doubt Inventory::DoubtOver(const ItemKey& key, const JournalEntry& entry,
                           std::optional<int> at) const {
  const Doubt* const old = DoubtAt(key);
  const Held* const held = At(key);
  if (old != nullptr && entry.event == Event::ByMacro) return *old;
  Doubt doubt = old != nullptr ? *old : Doubt{};
  const bool erases = entry.change.kind == ItemChange::Kind::Erased;
  doubt.cutOff = doubt.cutOff || (!erases && IsCutOff(entry.event)) || CutOffBy(old, entry.event);
  doubt.event = entry.event;
  doubt.at = at;
  doubt.time = entry.time;
  doubt.change = entry.change.kind;
  if (held != nullptr) doubt.before = *held;
  const bool known =
      std::find(doubt.perhaps.begin(), doubt.perhaps.end(), entry.command) != doubt.perhaps.end();
  if (!known && ChangesWhenRun(entry.command)) doubt.perhaps.push_back(entry.command);
  return doubt;
}

void Inventory::DoubtPlace(const JournalEntry& entry, std::optional<int> at) {
  if (entry.change.kind == ItemChange::Kind::Erased) {
    for (auto& [key, doubt] : doubtful_) doubt = DoubtOver(key, entry, at);
    for (const auto& [key, held] : items_) doubtful_[key] = DoubtOver(key, entry, at);
    items_.clear();
    return;
  }
  ItemKey key = entry.change.key;
  if (entry.change.kind == ItemChange::Kind::Deleted) {
    const auto held = FindPlace(items_, key);
    const auto doubt = FindPlace(doubtful_, key);
    // Where nothing was written from here, nothing becomes less certain.
    if (held == items_.end() && doubt == doubtful_.end()) return;
    key = held != items_.end() ? held->first : doubt->first;
  }
  Doubt doubt = DoubtOver(key, entry, at);
  Forget(key);
  doubtful_[key] = std::move(doubt);
}

void Inventory::Forget(const ItemKey& key) {
  const auto held = FindPlace(items_, key);
  if (held != items_.end()) items_.erase(held);
  const auto doubt = FindPlace(doubtful_, key);
  if (doubt != doubtful_.end()) doubtful_.erase(doubt);
  deleted_.erase(PlaceOf(key));
}

bool Inventory::KnownEmpty(const ItemKey& key) const {
  if (At(key) != nullptr || DoubtAt(key) != nullptr) return false;
  return emptied_ || deleted_.contains(PlaceOf(key));
}

const Held* Inventory::At(const ItemKey& key) const {
  const auto held = FindPlace(items_, key);
  return held == items_.end() ? nullptr : &held->second;
}

const Doubt* Inventory::DoubtAt(const ItemKey& key) const {
  const auto doubt = FindPlace(doubtful_, key);
  return doubt == doubtful_.end() ? nullptr : &doubt->second;
}

bool Inventory::Trusts(const Held& held) const {
  if (held.broadcast) return false;
  const auto& contradiction = room_.LastDisagreement();
  return !contradiction || held.written > contradiction->read.time;
}

}  // namespace kelvo
