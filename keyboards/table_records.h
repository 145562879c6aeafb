#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/operator.h"
#include "store/recordset.h"
#include "widgets/name_list.h"

namespace kelvo {

/// The stored tables of one kind and the list of their names. The current record is the one whose
/// entry is selected. Entries stand in record order, a new one first.
///
/// Names need not be unique: chosen by a name, the first record that bears it is meant.
class TableRecords {
 public:
  /// `typ` is the kind's field `typ`; `records` holds the records of that kind alone.
  TableRecords(Recordset& records, QComboBox& names, Operator& person, std::string typ)
      : records_(records), names_(names), person_(person), typ_(std::move(typ)) {}

  /// What a record holds beside its name. Numbers are stored as whole numbers.
  struct Contents {
    int ausgang = 0;
    int eingang = 0;
    double number = 0;  ///< in the Terminal
    std::string wert;   ///< wire text
  };

  void FillNames() { names_.Fill(records_); }
  /// Reads the records anew: another page may have removed or added some. The list keeps its order
  /// when it has not.
  void Refresh();
  void SelectFirst();
  /// Goes to the first record with the name that is chosen in the list, or to the first of all.
  void SelectChosen();
  /// Appends an empty record, which becomes the current one; its entry stands first.
  void AddNew();
  /// Asks for a name and stores the current record under it; a record is appended when there is
  /// none. False when the operator gave up. Throws StoreError.
  bool Save(const Contents& contents);
  /// Removes the current record after a Yes and goes to the next; its bookmark, 0 after a No.
  std::int64_t Delete();

  /// Bookmark of the current record; 0 without one.
  std::int64_t Current() const { return records_.Bookmark(); }
  /// The stored command as wire text; nothing for NULL.
  std::optional<std::string> Wert() const;
  double Number(const char* field) const { return records_.Number(field); }
  /// The number in the Terminal, as its field shows it.
  std::string NumberField() const { return records_.Text("nr_im_display").value_or(""); }
  NameList& Names() { return names_; }

 private:
  void SelectCurrent() { names_.Select(Current()); }

  Recordset& records_;
  NameList names_;
  Operator& person_;
  std::string typ_;
};

}  // namespace kelvo
