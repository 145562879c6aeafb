#include "shell/file_dialog.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFileInfo>
#include <QLineEdit>

namespace kelvo {

FileDialog::FileDialog(AcceptMode mode) {
  setAcceptMode(mode);
  setFileMode(mode == AcceptOpen ? ExistingFile : AnyFile);
}

// What was chosen before is not what is chosen now.
void FileDialog::Renew(QWidget* owner, const QString& title, const QString& filter) {
  setParent(owner, windowFlags());
  setWindowTitle(title);
  setNameFilter(filter);
  for (auto* const view : findChildren<QAbstractItemView*>()) {
    if (view->selectionModel() != nullptr) view->selectionModel()->clear();
  }
  for (auto* const name : findChildren<QLineEdit*>()) name->clear();
}

void FileDialog::accept() {
  const QString chosen = selectedFiles().value(0);
  if (!judge_ || chosen.isEmpty() || QFileInfo(chosen).isDir() || judge_(chosen)) {
    QFileDialog::accept();
  }
}

// The list of names that were proposed is a window of its own, and may come late.
void FileDialog::done(int result) {
  for (auto* const name : findChildren<QLineEdit*>()) {
    if (name->completer() == nullptr) continue;
    name->completer()->setCompletionPrefix({});
    name->completer()->popup()->hide();
  }
  QFileDialog::done(result);
}

}  // namespace kelvo
