// The table of the macro page: it follows the list of names, and the list follows it.

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QComboBox>
#include <QDataStream>
#include <QIODevice>
#include <QShortcut>
#include <QSplitter>

#include "settings/macro_desk.h"
#include "settings/macro_edit.h"
#include "settings/macro_page.h"
#include "settings/macro_table.h"
#include "widgets/handlers.h"

namespace kelvo {
void MacroPage::ConnectTable() {
  const auto soon = [this] { ShowRecordsSoon(); };
  connect(cboMakro->model(), &QAbstractItemModel::dataChanged, this, soon);
  connect(cboMakro->model(), &QAbstractItemModel::rowsInserted, this, soon);
  connect(cboMakro->model(), &QAbstractItemModel::rowsRemoved, this, soon);
  connect(cboMakro->model(), &QAbstractItemModel::modelReset, this, soon);
  connect(cboMakro, &QComboBox::currentIndexChanged, this, soon);
  connect(table_, &MacroTable::Chosen, this, [this](qlonglong bookmark) {
    Guarded(services_.person, "tblMakros", [&] { records_->Select(bookmark); });
  });
  connect(table_, &MacroTable::Entered, this, [this] { txtMakro->setFocus(); });
  connect(table_, &MacroTable::DeleteWanted, this,
          [this] { Guarded(services_.person, "tblMakros", [&] { DeleteMakro(); }); });
  connect(new QShortcut(QKeySequence(tr("Ctrl+F")), this), &QShortcut::activated, table_,
          &MacroTable::StartSearch);
}

// Once for all that one action changes: thousands of names come one by one.
void MacroPage::ShowRecordsSoon() {
  if (recordsPending_) return;
  recordsPending_ = true;
  QMetaObject::invokeMethod(
      this, [this] { Guarded(services_.person, "tblMakros", [&] { ShowRecords(); }); },
      Qt::QueuedConnection);
}

void MacroPage::ShowRecords() {
  recordsPending_ = false;
  std::set<std::int64_t> drafts;
  for (const KeptDraft& draft : records_->KeptDrafts()) drafts.insert(draft.bookmark);
  if (table_->Show(services_.macros, drafts, services_.macros.Bookmark())) NoteMacros();
}

// The texts by their numbers stay known while the list shows records of another kind.
void MacroPage::NoteMacros() {
  std::map<int, std::string> numbered = table_->Model().NumberedMacros();
  if (numbered.empty() || numbered == numbered_) return;
  numbered_ = std::move(numbered);
  desk_->Check();
}

std::optional<std::string> MacroPage::NumberedText(int number) const {
  const auto found = numbered_.find(number);
  return found == numbered_.end() ? std::nullopt : std::optional(found->second);
}

void MacroPage::SetInTerminal(InTerminalOf inTerminal) {
  table_->Model().SetInTerminal(std::move(inTerminal));
}

void MacroPage::TerminalChanged() { table_->Model().TerminalChanged(); }

QByteArray MacroPage::Arrangement() const {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream << splMakros->saveState() << desk_->Divider().saveState() << table_->Columns()
         << chkVorschau->isChecked();
  return bytes;
}

void MacroPage::Arrange(const QByteArray& arrangement) {
  QDataStream stream(arrangement);
  QByteArray panes;
  QByteArray remarks;
  QByteArray columns;
  bool preview = true;
  stream >> panes >> remarks >> columns >> preview;
  if (stream.status() != QDataStream::Ok) return;
  splMakros->restoreState(panes);
  desk_->Divider().restoreState(remarks);
  table_->RestoreColumns(columns);
  chkVorschau->setChecked(preview);
}

}  // namespace kelvo
