#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "inventory/entry.h"
#include "inventory/journal_file.h"
#include "inventory/room.h"

// What was written from here into which Terminal: entries in the order in which they happened, and
// what lies there after them.

namespace kelvo {

/// The journal's file in the data folder.
inline constexpr char kJournalFile[] = "bestand.txt";

/// What says that an item lies there as it was sent.
enum class Proof : std::uint8_t {
  Acknowledged,  ///< the Terminal has answered ACK
  Checksum,      ///< the sum of what it received was right, too
};

struct Held {
  Item item;
  Proof proof = Proof::Acknowledged;
  JournalTime written;
  bool broadcast = false;  ///< written to all at once; any of them may have answered
};

/// Why nothing can be said of what lies under a number.
struct Doubt {
  Event event = Event::Begun;  ///< Acknowledged: it is not known to whom
  /// Where that was: an address that was selected then. Whether it is this Terminal's nobody knows.
  std::optional<int> at{};
  JournalTime time;
  ItemChange::Kind change = ItemChange::Kind::Written;  ///< what was begun
  /// What was written there and acknowledged before, and may lie there still.
  std::optional<Held> before{};
  /// Commands that may have come there since, of macros that change the EEPROM when they run.
  std::vector<std::string> perhaps{};
  /// Its end may never have arrived: what was sent next may have become a part of it.
  bool cutOff = false;
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
  /// When it was erased from here last.
  const std::optional<JournalTime>& Erased() const { return erased_; }
  /// Something was written from here since then, or ever, even if it lies there no more.
  bool WrittenSince() const { return written_; }
  /// The place of `key` is known to be empty.
  bool KnownEmpty(const ItemKey& key) const;
  /// What is held in the place of `key`: of tables, that of either keyboard.
  const Held* At(const ItemKey& key) const;
  /// The place of `key` is in doubt.
  const Doubt* DoubtAt(const ItemKey& key) const;
  /// This Terminal has acknowledged it, not any one of all, and no answer of it since contradicts
  /// that it lies there.
  bool Trusts(const Held& held) const;
  const Room& FreeBytes() const { return room_; }

 private:
  /// What was known of a place before the command went out that has made it doubtful.
  struct Before {
    ItemKey place;
    std::optional<Held> held;
    bool empty = false;
  };

  void Begin(const JournalEntry& entry);
  Before TakeBefore(const ItemKey& key);
  Before Now(const ItemKey& key) const;
  void Apply(const JournalEntry& entry, bool broadcast);
  void Write(const JournalEntry& entry, bool broadcast);
  void DoubtPlace(const JournalEntry& entry, std::optional<int> at = {});
  Doubt DoubtOver(const ItemKey& key, const JournalEntry& entry, std::optional<int> at) const;
  void Forget(const ItemKey& key);
  void Prove(const JournalEntry& entry);
  void Read(const JournalEntry& entry);

  std::map<ItemKey, Held> items_;
  std::map<ItemKey, Doubt> doubtful_;
  std::set<ItemKey> deleted_;
  bool emptied_ = false;
  std::optional<JournalTime> erased_;
  bool written_ = false;
  std::optional<Before> before_;
  Room room_;
};

/// The entries of all Terminals, in a file that several programs may write.
class WriteJournal {
 public:
  /// Without a file.
  WriteJournal() = default;
  explicit WriteJournal(const std::string& path);
  WriteJournal(const WriteJournal&) = delete;
  WriteJournal& operator=(const WriteJournal&) = delete;

  /// Told the reason (UTF-8) when the file cannot be written, the first time only.
  void SetFailureListener(std::function<void(const std::string& reason)> listener) {
    failure_ = std::move(listener);
  }
  /// Told after entries have come.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }

  /// Records an entry; on the disc when the call returns. One that cannot be is kept as
  /// NotRecorded, which makes its place doubtful; false then.
  bool Add(JournalEntry entry);
  /// Takes what other programs have recorded meanwhile.
  void Refresh();
  /// Puts entries that were recorded elsewhere where their times belong. Nothing when that is done,
  /// else the reason (UTF-8), and all is as it was.
  std::optional<std::string> Insert(const std::vector<JournalEntry>& entries);
  /// Takes such entries out again.
  std::optional<std::string> Remove(const std::vector<JournalEntry>& entries);

  const std::vector<JournalEntry>& Entries() const { return entries_; }
  /// Lines of the file that are torn or damaged.
  std::size_t Unreadable() const { return unreadable_; }

  /// What lies in a Terminal: what was written to it or to all on its line.
  Inventory Of(const TerminalId& terminal) const;
  /// Every Terminal that an entry tells something of; all on a line (255) only where something was
  /// written to them and no single one is known there.
  std::vector<TerminalId> Terminals() const;

 private:
  void TakeLines();
  std::optional<std::string> Rewrite(const JournalFile::Change& change);

  std::optional<JournalFile> file_;
  std::vector<JournalEntry> entries_;
  /// What has been folded already, of how many entries.
  mutable std::map<TerminalId, std::pair<Inventory, std::size_t>> folded_;
  std::size_t unreadable_ = 0;
  bool told_ = false;
  std::function<void(const std::string&)> failure_;
  std::function<void()> listener_;
};

}  // namespace kelvo
