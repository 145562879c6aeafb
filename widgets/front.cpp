#include "widgets/front.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace kelvo {

// Beside a modal dialog only its own windows can be used, so the window belongs to the one in
// front.
void BringToFront(QWidget& window) {
  window.winId();
  const QWidget* const dialog = QApplication::activeModalWidget();
  const QWidget* const owner = dialog != nullptr ? dialog : window.parentWidget();
  QWindow* const front = owner != nullptr ? owner->window()->windowHandle() : nullptr;
  if (window.windowHandle()->transientParent() != front) {
    window.hide();
    window.windowHandle()->setTransientParent(front);
  }
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace kelvo
