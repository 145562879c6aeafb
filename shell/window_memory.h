#pragma once

#include <QByteArray>
#include <QStringList>
#include <memory>

#include "store/recordset.h"

class QWidget;

namespace kelvo {

/// Where windows were and how big, what they show, where the last file dialog was, and which
/// drawings were used last: the tables `Fenster` and `Zuletzt`. A database without them, or one
/// that cannot be written, remembers nothing; that is never reported, because nothing of the
/// operator's is lost.
class WindowMemory {
 public:
  static constexpr int kFiles = 8;

  explicit WindowMemory(Database& database);

  /// Puts a window where one of its objectName was last, on a screen that is still there; false
  /// when nothing is known.
  bool Restore(QWidget& window) const;
  void Remember(const QWidget& window);

  /// What a control tells of itself as a text of bytes, under a name that no window has; empty when
  /// nothing is known.
  QByteArray State(const char* name) const;
  void RememberState(const char* name, const QByteArray& state);

  /// The folder of the last file dialog; empty when nothing is known.
  QString Folder() const;
  void NoteFolder(const QString& folder);

  /// What a window has remembered of itself under a name that no window has; empty when nothing is
  /// known.
  std::string Noted(const std::string& name) const { return Place(name); }
  void Note(const std::string& name, const std::string& value) { StorePlace(name, value); }

  /// The paths of the drawings that were used last, the newest first; at most `kFiles`.
  QStringList RecentFiles() const;
  void NoteFile(const QString& path);
  void ForgetFile(const QString& path);

 private:
  std::string Place(const std::string& name) const;
  void StorePlace(const std::string& name, const std::string& place);
  void StoreFiles(const QStringList& paths);

  std::unique_ptr<Recordset> Fenster_;
  std::unique_ptr<Recordset> Zuletzt_;
};

}  // namespace kelvo
