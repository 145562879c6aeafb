#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "keyboards/table_records.h"

namespace kelvo {

/// Edits of stored tables that are not saved: one for each record, kept when the record is left and
/// until it is saved or given up. `Edit` is what the page's controls hold.
template <typename Edit>
class Drafts {
 public:
  explicit Drafts(TableRecords& records) : records_(records) {}

  /// The current record's draft; nullptr when it has none.
  const Edit* Current() const {
    const auto draft = drafts_.find(records_.Current());
    return draft == drafts_.end() ? nullptr : &draft->second.edit;
  }
  /// What the current record showed before it was edited.
  const Edit& Before() const {
    const auto draft = drafts_.find(records_.Current());
    return draft == drafts_.end() ? before_ : draft->second.before;
  }
  /// The current record shows `stored`, and nothing of it is edited.
  void Begin(Edit stored) {
    before_ = std::move(stored);
    Drop(records_.Current());
  }
  /// The current record is edited.
  void Note(const Edit& edit) {
    if (edit == Before()) return Drop(records_.Current());
    drafts_[records_.Current()] = {edit, Before()};
    records_.Mark(records_.Current(), true);
  }
  void Drop(std::int64_t bookmark) {
    if (drafts_.erase(bookmark) > 0) records_.Mark(bookmark, false);
  }
  /// The list was filled anew: marks the entries again and forgets records that are gone.
  void Refreshed() {
    std::erase_if(drafts_, [this](const auto& draft) {
      return draft.first != 0 && !records_.Holds(draft.first);
    });
    for (const auto& [bookmark, draft] : drafts_) records_.Mark(bookmark, true);
  }
  /// The names of the edited records; the one that has no record yet is called as it would be.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& [bookmark, draft] : drafts_) {
      names.push_back(bookmark == 0 ? "(neuer Name)" : records_.NameOf(bookmark));
    }
    return names;
  }

 private:
  struct Draft {
    Edit edit;
    Edit before;
  };

  TableRecords& records_;
  std::map<std::int64_t, Draft> drafts_;  // by bookmark, 0 without a record
  Edit before_{};
};

}  // namespace kelvo
