#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/operator.h"
#include "store/recordset.h"
#include "widgets/name_list.h"

class QAbstractButton;
class QHBoxLayout;

namespace kelvo {

/// The editor's own controls, in the row in which a page shows them.
struct RecordRow {
  RecordRow(const char* namesName, const char* discardName, int nameWidth);

  QHBoxLayout* layout;
  QComboBox* names;
  QAbstractButton* discard;  ///< can be pressed while the current record has a draft
};

/// What distinguishes the records of one page from those of another.
struct RecordKind {
  std::string typ;         ///< field `typ`; where it is empty what is saved brings its own
  std::string namePrompt;  ///< asks for the name under which to save
  /// Asked before another record of that name is overwritten. Where it is empty a name does not
  /// stand for a record: saving renames the current one.
  std::string overwriteQuestion;
  std::string noun;  ///< of "... 'name' löschen ?"
  NewEntry newEntry = NewEntry::Last;
};

/// What is stored in a record beside its name.
using Fields = std::vector<std::pair<std::string, Value>>;

/// An unsaved edit as it outlives the program.
struct KeptDraft {
  std::int64_t bookmark = 0;      ///< of its record, 0 when it belongs to none yet
  std::string name;               ///< of the record
  std::vector<std::string> edit;  ///< wire texts
};

/// The records and the list of their names. The current record is the one that is shown and whose
/// entry is selected, and is known by its bookmark: names need not be unique.
///
/// A record that was appended and neither edited nor saved since is removed when it is left: it
/// holds nothing. Where a record is not any more as it was read, because another program came
/// first, the operator sees both and decides.
class RecordEditorBase {
 public:
  struct Services {
    Recordset& records;
    RecordRow row;
    Operator& person;
  };
  RecordEditorBase(const RecordEditorBase&) = delete;
  RecordEditorBase& operator=(const RecordEditorBase&) = delete;

  void SelectFirst();
  /// The record that is chosen in the list. When it is gone, the first of its name, or of all.
  void SelectChosen();
  /// Shows a record, if it is there.
  bool Select(std::int64_t bookmark);
  /// Saves every draft in its record, under its name. False when one could not be, which has been
  /// said; it is shown then.
  virtual bool SaveDrafts() = 0;
  /// Removes what was appended and never used, also when it is shown: the program ends.
  virtual void RemoveUnused() = 0;
  /// A run that was killed may have left such records: they go as if they were this one's.
  virtual void TakeUnused() = 0;
  /// The records whose edits are not saved, by name.
  virtual std::vector<std::string> DraftNames() const = 0;
  virtual std::vector<KeptDraft> KeptDrafts() const = 0;
  /// Takes up what an earlier run has kept. Where its record is gone it gets a new one.
  virtual void TakeDrafts(const std::vector<KeptDraft>& kept) = 0;
  /// Told when there are other drafts than before.
  void SetDraftListener(std::function<void()> listener) { draftListener_ = std::move(listener); }
  /// Told what the operator has saved or deleted, as a line for the status bar.
  void SetStoredListener(std::function<void(const std::string& words)> listener) {
    storedListener_ = std::move(listener);
  }

  /// Empty without a record.
  std::string CurrentName() const;
  /// The same, empty also while the current record has been given none.
  std::string GivenName() const;
  /// Of records that nobody has named each gets a name that no other one has.
  std::string NameToSave(const std::string& name, std::int64_t bookmark) const;
  /// The current record's wire text; nothing for NULL.
  std::optional<std::string> Wert() const;
  /// Its number in the Terminal, as the field shows it.
  std::string NumberField() const { return records_.Text("nr_im_display").value_or(""); }

 protected:
  RecordEditorBase(Services services, RecordKind kind);
  ~RecordEditorBase() = default;

  enum class Target { None, Current, New };

  virtual void ShowCurrent() = 0;
  virtual void Discard() = 0;
  virtual void MarkDrafts() = 0;

  /// 0 without a record: the screen holds what may become the first.
  std::int64_t Current() const { return records_.Bookmark(); }
  bool HasCurrent() const { return Current() != 0; }
  void SelectCurrent() { names_.Select(Current()); }
  void EnableDiscard(bool on);
  void TellDrafts() {
    if (draftListener_) draftListener_();
  }
  void TellStored(const std::string& name, const std::string& what) const {
    if (storedListener_) storedListener_(kind_.noun + " „" + name + "“ " + what);
  }
  /// Reads the records anew. The list keeps its order when they are those that it shows.
  void ReadRecords();
  /// Asks, beginning with the proposed `name`, until it may be used, and for what.
  Target AskForName(std::string& name, const std::string& savedTyp);
  /// Stores name and fields as one change; their record is current then. `asRead` is what the
  /// record held when its edit began: when it has changed since, the operator decides. False when
  /// nothing was stored.
  bool Store(Target target, const std::string& name, const Fields& fields,
             const Recordset::Row& asRead);
  void Append(const std::string& name, const Fields& fields);
  /// After a Yes; the bookmark of the record that is gone, or 0. The next one is current then.
  std::int64_t DeleteCurrent();
  /// The records as they are appended.
  std::vector<std::int64_t> NeverFilled();
  /// Without a question; the current record stays, or is none when it was this one. False when it
  /// cannot be removed now, of which nobody is told: the action that it comes behind is done.
  bool Remove(std::int64_t bookmark);
  /// Another program has deleted the record of this draft. Yes: it lives on in a new one.
  bool KeepDraftOfDeleted(const std::string& name, Proposal proposal);

  Recordset& records_;
  NameList names_;
  Operator& person_;
  const RecordKind kind_;

 private:
  Target TargetOf(const std::string& name, const std::string& savedTyp);
  void NoteOverwriting(std::int64_t bookmark, const std::string& name,
                       const Recordset::Row& before);
  void Write(Target target, const std::string& name, const Fields& fields,
             const Recordset::Row& asRead);
  bool MayOverwrite(const std::string& name, const Fields& fields);

  QAbstractButton& discard_;
  std::function<void()> draftListener_;
  std::function<void(const std::string&)> storedListener_;
};

}  // namespace kelvo
