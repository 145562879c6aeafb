#include "widgets/scrolled_page.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

namespace kelvo {

ScrolledPage::ScrolledPage(QWidget* page) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidget(page);
  setAlignment(Qt::AlignHCenter | Qt::AlignTop);  // of one that has a greatest size
  // The tab strip's own ground shows through.
  viewport()->setAutoFillBackground(false);
  page->setAutoFillBackground(false);
  // However the focus has come there: by Tab, by a label's letter, by a message.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
  });
}

QSize ScrolledPage::sizeHint() const { return widget()->sizeHint(); }

bool ScrolledPage::event(QEvent* event) {
  const bool done = QScrollArea::event(event);
  if (event->type() == QEvent::LayoutRequest) Fit();
  return done;
}

void ScrolledPage::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  Fit();
}

// As large as the room, and never smaller than the page can be. The toolkit's own way gives a page
// with wrapped texts all the height that it would like to have, and scrolls too soon.
void ScrolledPage::Fit() {
  const QSize least = widget()->minimumSizeHint();
  QSize room = maximumViewportSize();
  if (least.height() > room.height()) room.rwidth() -= verticalScrollBar()->sizeHint().width();
  if (least.width() > room.width()) room.rheight() -= horizontalScrollBar()->sizeHint().height();
  widget()->resize(room.expandedTo(least));
}

}  // namespace kelvo
