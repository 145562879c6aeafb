#include "settings/macro_table.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

#include "widgets/contrast.h"
#include "widgets/form.h"

namespace kelvo {

MacroTable::MacroTable(QWidget* parent)
    : QWidget(parent),
      model_(new MacroTableModel),
      txtMakroSuche(Named(new QLineEdit, "txtMakroSuche")),
      lblMakroAnzahl(Named(new QLabel, "lblMakroAnzahl")),
      tblMakros(Named(new QTableView, "tblMakros")) {
  model_->setParent(this);
  txtMakroSuche->setPlaceholderText(tr("Suchen (Strg+F)"));
  KeepPlaceholderReadable(txtMakroSuche);
  txtMakroSuche->setAccessibleName(tr("Gespeicherte Texte suchen"));
  txtMakroSuche->setToolTip(tr("Sucht in Bezeichnung, Nummer, Art und Text."));
  txtMakroSuche->setClearButtonEnabled(true);
  tblMakros->setAccessibleName(tr("Gespeicherte Texte"));
  tblMakros->setModel(model_);
  MakeColumns();
  auto* top = new QHBoxLayout;
  top->addWidget(txtMakroSuche, 1);
  top->addWidget(lblMakroAnzahl);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, column->spacing(), 0);
  column->addLayout(top);
  column->addWidget(tblMakros, 1);
  connect(txtMakroSuche, &QLineEdit::textChanged, this, &MacroTable::Search);
  connect(model_, &QAbstractItemModel::modelReset, this, &MacroTable::SelectCurrent);
  connect(tblMakros->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) { Choose(model_->BookmarkAt(index.row())); });
  connect(tblMakros, &QTableView::doubleClicked, this, &MacroTable::Entered);
  for (QObject* some : {static_cast<QObject*>(txtMakroSuche), static_cast<QObject*>(tblMakros)}) {
    some->installEventFilter(this);
  }
}

void MacroTable::MakeColumns() {
  tblMakros->setSelectionBehavior(QAbstractItemView::SelectRows);
  tblMakros->setSelectionMode(QAbstractItemView::SingleSelection);
  tblMakros->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tblMakros->setShowGrid(false);
  tblMakros->setWordWrap(false);
  tblMakros->setTabKeyNavigation(false);
  tblMakros->verticalHeader()->hide();
  // The same for all, so that thousands of rows need not be measured.
  tblMakros->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  tblMakros->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
  QHeaderView* const header = tblMakros->horizontalHeader();
  header->setHighlightSections(false);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  header->setSortIndicatorClearable(true);
  tblMakros->setSortingEnabled(true);
  const int digit = fontMetrics().averageCharWidth();
  const int widths[] = {18, 4, 12, 8, 7};
  for (int i = 0; i < MacroTableModel::ColumnCount; ++i) {
    // The heading is never cut off, also with the mark of the order beside it.
    const int heading = i == MacroTableModel::Terminal ? header->sectionSizeHint(i) + 2 * digit : 0;
    tblMakros->setColumnWidth(i, std::max(widths[i] * digit + 8, heading));
  }
  header->setStretchLastSection(true);
  header->setMinimumSectionSize(digit * 4);
}

bool MacroTable::Show(const Recordset& records, const std::set<std::int64_t>& drafts,
                      std::int64_t current) {
  current_ = current;
  const bool read = model_->Read(records);
  model_->Mark(drafts);
  SelectCurrent();
  ShowCount();
  return read;
}

// What the editor shows is not chosen once more.
void MacroTable::SelectCurrent() {
  const QScopedValueRollback<bool> showing(showing_, true);
  const int row = model_->RowOf(current_);
  if (row < 0) return tblMakros->selectionModel()->clear();
  if (tblMakros->currentIndex().row() == row && tblMakros->selectionModel()->hasSelection()) return;
  const int column = std::max(tblMakros->currentIndex().column(), 0);
  tblMakros->setCurrentIndex(model_->index(row, column));
}

// Noted at once: the next key may come before the editor's record is shown here.
void MacroTable::Choose(std::int64_t bookmark) {
  if (showing_ || bookmark == 0 || bookmark == current_) return;
  current_ = bookmark;
  Q_EMIT Chosen(bookmark);
}

void MacroTable::ShowCount() {
  const int shown = model_->rowCount();
  lblMakroAnzahl->setText(shown == model_->AllRows()
                              ? QString::number(shown)
                              : tr("%1 von %2").arg(shown).arg(model_->AllRows()));
}

void MacroTable::Search() {
  model_->Search(txtMakroSuche->text());
  ShowCount();
}

void MacroTable::StartSearch() {
  txtMakroSuche->setFocus(Qt::ShortcutFocusReason);
  txtMakroSuche->selectAll();
}

// The row that is current stays; otherwise the first that was found.
void MacroTable::GoDown() {
  tblMakros->setFocus(Qt::OtherFocusReason);
  if (!tblMakros->currentIndex().isValid()) tblMakros->selectRow(0);
}

bool MacroTable::SearchKey(int key) {
  if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
    GoDown();
    return true;
  }
  if (key != Qt::Key_Escape || txtMakroSuche->text().isEmpty()) return false;
  txtMakroSuche->clear();
  return true;
}

bool MacroTable::TableKey(int key) {
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    Q_EMIT Entered();
    return true;
  }
  if (key != Qt::Key_Delete) return false;
  Q_EMIT DeleteWanted();
  return true;
}

bool MacroTable::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* const press = static_cast<QKeyEvent*>(event);
  if ((press->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
  return watched == txtMakroSuche ? SearchKey(press->key()) : TableKey(press->key());
}

QByteArray MacroTable::Columns() const { return tblMakros->horizontalHeader()->saveState(); }

void MacroTable::RestoreColumns(const QByteArray& columns) {
  tblMakros->horizontalHeader()->restoreState(columns);
}

}  // namespace kelvo
