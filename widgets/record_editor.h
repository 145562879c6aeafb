#pragma once

#include <QScopedValueRollback>
#include <algorithm>
#include <map>
#include <set>

#include "widgets/record_editor_base.h"

namespace kelvo {

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
    /// What is stored of an edit, its name aside. Nothing when it cannot be stored, which has been
    /// said then.
    std::function<std::optional<Fields>(const Edit&)> fields;
    /// An edit as wire texts, to outlive the program.
    std::function<std::vector<std::string>(const Edit&)> pack;
    std::function<Edit(const std::vector<std::string>&)> unpack;
  };

  RecordEditor(Services services, RecordKind kind, Screen screen)
      : RecordEditorBase(services, std::move(kind)), screen_(std::move(screen)) {}

  /// Other records of the table.
  void SetSource(std::string source) {
    RemoveUnusedBut(0);
    records_.SetSource(std::move(source));
    names_.Fill(records_);
    MarkDrafts();
    SelectFirst();
  }
  /// Another page, or another program, may have changed the table.
  void Refresh() {
    const std::int64_t shown = Current();
    const Recordset::Row asShown = records_.Current();
    ReadRecords();
    RescueDrafts();
    MarkDrafts();
    if (Current() != shown || records_.Current() != asShown) ShowCurrent();
  }

  /// Appends a record that holds `fields` alone and shows `fresh`.
  void New(const Edit& fresh, const Fields& fields = {}) {
    Append(kNewRecordName, fields);
    unused_.insert(Current());
    drafts_.erase(0);
    Restart(fresh);
    RemoveUnusedBut(Current());
  }
  /// Stores `fields` under a name that the operator is asked for, and shows them as `edit`, with
  /// the number as it is stored. False when the operator gave up.
  bool Save(Fields fields, Edit edit, std::string proposedName) {
    const std::int64_t edited = Current();
    const Recordset::Row asRead = AsRead();
    const auto typ =
        std::find_if(fields.begin(), fields.end(), [](const auto& f) { return f.first == "typ"; });
    const auto* const savedTyp =
        typ == fields.end() ? nullptr : std::get_if<std::string>(&typ->second);
    const Target target = AskForName(proposedName, savedTyp ? *savedTyp : kind_.typ);
    if (target == Target::None) return false;
    Number(fields, target);
    if (!Store(target, proposedName, fields, Current() == edited ? asRead : records_.Current())) {
      return false;
    }
    if (target == Target::New) Drop(0);
    unused_.erase(Current());
    edit.number = NumberField();
    Restart(edit);
    TellStored(CurrentName(), "gespeichert");
    return true;
  }
  /// Saves what is shown. Under whatever name, it is no draft any more.
  void SaveShown() {
    Edit edit = screen_.shown();
    if (auto fields = screen_.fields(edit)) SaveShown(std::move(*fields), std::move(edit));
  }
  void SaveShown(Fields fields, Edit edit) {
    const std::int64_t edited = Current();
    if (!Save(std::move(fields), std::move(edit), CurrentName())) return;
    Drop(edited);
    RemoveUnusedBut(Current());
  }
  /// Deletes the current record after a Yes and shows the next.
  void Delete() {
    const Recordset::Row row = records_.Current();
    const std::string name = CurrentName();
    const std::optional<Draft> draft = CurrentDraft();
    const std::int64_t deleted = DeleteCurrent();
    if (deleted == 0) return;
    Drop(deleted);
    ShowCurrent();
    person_.Done().Note("Löschen von „" + name + "“", [this, deleted, row, name, draft] {
      records_.Restore(deleted, row);
      names_.Add(kind_.newEntry, Current(), name);
      TakeUp(Current(), draft);
    });
    TellStored(name, "gelöscht");
  }

  /// The controls hold something else now.
  void Edited() {
    if (showing_) return;
    const Edit edit = screen_.shown();
    const Edit before = Before();
    if (edit == before) return Drop(Current());
    drafts_[Current()] = {edit, before, CurrentName(), AsRead()};
    names_.Mark(Current(), true);
    EnableDiscard(true);
    TellDrafts();
  }
  bool CurrentIsEdited() const { return drafts_.contains(Current()); }
  std::vector<std::string> DraftNames() const override {
    std::vector<std::string> names;
    for (const auto& [bookmark, draft] : drafts_) names.push_back(draft.name);
    return names;
  }
  std::vector<KeptDraft> KeptDrafts() const override {
    std::vector<KeptDraft> kept;
    for (const auto& [bookmark, draft] : drafts_) {
      kept.push_back({bookmark, draft.name, screen_.pack(draft.edit)});
    }
    return kept;
  }
  void TakeDrafts(const std::vector<KeptDraft>& kept) override {
    for (const KeptDraft& some : kept) {
      const bool there = some.bookmark == 0 || (records_.MoveToBookmark(some.bookmark) &&
                                                records_.Text("Bezeichnung") == some.name);
      if (!there) Append(some.name, {});
      ShowCurrent();
      drafts_[some.bookmark == 0 ? 0 : Current()] = {screen_.unpack(some.edit), before_, some.name,
                                                     records_.Current()};
    }
    MarkDrafts();
    ShowCurrent();
    TellDrafts();
  }
  bool SaveDrafts() override {
    const auto drafts = drafts_;
    for (const auto& [bookmark, draft] : drafts) {
      if (bookmark != 0 && !Select(bookmark)) continue;
      auto fields = screen_.fields(draft.edit);
      const Target target = bookmark == 0 ? Target::New : Target::Current;
      if (fields) Number(*fields, target);
      if (!fields || !Store(target, NameToSave(draft.name, bookmark), *fields, draft.asRead))
        return false;
      unused_.erase(bookmark);
      drafts_.erase(bookmark);
      ShowCurrent();
    }
    return true;
  }
  void RemoveUnused() override {
    drafts_.clear();
    RemoveUnusedBut(0);
  }
  void TakeUnused() override {
    for (const std::int64_t bookmark : NeverFilled()) {
      if (!drafts_.contains(bookmark)) unused_.insert(bookmark);
    }
    RemoveUnusedBut(Current());
  }

 private:
  struct Draft {
    Edit edit;
    Edit before;
    std::string name;
    Recordset::Row asRead;
  };

  /// A record's running number is that of the others at the time when it is saved.
  void Number(Fields& fields, Target target) const {
    const auto all = static_cast<std::int64_t>(records_.RecordCount());
    fields.emplace_back("lfdnr", target == Target::New ? all : all - 1);
  }
  void ShowCurrent() override {
    RemoveUnusedBut(Current());
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
    // What is shown already keeps its caret.
    if (!(screen_.shown() == edit)) screen_.show(edit);
    before_ = screen_.shown();
    Drop(Current());
  }
  void Discard() override {
    const std::int64_t bookmark = Current();
    const std::optional<Draft> draft = CurrentDraft();
    if (!draft) return;
    ReadRecords();
    if (Current() == bookmark && records_.Current() == draft->asRead) {
      Restart(draft->before);
    } else {  // another program has stored something else since
      Drop(bookmark);
      ShowCurrent();
    }
    person_.Done().Note("Verwerfen der Änderung an „" + draft->name + "“",
                        [this, bookmark, draft] { TakeUp(bookmark, draft); });
  }
  std::optional<Draft> CurrentDraft() const {
    const auto draft = drafts_.find(Current());
    return draft == drafts_.end() ? std::nullopt : std::optional(draft->second);
  }
  /// Shows a record with this edit of it.
  void TakeUp(std::int64_t bookmark, const std::optional<Draft>& draft) {
    if (bookmark != 0 && !records_.MoveToBookmark(bookmark)) return;
    if (draft) drafts_[bookmark] = *draft;
    MarkDrafts();
    ShowCurrent();
    TellDrafts();
  }

  /// What the current record showed before it was edited.
  Edit Before() const {
    const auto draft = drafts_.find(Current());
    return draft == drafts_.end() ? before_ : draft->second.before;
  }
  void Drop(std::int64_t bookmark) {
    if (drafts_.erase(bookmark) > 0) {
      names_.Mark(bookmark, false);
      TellDrafts();
    }
    EnableDiscard(drafts_.contains(Current()));
  }
  /// What the current record held when its edit began.
  Recordset::Row AsRead() const {
    const auto draft = drafts_.find(Current());
    return draft == drafts_.end() ? records_.Current() : draft->second.asRead;
  }
  void MarkDrafts() override {
    for (const auto& [bookmark, draft] : drafts_) names_.Mark(bookmark, true);
  }
  /// Drafts whose record is gone live on in a new one, unless the operator says No to that: whoever
  /// closes the box has not, and what was typed is nowhere else.
  void RescueDrafts() {
    const auto drafts = drafts_;
    for (const auto& [bookmark, draft] : drafts) {
      if (bookmark == 0 || records_.Exists(bookmark)) continue;
      drafts_.erase(bookmark);
      if (!KeepDraftOfDeleted(draft.name, Proposal::YesAlways)) continue;
      Append(draft.name, {});
      drafts_[Current()] = {draft.edit, {}, draft.name, records_.Current()};
    }
  }
  void RemoveUnusedBut(std::int64_t kept) {
    const auto unused = unused_;  // a busy database is waited for with the window alive
    for (const std::int64_t bookmark : unused) {
      if (bookmark == kept || drafts_.contains(bookmark) || unused_.erase(bookmark) == 0) continue;
      if (!Remove(bookmark)) unused_.insert(bookmark);
    }
  }

  const Screen screen_;
  std::map<std::int64_t, Draft> drafts_;  // by bookmark, 0 without a record
  std::set<std::int64_t> unused_;         // appended, and neither edited nor saved since
  Edit before_{};
  bool showing_ = false;
};

}  // namespace kelvo
