#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "project/identity.h"
#include "project/project.h"
#include "store/database.h"

// From the database into a project and back: what is there, what an import would do, doing it, and
// taking it back.

namespace kelvo {

class WriteJournal;

/// A record of the database.
struct RecordHere {
  ProjectRecord record;
  std::int64_t key = 0;    ///< its rowid
  std::vector<Value> row;  ///< all of it, as it was read
};
/// Every record that a project can hold, by kind, number and name. Throws StoreError.
std::vector<RecordHere> RecordsHere(const Database& database);
/// All records of these kinds, and the entries if Inventory is among them.
Project ProjectOf(const std::vector<RecordHere>& records, const std::vector<JournalEntry>& journal,
                  const std::set<ProjectKind>& kinds);
/// All that a project can hold of them. Kinds of which there is nothing are told of, too, so that
/// an import sees what was deleted; the journal is, when it has entries.
Project EverythingOf(const std::vector<RecordHere>& records,
                     const std::vector<JournalEntry>& journal);

enum class Finding : std::uint8_t {
  Equal,
  New,
  Different,
  OtherName,     ///< the same number under another name
  ChangedThere,  ///< since the common state, there alone
  ChangedHere,   ///< here alone
  Merged,        ///< on both sides, in different places
  Conflict,      ///< on both sides, in the same place
  DeletedThere,
  DeletedHere,
};
inline constexpr std::size_t kFindings = 10;
/// "verschieden", "nur in der Datei geändert", UTF-8.
std::string FindingText(Finding finding);

enum class ImportChoice : std::uint8_t {
  Open,    ///< to be decided
  Leave,   ///< the database keeps what it has
  Take,    ///< it becomes the result
  Beside,  ///< what is there becomes a record of its own, under another name
};

/// What an import would do with one record.
struct ImportItem {
  ProjectKind kind = ProjectKind::Macro;
  Finding finding = Finding::New;
  std::optional<RecordHere> here;
  std::optional<ProjectRecord> there;
  std::optional<ProjectRecord> base;    ///< in the common state
  std::optional<ProjectRecord> result;  ///< of Take; nothing: the record is deleted
  ImportChoice choice = ImportChoice::Open;
  std::string besideName{};  ///< UTF-8

  /// Whether it may become a record of its own: not what is told apart by its number alone.
  bool MayBeBeside() const;
  bool MayChoose(ImportChoice choice) const;
};

/// What an import would do: nothing is changed before it is applied.
struct ImportPlan {
  std::vector<ImportItem> items;
  std::vector<ProjectDrawing> drawings;  ///< to be written into files, by whoever asks for that
  /// What the file knows of Terminals and the journal here does not.
  std::vector<JournalEntry> inventory;
  std::size_t inventoryKnown = 0;  ///< entries of the file that the journal has
  bool takeInventory = true;
  std::multiset<NameKey> namesHere;  ///< of all records that are here

  std::size_t Open() const;     ///< items to be decided
  std::size_t Changes() const;  ///< records that would be written or deleted
  /// Why an item may not bring its name, UTF-8: there is none given for it, or another record would
  /// have it, too. One for each item, empty where nothing is against it.
  std::vector<std::string> NameFaults() const;
};

/// The name, as it is compared, that an item brings into the database; nothing when it brings none.
std::optional<std::string> BroughtName(const ImportItem& item);

/// `base` is the common state that both sides have come from, where there is one: what only one
/// side has changed since is not asked.
ImportPlan PlanImport(const Project& there, const std::vector<RecordHere>& here,
                      const std::vector<JournalEntry>& journal, const Project* base = nullptr);

/// What was done, to be taken back.
struct ImportDone {
  struct Change {
    ProjectKind kind;
    std::int64_t key;
    std::vector<Value> before;  ///< empty: it was not there
    std::vector<Value> after;   ///< empty: it is gone
    std::string text;           ///< names it
  };
  std::vector<Change> changes;
  std::vector<JournalEntry> inventory;
};

/// Does what was chosen, all of it or nothing; what is still open stays. Throws StoreError, and
/// StoreConflict when a record is not any more as it was planned with, or a name that comes is used
/// by now.
ImportDone ApplyImport(const Database& database, WriteJournal& journal, const ImportPlan& plan);
/// Puts everything back, or nothing: throws StoreError, naming the record, where one has changed
/// since.
void UndoImport(const Database& database, WriteJournal& journal, const ImportDone& done);

}  // namespace kelvo
