#include "widgets/whole_height.h"

#include <QEvent>
#include <QLayout>

namespace kelvo {

WholeHeight::WholeHeight(QLayout* content, QWidget* parent) : QWidget(parent) {
  content->setContentsMargins({});
  setLayout(content);
}

bool WholeHeight::event(QEvent* event) {
  const bool done = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest) Fit();
  return done;
}

void WholeHeight::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
}

void WholeHeight::Fit() {
  const int needed = layout()->totalHeightForWidth(width());
  if (needed > 0) setMinimumHeight(needed);
}

}  // namespace kelvo
