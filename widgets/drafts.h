#pragma once

#include <QAbstractButton>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "store/recordset.h"
#include "widgets/name_list.h"

namespace kelvo {

/// Edits of stored records that are not saved: one for each record, kept when the record is left
/// and until it is saved or given up. `Edit` is what the page's controls hold. Drafts live in
/// memory only; closing the program asks.
template <typename Edit>
class Drafts {
 public:
  /// `discard` gives up the current record's draft; it can be pressed while there is one.
  Drafts(const Recordset& records, NameList& names, QAbstractButton& discard)
      : records_(records), names_(names), discard_(discard) {
    discard_.setEnabled(false);
  }

  /// The current record has become another one: its draft; nullptr when it has none.
  const Edit* Resume() {
    const auto draft = drafts_.find(records_.Bookmark());
    discard_.setEnabled(draft != drafts_.end());
    return draft == drafts_.end() ? nullptr : &draft->second.edit;
  }
  /// What the current record showed before it was edited.
  Edit Before() const {
    const auto draft = drafts_.find(records_.Bookmark());
    return draft == drafts_.end() ? before_ : draft->second.before;
  }
  /// The current record shows `stored`, and nothing of it is edited.
  void Begin(Edit stored) {
    before_ = std::move(stored);
    Drop(records_.Bookmark());
    discard_.setEnabled(false);
  }
  /// The controls of the current record hold `edit` now.
  void Note(const Edit& edit) {
    const std::int64_t bookmark = records_.Bookmark();
    const bool edited = !(edit == Before());
    discard_.setEnabled(edited);
    if (!edited) return Drop(bookmark);
    const std::string name = bookmark == 0 ? NewRecordName : names_.NameOf(bookmark);
    drafts_[bookmark] = {edit, Before(), name};
    names_.Mark(bookmark, true);
  }
  void Drop(std::int64_t bookmark) {
    if (drafts_.erase(bookmark) > 0) names_.Mark(bookmark, false);
  }
  /// The list was filled anew.
  void MarkNames() {
    for (const auto& [bookmark, draft] : drafts_) names_.Mark(bookmark, true);
  }
  /// Forgets the drafts of records that are not in the list any more.
  void ForgetRemoved() {
    std::erase_if(drafts_, [this](const auto& draft) {
      return draft.first != 0 && !names_.Holds(draft.first);
    });
  }
  /// The names of the edited records; the one that has no record yet is called as it would be.
  std::vector<std::string> Names() const {
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

  const Recordset& records_;
  NameList& names_;
  QAbstractButton& discard_;
  std::map<std::int64_t, Draft> drafts_;  // by bookmark, 0 without a record
  Edit before_{};
};

}  // namespace kelvo
