#include "graphics/object_list.h"

#include <QItemSelection>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <algorithm>

namespace kelvo {

namespace {

// Neighbours that are selected make one range.
QItemSelection SelectedRows(const Drawing& drawing, const QAbstractItemModel& model) {
  QItemSelection selection;
  const auto count = std::min(static_cast<int>(drawing.size()), model.rowCount());
  int first = -1;
  for (int row = 0; row <= count; ++row) {
    const bool selected = row < count && drawing[static_cast<std::size_t>(row)].selected;
    if (selected && first < 0) first = row;
    if (selected || first < 0) continue;
    selection.append(QItemSelectionRange(model.index(first, 0), model.index(row - 1, 0)));
    first = -1;
  }
  return selection;
}

}  // namespace

ObjectList::ObjectList(const DrawingDocument& document, ObjectModel& model, QWidget* parent)
    : QListView(parent), document_(document), model_(model) {
  setObjectName(QStringLiteral("lstObjekte"));
  setAccessibleName(tr("Objekte"));
  setModel(&model_);
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setDragDropMode(QAbstractItemView::InternalMove);
  setDragDropOverwriteMode(false);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  following_.setSingleShot(true);
  connect(&following_, &QTimer::timeout, this, &ObjectList::FollowNow);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ObjectList::TakeSelection);
  connect(this, &QListView::doubleClicked, this, &ObjectList::Open);
}

void ObjectList::Follow() {
  if (isVisible()) following_.start(0);
}

void ObjectList::showEvent(QShowEvent* event) {
  QListView::showEvent(event);
  FollowNow();
}

void ObjectList::FollowNow() {
  following_.stop();
  const QScopedValueRollback<bool> showing(showing_, true);
  model_.Refresh();
  ShowSelection();
}

void ObjectList::ShowSelection() {
  const QItemSelection selection = SelectedRows(document_.Shown(), model_);
  if (selection == selectionModel()->selection()) return;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  if (selection.isEmpty() || selectionModel()->isSelected(currentIndex())) return;
  const QModelIndex first = selection.front().topLeft();
  selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  scrollTo(first);
}

void ObjectList::TakeSelection() {
  if (showing_) return;
  std::vector<std::size_t> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(static_cast<std::size_t>(row));
    }
  }
  Q_EMIT Chosen(rows);
}

void ObjectList::Open(const QModelIndex& index) {
  if (index.isValid()) Q_EMIT OpenWanted(static_cast<std::size_t>(index.row()));
}

void ObjectList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return Q_EMIT LeaveWanted();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return Open(currentIndex());
  QListView::keyPressEvent(event);
}

}  // namespace kelvo
