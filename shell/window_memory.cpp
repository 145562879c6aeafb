#include "shell/window_memory.h"

#include <QByteArray>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace kelvo {
namespace {

constexpr char kFolderRecord[] = "Ordner";  // no window has this name

std::unique_ptr<Recordset> OpenIfThere(Database& database, const char* table,
                                       std::initializer_list<const char*> fields) {
  try {
    auto records = std::make_unique<Recordset>(database, table);
    for (const char* field : fields) records->Column(field);  // throws when there is none
    return records;
  } catch (const StoreError&) {
    return nullptr;
  }
}

}  // namespace

WindowMemory::WindowMemory(Database& database)
    : Fenster_(OpenIfThere(database, "Fenster", {"Name", "Lage"})),
      Zuletzt_(OpenIfThere(database, "Zuletzt", {"Datei"})) {}

bool WindowMemory::Restore(QWidget& window) const {
  const std::string stored = Place(window.objectName().toStdString());
  if (!window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored)))) {
    return false;
  }
  // The screen may be a smaller one now.
  const QRect screen = window.screen()->availableGeometry();
  QRect place = window.geometry();
  place.setSize(place.size().boundedTo(screen.size()));
  place.moveTo(std::clamp(place.x(), screen.left(), screen.right() + 1 - place.width()),
               std::clamp(place.y(), screen.top(), screen.bottom() + 1 - place.height()));
  if (place != window.geometry()) window.setGeometry(place);
  return true;
}

void WindowMemory::Remember(const QWidget& window) {
  StorePlace(window.objectName().toStdString(), window.saveGeometry().toBase64().toStdString());
}

QByteArray WindowMemory::State(const char* name) const {
  return QByteArray::fromBase64(QByteArray::fromStdString(Place(name)));
}

void WindowMemory::RememberState(const char* name, const QByteArray& state) {
  StorePlace(name, state.toBase64().toStdString());
}

QString WindowMemory::Folder() const { return QString::fromStdString(Place(kFolderRecord)); }

void WindowMemory::NoteFolder(const QString& folder) {
  if (!folder.isEmpty()) StorePlace(kFolderRecord, folder.toStdString());
}

std::string WindowMemory::Place(const std::string& name) const {
  if (!Fenster_ || !Fenster_->FindFirst("Name", name)) return {};
  return Fenster_->Text("Lage").value_or("");
}

void WindowMemory::StorePlace(const std::string& name, const std::string& place) {
  if (!Fenster_) return;
  try {
    const bool known = Fenster_->FindFirst("Name", name);
    if (known && Fenster_->Text("Lage") == place) return;
    known ? Fenster_->Edit() : Fenster_->AddNew();
    Fenster_->Set("Name", name);
    Fenster_->Set("Lage", place);
    Fenster_->Update();
  } catch (const StoreError&) {
    // Not worth a message: the window opens at its usual place next time.
  }
}

QStringList WindowMemory::RecentFiles() const {
  QStringList paths;
  if (!Zuletzt_) return paths;
  for (const std::string& path : Zuletzt_->Column("Datei")) {
    if (!path.empty() && paths.size() < kFiles) paths << QString::fromStdString(path);
  }
  return paths;
}

void WindowMemory::NoteFile(const QString& path) {
  QStringList paths = RecentFiles();
  paths.removeAll(path);
  paths.prepend(path);
  StoreFiles(paths.mid(0, kFiles));
}

void WindowMemory::ForgetFile(const QString& path) {
  QStringList paths = RecentFiles();
  if (paths.removeAll(path) > 0) StoreFiles(paths);
}

// The delivered table holds `kFiles` records, empty ones behind those in use.
void WindowMemory::StoreFiles(const QStringList& paths) {
  if (!Zuletzt_) return;
  try {
    for (int i = 0; i < static_cast<int>(Zuletzt_->RecordCount()); ++i) {
      Zuletzt_->MoveTo(static_cast<std::size_t>(i));
      const std::string path = i < paths.size() ? paths[i].toStdString() : std::string();
      if (Zuletzt_->Text("Datei") == path) continue;
      Zuletzt_->Edit();
      Zuletzt_->Set("Datei", path);
      Zuletzt_->Update();
    }
  } catch (const StoreError&) {
    // As above.
  }
}

}  // namespace kelvo
