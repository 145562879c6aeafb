#include "widgets/window_size.h"

#include <QDialog>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>
#include <optional>

namespace kelvo {
namespace {

// Shown again a dialog is where it was, as seen from its owner. Qt would set it anew each time, and
// the first time without knowing its frame, so that it would jump by the height of its title.
class PlaceKeeper : public QObject {
 public:
  explicit PlaceKeeper(QDialog* dialog) : QObject(dialog), dialog_(*dialog) {
    dialog->installEventFilter(this);
  }

 private:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->spontaneous()) return false;
    if (event->type() == QEvent::Hide) Remember();
    if (event->type() == QEvent::Show && dialog_.testAttribute(Qt::WA_Moved)) Shift();
    return false;
  }
  QPoint Owner() const {
    const QWidget* const owner = dialog_.parentWidget();
    return owner != nullptr ? owner->window()->geometry().topLeft() : QPoint();
  }
  void Remember() {
    owner_ = Owner();
    dialog_.setAttribute(Qt::WA_Moved);
  }
  void Shift() {
    // A place that was stored is one on the screen.
    if (!owner_ || Owner() == *owner_) return;
    const QRect screen = dialog_.parentWidget()->screen()->availableGeometry();
    QRect place = dialog_.geometry().translated(Owner() - *owner_);
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    dialog_.setGeometry(place);
  }

  QDialog& dialog_;
  std::optional<QPoint> owner_;  // where it stood when this was hidden
};

}  // namespace

void ResizeWithinScreen(QWidget* window, QSize wanted) {
  const QWidget* const owner = window->parentWidget();
  const QScreen* const screen = (owner != nullptr ? owner : window)->screen();
  const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight);
  window->resize(wanted.boundedTo(screen->availableSize() - QSize(0, title)));
}

void KeepPlace(QDialog* dialog) { new PlaceKeeper(dialog); }

}  // namespace kelvo
