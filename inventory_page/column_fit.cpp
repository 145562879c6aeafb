#include "inventory_page/column_fit.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTableView>
#include <algorithm>

namespace kelvo {
namespace {

constexpr int kLong = 34;  // characters

}  // namespace

ColumnFit::ColumnFit(QTableView* table, std::vector<int> yielding)
    : QObject(table), table_(*table), yielding_(std::move(yielding)) {
  table->horizontalHeader()->setStretchLastSection(true);
  table->viewport()->installEventFilter(this);
  connect(table->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int column, int before, int now) {
            if (before == 0 || now == 0) return;  // it is hidden or shown
            if (!fitting_ && column != table_.model()->columnCount() - 1) set_ = true;
          });
}

bool ColumnFit::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::Resize) Fit();
  return false;
}

int ColumnFit::Least(int column) const {
  return table_.horizontalHeader()->sectionSizeHint(column);
}

int ColumnFit::Wanted(int column) const {
  if (table_.isColumnHidden(column)) return 0;
  const QAbstractItemView& view = table_;  // there it can be asked for
  return std::max(Least(column),
                  view.sizeHintForColumn(column) + table_.fontMetrics().averageCharWidth());
}

// First they yield what is long, then all but their titles.
void ColumnFit::Fit() {
  if (set_ || fitting_) return;
  const QScopedValueRollback<bool> fitting(fitting_, true);
  std::vector<int> widths;
  int over = -table_.viewport()->width();
  for (int column = 0; column < table_.model()->columnCount(); ++column) {
    widths.push_back(Wanted(column));
    over += widths.back();
  }
  for (const int kept : {table_.fontMetrics().averageCharWidth() * kLong, 0}) {
    for (const int column : yielding_) {
      int& width = widths[static_cast<std::size_t>(column)];
      const int given = std::clamp(over, 0, std::max(0, width - std::max(kept, Least(column))));
      width -= given;
      over -= given;
    }
  }
  int column = 0;
  for (const int width : widths) {
    if (width > 0) table_.setColumnWidth(column, width);
    ++column;
  }
}

}  // namespace kelvo
