#include <QFileDialog>

#include "store/data_folder.h"
#include "store/statement.h"
#include "tour/terminal_tour.h"

namespace kelvo {

// The next dialog asks for a file.
void TerminalTour::ChooseFile(const QString& path) {
  driver_.OnDialog([path](QDialog& dialog) {
    dynamic_cast<QFileDialog&>(dialog).selectFile(path);
    dialog.accept();
  });
}

void TerminalTour::OpenDialog(const char* menuEntry, const char* name) {
  bool shown = false;
  driver_.OnDialog([&shown](QDialog&) { shown = true; });
  Click(menuEntry);
  driver_.Until(QString::fromUtf8(name), [&shown] { return shown; });
}

void TerminalTour::Projects() {
  Step("Die Arbeit geht als Textdatei hinaus, und nach Änderungen wieder herein.");
  const QString file = program_.Folder() + QStringLiteral("/anlage.kelvo");
  OpenDialog("mnuDateiExportieren", "frmExport");
  Shoot(driver_.Find(QStringLiteral("frmExport")), "exportieren");
  ChooseFile(file);
  Click("cmdExportDatei");
  const Database database(DataFolder(program_.ProgramFolder().toStdString()) + "/" + kDatabaseFile);
  Statement(database, "update Makro set wert = replace(wert, 'GR', 'GfR')").Step();
  Statement(database, "delete from Makro where Bezeichnung = 'Rahmen'").Step();
  ChooseFile(file);
  OpenDialog("mnuDateiImportieren", "frmImport");
  Shoot(driver_.Find(QStringLiteral("frmImport")), "importieren");
  Click("cmdImportOffene");
  Click("cmdImportUebernehmen");
  Click("cmdImportAusfuehren");
}

}  // namespace kelvo
