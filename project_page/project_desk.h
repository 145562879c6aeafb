#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <utility>

#include "base/operator.h"
#include "graphics/device_font.h"
#include "inventory/journal.h"
#include "project/project_text.h"
#include "store/database.h"

class QWidget;

namespace kelvo {

class ExportDialog;
class ImportDialog;
struct ImportDone;

/// What both dialogs need.
struct ProjectServices {
  Database& database;
  WriteJournal& journal;
  Operator& person;
  const DeviceFonts& fonts;
  std::function<std::pair<int, int>()> display;  ///< its size in pixels
};

/// Exports and imports projects: the two dialogs, made at their first use.
class ProjectDesk : public QObject {
  Q_OBJECT

 public:
  ProjectDesk(ProjectServices services, QWidget* window);

  void Export();
  /// Asks for the file first.
  void Import();

 Q_SIGNALS:
  /// The database has changed, by an import or because one was taken back.
  void Changed();
  /// What was done, in one line.
  void Finished(const QString& text);
  /// A dialog was made, or is being closed.
  void Opened(QWidget* dialog);
  void Closed(QWidget* dialog);

 private:
  void NoteImport(const QString& file, const ImportDone& done);

  ProjectServices services_;
  QWidget* window_;
  ExportDialog* export_ = nullptr;
  ImportDialog* import_ = nullptr;
};

inline constexpr char kProjectFilter[] = "kelvo-Projekt |*.kelvo";

/// A project from a file. What cannot be read is told, below `refusal`, with line and place;
/// nothing then, and when the operator stopped it.
std::optional<Project> LoadProject(const std::string& path, Operator& person, QWidget* window,
                                   const std::string& refusal);
/// Shows in a box how far a long work is; the operator can stop it there.
ProjectProgress ShownProgress(QWidget* window, const QString& what);
/// "„halle.kelvo“"
QString FileName(const std::string& path);

}  // namespace kelvo
