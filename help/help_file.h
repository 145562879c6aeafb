#pragma once

#include <QHelpEngine>
#include <QTemporaryDir>
#include <QUrl>
#include <memory>

namespace kelvo {

/// The manual, opened. What its engine has to write (a collection, the index for the search) lies
/// in a temporary folder, so that nothing is written beside the program.
class HelpFile {
 public:
  /// Nothing when the file is missing, damaged or another manual.
  static std::unique_ptr<HelpFile> Open(const QString& path);

  QHelpEngine& Engine() { return engine_; }
  /// The address of a chapter, "status.html" or "status.html#ports"; empty when there is none.
  QUrl Page(const QString& chapter) const;
  /// The bytes of a page, style sheet or picture; empty when there is none.
  QByteArray Data(const QUrl& address) const { return engine_.fileData(address); }

 private:
  HelpFile();

  QTemporaryDir folder_;
  QHelpEngine engine_;  // let go of before its folder
};

}  // namespace kelvo
