#include "project_page/project_desk.h"

#include <QFileInfo>
#include <QProgressDialog>

#include "project/project_store.h"
#include "project_page/export_dialog.h"
#include "project_page/import_dialog.h"
#include "widgets/files.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;
constexpr int kPatience = 400;  // milliseconds until a box is worth while
constexpr int kSteps = 1000;

}  // namespace

ProjectDesk::ProjectDesk(ProjectServices services, QWidget* window)
    : QObject(window), services_(std::move(services)), window_(window) {}

void ProjectDesk::Export() {
  if (export_ == nullptr) {
    export_ = new ExportDialog(services_, window_);
    connect(export_, &ExportDialog::Finished, this, &ProjectDesk::Finished);
    connect(export_, &QDialog::finished, this, [this] { Q_EMIT Closed(export_); });
    Q_EMIT Opened(export_);
  }
  export_->Present();
}

void ProjectDesk::Import() {
  const auto path = services_.person.OpenFile("Projekt importieren", kProjectFilter);
  if (!path) return;
  auto project =
      LoadProject(*path, services_.person, window_, "Die Datei wird nicht importiert:\n");
  if (!project) return;
  if (import_ == nullptr) {
    import_ = new ImportDialog(services_, window_);
    connect(import_, &ImportDialog::Imported, this, &ProjectDesk::NoteImport);
    connect(import_, &QDialog::finished, this, [this] { Q_EMIT Closed(import_); });
    Q_EMIT Opened(import_);
  }
  import_->Present(FileName(*path), *std::move(project));
}

void ProjectDesk::NoteImport(const QString& file, const ImportDone& done) {
  const QString count =
      done.changes.size() == 1 ? tr("1 Satz") : tr("%1 Sätze").arg(done.changes.size());
  Q_EMIT Changed();
  Q_EMIT Finished(tr("Import von %1: %2 geändert").arg(file, count));
  services_.person.Done().Note(tr("Import von %1").arg(file).toStdString(), [this, done] {
    UndoImport(services_.database, services_.journal, done);
    Q_EMIT Changed();
  });
}

std::optional<Project> LoadProject(const std::string& path, Operator& person, QWidget* window,
                                   const std::string& refusal) {
  const auto text = ReadFile(path, kLargestFile);
  if (!text) {
    person.Message("Die Datei konnte nicht gelesen werden:\n" + path, Icon::Exclamation);
    return std::nullopt;
  }
  ReadResult read = ReadProject(*text, ShownProgress(window, QObject::tr("Liest die Datei …")));
  if (const auto* const fault = std::get_if<ProjectFault>(&read)) {
    person.Message(refusal + path + "\n\n" + FaultText(*fault), Icon::Exclamation);
  }
  auto* const project = std::get_if<Project>(&read);
  return project != nullptr ? std::optional(std::move(*project)) : std::nullopt;
}

ProjectProgress ShownProgress(QWidget* window, const QString& what) {
  auto box = std::make_shared<QProgressDialog>(what, QObject::tr("Abbrechen"), 0, kSteps, window);
  Named(box.get(), "frmFortschritt");
  box->setWindowModality(Qt::WindowModal);
  box->setMinimumDuration(kPatience);
  return [box](std::size_t done, std::size_t all) {
    box->setValue(static_cast<int>(done * (kSteps - 1) / std::max<std::size_t>(all, 1)));
    return !box->wasCanceled();
  };
}

QString FileName(const std::string& path) {
  return u'„' + QFileInfo(QString::fromStdString(path)).fileName() + u'“';
}

}  // namespace kelvo
