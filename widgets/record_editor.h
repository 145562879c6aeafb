#pragma once

#include <QScopedValueRollback>
#include <cstdint>
#include <functional>
#include <map>
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

/// The records and the list of their names. The current record is the one that is shown and whose
/// entry is selected, and is known by its bookmark: names need not be unique. Chosen by a name, the
/// first record that bears it is meant.
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
  /// The first record with the name that is chosen in the list, or the first of all.
  void SelectChosen();
  /// The records whose edits are not saved, by name.
  virtual std::vector<std::string> DraftNames() const = 0;

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

  /// 0 without a record: the screen holds what may become the first.
  std::int64_t Current() const { return records_.Bookmark(); }
  bool HasCurrent() const { return Current() != 0; }
  std::string CurrentName() const;
  void SelectCurrent() { names_.Select(Current()); }
  void EnableDiscard(bool on);
  /// Reads the records anew. The list keeps its order when they are those that it shows.
  void ReadRecords();
  /// Asks, beginning with the proposed `name`, until it may be used, and for what.
  Target AskForName(std::string& name);
  /// Stores name and fields as one change. Their record is current then.
  void Store(Target target, const std::string& name, const Fields& fields);
  /// After a Yes; the bookmark of the record that is gone, or 0. The next one is current then.
  std::int64_t DeleteCurrent();

  Recordset& records_;
  NameList names_;

 private:
  Target TargetOf(const std::string& name);

  QAbstractButton& discard_;
  Operator& person_;
  const RecordKind kind_;
};

/// Edits the records of a page in its controls. `Edit` is what the controls hold of one record; its
/// member `number` is the field of the number in the Terminal.
///
/// An edited record that is left keeps its edit as a draft, marked "*" in the list, until it is
/// saved or given up. Before there is any record its draft belongs to none. Drafts live in memory
/// only; closing the program asks.
template <typename Edit>
class RecordEditor final : public RecordEditorBase {
 public:
  /// The page's controls. What they hold may be less than the record does.
  struct Screen {
    std::function<void()> showStored;  ///< the current record, as it is stored
    std::function<void(const Edit&)> show;
    std::function<Edit()> shown;
  };

  RecordEditor(Services services, RecordKind kind, Screen screen)
      : RecordEditorBase(services, std::move(kind)), screen_(std::move(screen)) {}

  /// Other records of the table.
  void SetSource(std::string source) {
    records_.SetSource(std::move(source));
    names_.Fill(records_);
    MarkDrafts();
    SelectFirst();
  }
  /// Another page may have changed the table.
  void Refresh() {
    const std::int64_t shown = Current();
    ReadRecords();
    std::erase_if(drafts_, [this](const auto& draft) {
      return draft.first != 0 && !names_.Holds(draft.first);
    });
    MarkDrafts();
    if (Current() != shown) ShowCurrent();
  }

  /// Appends a record that is empty in the database and shows `fresh`.
  void New(const Edit& fresh) {
    Store(Target::New, kNewRecordName, {});
    drafts_.erase(0);
    Restart(fresh);
  }
  /// Stores `fields` under a name that the operator is asked for, and shows them as `edit`, with
  /// the number as it is stored. False when the operator gave up.
  bool Save(Fields fields, Edit edit, std::string proposedName) {
    const Target target = AskForName(proposedName);
    if (target == Target::None) return false;
    const auto others = static_cast<std::int64_t>(records_.RecordCount()) - 1;
    fields.emplace_back("lfdnr", target == Target::New ? others + 1 : others);
    Store(target, proposedName, fields);
    if (target == Target::New) drafts_.erase(0);
    edit.number = NumberField();
    Restart(edit);
    return true;
  }
  /// Saves what is shown. Under whatever name, it is no draft any more.
  void SaveShown(Fields fields, Edit edit) {
    const std::int64_t edited = Current();
    if (Save(std::move(fields), std::move(edit), CurrentName())) Drop(edited);
  }
  /// Deletes the current record after a Yes and shows the next.
  void Delete() {
    const std::int64_t deleted = DeleteCurrent();
    if (deleted == 0) return;
    Drop(deleted);
    ShowCurrent();
  }

  /// The controls hold something else now.
  void Edited() {
    if (showing_) return;
    const Edit edit = screen_.shown();
    const Edit before = Before();
    if (edit == before) return Drop(Current());
    drafts_[Current()] = {edit, before, CurrentName()};
    names_.Mark(Current(), true);
    EnableDiscard(true);
  }
  std::vector<std::string> DraftNames() const override {
    std::vector<std::string> names;
    for (const auto& [bookmark, draft] : drafts_) names.push_back(draft.name);
    return names;
  }

 private:
  struct Draft {
    Edit edit;
    Edit before;
    std::string name;
  };

  void ShowCurrent() override {
    SelectCurrent();
    const auto draft = drafts_.find(Current());
    EnableDiscard(draft != drafts_.end());
    const QScopedValueRollback<bool> showing(showing_, true);
    if (draft != drafts_.end()) return screen_.show(draft->second.edit);
    HasCurrent() ? screen_.showStored() : screen_.show({});
    before_ = screen_.shown();
  }
  /// The current record shows just this, and nothing of it is edited.
  void Restart(const Edit& edit) {
    const QScopedValueRollback<bool> showing(showing_, true);
    screen_.show(edit);
    before_ = screen_.shown();
    Drop(Current());
  }
  void Discard() override { Restart(Before()); }

  /// What the current record showed before it was edited.
  Edit Before() const {
    const auto draft = drafts_.find(Current());
    return draft == drafts_.end() ? before_ : draft->second.before;
  }
  void Drop(std::int64_t bookmark) {
    if (drafts_.erase(bookmark) > 0) names_.Mark(bookmark, false);
    EnableDiscard(drafts_.contains(Current()));
  }
  void MarkDrafts() {
    for (const auto& [bookmark, draft] : drafts_) names_.Mark(bookmark, true);
  }

  const Screen screen_;
  std::map<std::int64_t, Draft> drafts_;  // by bookmark, 0 without a record
  Edit before_{};
  bool showing_ = false;
};

}  // namespace kelvo
