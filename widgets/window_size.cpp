#include "widgets/window_size.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace kelvo {

void ResizeWithinScreen(QWidget* window, QSize wanted) {
  const QWidget* const owner = window->parentWidget();
  const QScreen* const screen = (owner != nullptr ? owner : window)->screen();
  const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight);
  window->resize(wanted.boundedTo(screen->availableSize() - QSize(0, title)));
}

}  // namespace kelvo
