#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "store/new_name.h"

class QComboBox;

namespace kelvo {

class Recordset;

/// Where the list shows a new record.
enum class NewEntry { First, Last };

/// The names of a record set's records in a combo box. An entry is known by the bookmark of its
/// record, because names need not be unique; one whose record has an unsaved edit is marked "*".
class NameList {
 public:
  explicit NameList(QComboBox& box) : box_(box) {}

  /// One entry for each record, in record order.
  void Fill(const Recordset& records);
  /// Whether the entries are those of the records, in whatever order.
  bool Shows(const Recordset& records) const;
  void Add(NewEntry where, std::int64_t bookmark, const std::string& name);
  /// These do nothing for a record that is not in the list.
  void Rename(std::int64_t bookmark, const std::string& name);
  void Remove(std::int64_t bookmark);
  void Mark(std::int64_t bookmark, bool unsaved);
  /// Selects a record's entry, or none.
  void Select(std::int64_t bookmark);

  bool Holds(std::int64_t bookmark) const { return IndexOf(bookmark) >= 0; }
  /// The bare name of a record, of the selected entry; empty without one.
  std::string NameOf(std::int64_t bookmark) const { return NameAt(IndexOf(bookmark)); }
  std::string ChosenName() const;
  /// The bookmark of the selected entry; 0 without one.
  std::int64_t Chosen() const;

 private:
  /// Of this entry and all behind it.
  void NoteIndexes(int first);
  int IndexOf(std::int64_t bookmark) const;
  std::string NameAt(int index) const;

  QComboBox& box_;
  std::unordered_map<std::int64_t, int> indexes_;  // by bookmark; thousands of records are usual
};

}  // namespace kelvo
