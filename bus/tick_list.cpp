#include "bus/tick_list.h"

#include <QHeaderView>
#include <utility>

#include "widgets/dark_list.h"
#include "widgets/tail_delegate.h"

namespace kelvo {
namespace {

constexpr int kTickColumn = 0;

Qt::CheckState CheckStateOf(bool ticked) { return ticked ? Qt::Checked : Qt::Unchecked; }

}  // namespace

TickList::TickList(const QStringList& titles, const std::vector<int>& widths) {
  setHeaderLabels(titles);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  KeepVisibleOnDark(this);
  int column = 0;
  for (const int width : widths) {
    setColumnWidth(column++, fontMetrics().averageCharWidth() * width);
  }
}

int TickList::Add(const QStringList& texts, bool ticked) {
  auto* row = new QTreeWidgetItem(texts);
  row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
  row->setCheckState(kTickColumn, CheckStateOf(ticked));
  for (int column = 0; column < texts.size(); ++column) row->setToolTip(column, texts[column]);
  addTopLevelItem(row);
  return Rows() - 1;
}

void TickList::SetText(int row, int column, const QString& text) {
  QTreeWidgetItem& item = *topLevelItem(row);
  item.setText(column, text);
  item.setToolTip(column, text);
}

void TickList::FitColumns(std::vector<ColumnFit::Yielding> yielding) {
  auto* const fit = new ColumnFit(this, header(), std::move(yielding));
  connect(model(), &QAbstractItemModel::dataChanged, fit, &ColumnFit::FitSoon);
  connect(model(), &QAbstractItemModel::rowsInserted, fit, &ColumnFit::FitSoon);
}

void TickList::KeepAddresses() { setItemDelegateForColumn(kTickColumn, new TailDelegate(this)); }

bool TickList::AnyTicked() const {
  for (int row = 0; row < Rows(); ++row) {
    if (Ticked(row)) return true;
  }
  return false;
}

bool TickList::Ticked(int row) const {
  return topLevelItem(row)->checkState(kTickColumn) == Qt::Checked;
}

void TickList::Tick(int row, bool ticked) {
  topLevelItem(row)->setCheckState(kTickColumn, CheckStateOf(ticked));
}

void TickList::TickAll(bool ticked) {
  for (int row = 0; row < Rows(); ++row) Tick(row, ticked);
}

void TickList::SetTickable(bool tickable) {
  for (int row = 0; row < Rows(); ++row) {
    QTreeWidgetItem& item = *topLevelItem(row);
    item.setFlags(item.flags().setFlag(Qt::ItemIsUserCheckable, tickable));
  }
}

void TickList::Colour(int row, const QColor& colour) {
  QTreeWidgetItem& item = *topLevelItem(row);
  for (int column = 0; column < columnCount(); ++column) {
    item.setData(column, Qt::ForegroundRole, colour.isValid() ? QBrush(colour) : QVariant());
  }
}

}  // namespace kelvo
