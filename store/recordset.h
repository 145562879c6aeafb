#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/statement.h"

namespace kelvo {

/// A stored value that is not used as it is.
struct OddValue {
  std::string field;
  std::string stored;
  std::string used;
};

/// Records of one table with a current record among them. Which records belong to it, their order
/// and what they hold are read when it is opened or refreshed; records added through it come last.
///
/// Of a table of one record (DeliveredRecord) a field that is missing, and every field while the
/// record is, reads as delivered; the record is made by the first change of it.
///
/// Every change is one transaction and durable when the call returns. What fails throws StoreError
/// and has changed nothing; StoreConflict when the record is not any more as it was read.
class Recordset {
 public:
  /// What a record holds, in the order of the table's fields.
  using Row = std::vector<Value>;

  /// `source` is a table's name or "select * from TABLE ...". The first record is current.
  Recordset(Database& database, std::string source);
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  /// Another source; the first record is current.
  void SetSource(std::string source);
  /// Reads anew which records belong here and what they hold; stays on the current one, or goes to
  /// the first.
  void Refresh();
  /// The same where it can be had at once; else what was read last stays.
  void TryRefresh();

  void MoveFirst();
  void MoveNext();
  void MovePrevious();
  void MoveLast();
  /// Moves to a record by its position (0 ..), out of range to the end.
  void MoveTo(std::size_t position);
  /// Behind the last record; there is no current record then.
  bool Eof() const { return position_ >= records_.size(); }
  std::size_t RecordCount() const { return records_.size(); }
  std::size_t Position() const { return position_; }
  /// Tells the current record apart from every other of its table, for as long as it exists; 0
  /// without a current record.
  std::int64_t Bookmark() const { return HasCurrent() ? records_[position_].key : 0; }
  /// Moves to a record by its bookmark; false, without moving, when it is not here.
  bool MoveToBookmark(std::int64_t bookmark);
  /// The bookmark of the record at a position; 0 out of range.
  std::int64_t BookmarkAt(std::size_t position) const {
    return position < records_.size() ? records_[position].key : 0;
  }
  /// The table still has this record, whether it belongs here or not.
  bool Exists(std::int64_t bookmark) const { return !Stored(bookmark).empty(); }
  /// Moves to the first record whose `field` equals `value` exactly; false, without moving, when
  /// there is none.
  bool FindFirst(const std::string& field, const Value& value);

  /// What of a table of one record is stored, but not used as it is.
  std::vector<OddValue> OddValues() const;

  // The current record as it was read; without one every field is NULL.
  Value Field(const std::string& field) const;
  /// A field as text; nothing for NULL.
  std::optional<std::string> Text(const std::string& field) const;
  /// A field as a finite number; 0 for NULL and for what is no number. Of a table of one record
  /// within what the field is used for, and as delivered instead of 0.
  double Number(const std::string& field) const;
  /// The same rounded to a whole number and confined to `lowest` .. `highest`.
  std::int64_t Whole(const std::string& field, std::int64_t lowest, std::int64_t highest) const;
  bool YesNo(const std::string& field) const { return Number(field) != 0; }
  /// All of it, empty without a current record.
  Row Current() const { return HasCurrent() ? records_[position_].row : Row(); }
  /// The `field` of every record as text, in order, "" for NULL.
  std::vector<std::string> Column(const std::string& field) const;

  /// Begins a change of the current record, which must still hold what was read.
  void Edit() { Edit(Current()); }
  /// The same for what was read at an earlier time.
  void Edit(Row asRead);
  /// Begins a new record.
  void AddNew();
  void Set(const std::string& field, Value value) { changes_[field] = std::move(value); }
  /// All fields at once.
  void SetAll(const Row& row);
  /// Stores what was set since Edit or AddNew. A new record does not become the current one.
  void Update();
  /// Removes the current record; there is none then until the next move, and MoveNext goes to the
  /// one that followed it.
  void Delete();

  /// Puts back a record that was deleted, under its bookmark if that is free. It comes last, and is
  /// current then.
  void Restore(std::int64_t bookmark, const Row& row);

  /// Another number whenever the records here, or what they hold, have changed.
  std::uint64_t Revision() const { return revision_; }

  /// Called after each change of the current record, also when it stays the same after a refresh.
  void SetRepositionHandler(std::function<void()> handler) { repositioned_ = std::move(handler); }

 private:
  struct Record {
    std::int64_t key;
    Row row;
    bool operator==(const Record&) const = default;
  };

  void ReadRecords();
  Row Stored(std::int64_t key) const;
  std::vector<Record>::iterator RecordOf(std::int64_t bookmark);
  void CheckUnchanged(std::int64_t key, const Row& asRead) const;
  std::string UpdateText() const;
  bool Has(const std::string& field) const;
  std::size_t IndexOf(const std::string& field) const;
  void Go(std::size_t position);
  bool HasCurrent() const { return !deleted_ && !Eof(); }

  Database& database_;
  std::string source_;
  std::string table_;  // quoted
  std::map<std::string, Value> delivered_;
  std::vector<std::string> fields_;
  std::vector<Record> records_;
  std::uint64_t revision_ = 0;
  std::size_t position_ = 0;
  bool deleted_ = false;  // the record before records_[position_] was current and is gone
  bool adding_ = false;
  Row asRead_;  // what is being changed
  std::map<std::string, Value> changes_;
  std::function<void()> repositioned_;
};

}  // namespace kelvo
