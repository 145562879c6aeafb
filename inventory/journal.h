#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "inventory/item.h"

// What was written from here into which Terminal: entries in the order in which they happened, and
// what lies there after them.

namespace kelvo {

/// Who listened is not known: no address has been selected or told.
inline constexpr int kUnknownAddress = -1;

/// A Terminal: the device of the port that it is at, and its address, which may be 255 for all on
/// that line, or kUnknownAddress.
struct TerminalId {
  std::string device;
  int address = kUnknownAddress;
  auto operator<=>(const TerminalId&) const = default;
};

/// What says that an item lies there as it was sent.
enum class Proof : std::uint8_t {
  Acknowledged,  ///< the Terminal has answered ACK
  Checksum,      ///< the sum of what it received was right, too
};

using JournalTime = std::chrono::sys_time<std::chrono::milliseconds>;

struct Held {
  Item item;
  Proof proof = Proof::Acknowledged;
  JournalTime written;
  bool broadcast = false;  ///< written to all at once; any of them may have answered
};

/// What has happened.
enum class Event : std::uint8_t {
  Begun,         ///< sent, the answer is awaited
  Acknowledged,  ///< ACK
  Proven,        ///< what was acknowledged before is proven by the checksum
  Refused,       ///< NAK
  Silent,        ///< no answer
  Unclear,       ///< something else than an answer
  LineLost,      ///< the port has gone before the answer
  WrongSum,      ///< acknowledged before, but the checksum is wrong
  ByMacro,       ///< a macro that was run has done it; nobody has answered
  FreeBytes,     ///< the room in the EEPROM was read
};

struct JournalEntry {
  JournalTime time;
  TerminalId terminal;
  Event event = Event::Begun;
  ItemChange change;
  std::string name;        ///< of the record, UTF-8
  std::string command;     ///< of what was written, the whole wire text
  std::int64_t bytes = 0;  ///< free in the EEPROM
};

/// Why nothing can be said of what lies under a number.
struct Doubt {
  Event event = Event::Begun;  ///< Acknowledged: somebody was written to, and it is not known who
  JournalTime time;
};

/// What lies in one Terminal's EEPROM as far as it was written from here.
class Inventory {
 public:
  /// Takes what has happened next to this Terminal. `broadcast`: to all on its line.
  void Take(const JournalEntry& entry, bool broadcast = false);
  /// Something has happened of which it is not known whether it was to this Terminal.
  void TakeUncertain(const JournalEntry& entry);

  /// What was written and acknowledged, and nothing since has put it in doubt.
  const std::map<ItemKey, Held>& Items() const { return items_; }
  /// Places where something was begun and its end is not known.
  const std::map<ItemKey, Doubt>& Doubtful() const { return doubtful_; }
  /// It was erased from here, so nothing else lies there.
  bool KnownEmptyBefore() const { return emptied_; }
  /// What is held in the place of `key`: of tables, that of either keyboard.
  const Held* At(const ItemKey& key) const;
  /// The place of `key` is in doubt.
  const Doubt* DoubtAt(const ItemKey& key) const;

 private:
  void Apply(const JournalEntry& entry, bool broadcast);
  void DoubtPlace(const ItemChange& change, Doubt doubt);
  void Forget(const ItemKey& key);
  void Prove(const JournalEntry& entry);

  std::map<ItemKey, Held> items_;
  std::map<ItemKey, Doubt> doubtful_;
  bool emptied_ = false;
};

/// The entries of all Terminals.
class WriteJournal {
 public:
  void Add(JournalEntry entry);
  const std::vector<JournalEntry>& Entries() const { return entries_; }

  /// What lies in a Terminal: what was written to it or to all on its line.
  Inventory Of(const TerminalId& terminal) const;
  /// Every Terminal that an entry names, all on a line (255) only where something was written to
  /// them and no single one is known there.
  std::vector<TerminalId> Terminals() const;

 private:
  std::vector<JournalEntry> entries_;
};

}  // namespace kelvo
