#pragma once

#include <QTimer>
#include <string>
#include <vector>

namespace kelvo {

class Operator;
class RecordEditorBase;

/// Drafts as a text: the names of those of the macros, the matrix tables and the AT tables, in this
/// order; what nobody has named yet is told by its page.
std::string DraftWords(const std::vector<std::vector<std::string>>& names);

/// The edits of macros and tables that are not saved, on disk, so that they survive a crash. The
/// file is replaced soon after each change, and is gone when there are none.
class RecordDrafts {
 public:
  /// `editors` in the order of DraftWords().
  RecordDrafts(std::string path, std::vector<RecordEditorBase*> editors, Operator& person);

  /// Asks whether what is left of the last run is to be taken up again, and what programs have left
  /// behind in these files.
  void Offer(const std::vector<std::string>& leftBehind);
  /// Writes them now.
  void Keep();
  /// The program ends properly.
  void Remove();

 private:
  void OfferFile(const std::string& path);

  const std::string path_;
  const std::vector<RecordEditorBase*> editors_;
  Operator& person_;
  QTimer timer_;
};

}  // namespace kelvo
