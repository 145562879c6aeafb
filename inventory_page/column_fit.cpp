#include "inventory_page/column_fit.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTableView>
#include <algorithm>

namespace kelvo {
namespace {

constexpr int kWidest = 34;  // characters

}  // namespace

ColumnFit::ColumnFit(QTableView* table, std::vector<int> yielding)
    : QObject(table), table_(*table), yielding_(std::move(yielding)) {
  table->horizontalHeader()->setStretchLastSection(true);
  table->viewport()->installEventFilter(this);
  connect(table->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
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
  const QAbstractItemView& view = table_;  // there it can be asked for
  const int character = table_.fontMetrics().averageCharWidth();
  const int text = view.sizeHintForColumn(column) + character;
  return std::max(Least(column), std::min(text, character * kWidest));
}

void ColumnFit::Fit() {
  if (set_ || fitting_) return;
  const QScopedValueRollback<bool> fitting(fitting_, true);
  std::vector<int> widths;
  int over = -table_.viewport()->width();
  for (int column = 0; column < table_.model()->columnCount(); ++column) {
    widths.push_back(Wanted(column));
    over += widths.back();
  }
  for (const int column : yielding_) {
    int& width = widths[static_cast<std::size_t>(column)];
    const int given = std::clamp(over, 0, std::max(0, width - Least(column)));
    width -= given;
    over -= given;
  }
  int column = 0;
  for (const int width : widths) table_.setColumnWidth(column++, width);
}

}  // namespace kelvo
