#pragma once

#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "store/draft_file.h"

namespace kelvo {

class Operator;
class RecordEditorBase;
struct KeptDraft;

/// Drafts as a text: the names of those of the macros, the matrix tables and the AT tables, in this
/// order; what nobody has named yet is told by its page.
std::string DraftWords(const std::vector<std::vector<std::string>>& names);

/// The edits of macros and tables that are not saved, on disk, so that they survive a crash. The
/// file is replaced soon after each change, and is gone when there are none.
class RecordDrafts {
 public:
  using Tell = std::function<void(const std::string& problem)>;
  /// `editors` in the order of DraftWords(); `tell` is told when they cannot be kept.
  RecordDrafts(std::string path, std::vector<RecordEditorBase*> editors, Operator& person,
               Tell tell);

  /// Asks whether what is left of the last run is to be taken up again, and what programs have left
  /// behind in these files. What is declined, or cannot be read, is set aside; what nobody answers
  /// for stays.
  void Offer(const std::vector<std::string>& leftBehind);
  /// Writes them now; false when they are not on the disc.
  bool Keep();
  /// The program ends properly.
  void Remove();

 private:
  using Drafts = std::vector<std::vector<KeptDraft>>;

  static std::optional<Drafts> DraftsIn(const std::string& bytes, std::size_t pages);
  /// Whether they were taken up.
  bool OfferFile(const DraftFile& file);

  DraftFile file_;
  const std::vector<RecordEditorBase*> editors_;
  Operator& person_;
  const Tell tell_;
  QTimer timer_;
};

}  // namespace kelvo
