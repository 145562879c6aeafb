#include "adapters/held_input.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcutEvent>

namespace kelvo {
namespace {

bool IsEscape(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
      return static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
    case QEvent::Shortcut:
      return static_cast<const QShortcutEvent&>(event).key() == QKeySequence(Qt::Key_Escape);
    default:
      return false;
  }
}

}  // namespace

HeldInput::HeldInput() : modal_(QGuiApplication::modalWindow()) {
  QCoreApplication::instance()->installEventFilter(this);
}

HeldInput::~HeldInput() {
  QCoreApplication::instance()->removeEventFilter(this);
  for (auto& [receiver, event] : held_) {
    if (receiver) QCoreApplication::postEvent(receiver, event.release());
  }
}

bool HeldInput::eventFilter(QObject* receiver, QEvent* event) {
  const bool input = event->isInputEvent() || event->type() == QEvent::Shortcut;
  if (!input || IsEscape(*event) || QGuiApplication::modalWindow() != modal_) return false;
  // Only asks who wants the key; the key itself comes behind it.
  if (event->type() != QEvent::ShortcutOverride) {
    held_.emplace_back(receiver, std::unique_ptr<QEvent>(event->clone()));
  }
  return true;
}

}  // namespace kelvo
