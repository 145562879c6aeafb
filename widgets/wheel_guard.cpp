#include "widgets/wheel_guard.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>

namespace kelvo {
namespace {

bool HasValue(const QObject* object) {
  const bool slider = qobject_cast<const QAbstractSlider*>(object) != nullptr &&
                      qobject_cast<const QScrollBar*>(object) == nullptr;
  return slider || qobject_cast<const QComboBox*>(object) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(object) != nullptr;
}

// The list or number that the wheel would change; the field to type in is a part of it.
QWidget* ValueUnder(QObject* object) {
  if (qobject_cast<QLineEdit*>(object) != nullptr) object = object->parent();
  return HasValue(object) ? static_cast<QWidget*>(object) : nullptr;
}

}  // namespace

WheelGuard::WheelGuard() { qApp->installEventFilter(this); }

bool WheelGuard::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Polish && HasValue(watched)) {
    // Else the wheel itself would bring the focus.
    auto* const widget = static_cast<QWidget*>(watched);
    if (widget->focusPolicy() == Qt::WheelFocus) widget->setFocusPolicy(Qt::StrongFocus);
  }
  if (event->type() != QEvent::Wheel || !watched->isWidgetType()) return false;
  const QWidget* const value = ValueUnder(watched);
  if (value == nullptr || value->hasFocus()) return false;
  if (value->focusProxy() != nullptr && value->focusProxy()->hasFocus()) return false;
  event->ignore();  // goes on to what is below
  return true;
}

}  // namespace kelvo
