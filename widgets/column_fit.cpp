#include "widgets/column_fit.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

constexpr int kLong = 34;  // characters

}  // namespace

ColumnFit::ColumnFit(QAbstractItemView* view, QHeaderView* header, std::vector<Yielding> yielding)
    : QObject(view), view_(*view), header_(*header), yielding_(std::move(yielding)) {
  header->setStretchLastSection(true);
  view->viewport()->installEventFilter(this);
  connect(header, &QHeaderView::sectionResized, this, [this](int column, int before, int now) {
    if (before == 0 || now == 0) return;  // it is hidden or shown
    if (!fitting_ && column != header_.count() - 1) set_ = true;
  });
  connect(header, &QHeaderView::sortIndicatorChanged, this, &ColumnFit::Fit);
}

bool ColumnFit::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::Resize) Fit();
  return false;
}

// Qt keeps room for the mark of the order in each of them.
int ColumnFit::Title(int column) const {
  const bool marked = column == header_.sortIndicatorSection();
  const int mark = header_.isSortIndicatorShown() && !marked ? header_.fontMetrics().height() : 0;
  return header_.sectionSizeHint(column) - mark;
}

int ColumnFit::Wanted(int column) const {
  if (header_.isSectionHidden(column)) return 0;
  return std::max(Title(column),
                  view_.sizeHintForColumn(column) + view_.fontMetrics().averageCharWidth());
}

// First they yield what is long, then all but what must be read.
std::vector<int> ColumnFit::Widths(int* over) const {
  const QFontMetrics metrics = view_.fontMetrics();
  *over = -view_.viewport()->width();
  std::vector<int> widths;
  for (int column = 0; column < header_.count(); ++column) {
    widths.push_back(Wanted(column));
    *over += widths.back();
  }
  for (const int kept : {metrics.averageCharWidth() * kLong, 0}) {
    for (const auto& [column, least] : yielding_) {
      int& width = widths[static_cast<std::size_t>(column)];
      const int read = std::max(Title(column), metrics.horizontalAdvance(least));
      const int given = std::clamp(*over, 0, std::max(0, width - std::max(kept, read)));
      width -= given;
      *over -= given;
    }
  }
  return widths;
}

void ColumnFit::Fit() {
  if (set_ || fitting_) return;
  const QScopedValueRollback<bool> fitting(fitting_, true);
  int over = 0;
  const std::vector<int> widths = Widths(&over);
  // A last column that is stretched would be pressed together as well.
  header_.setStretchLastSection(over <= 0);
  int column = 0;
  for (const int width : widths) {
    if (width > 0) header_.resizeSection(column, width);
    ++column;
  }
}

void ColumnFit::FitSoon() {
  if (std::exchange(soon_, true)) return;
  const auto fit = [this] {
    soon_ = false;
    Fit();
  };
  QMetaObject::invokeMethod(this, fit, Qt::QueuedConnection);
}

}  // namespace kelvo
