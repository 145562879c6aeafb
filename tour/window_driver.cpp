#include "tour/window_driver.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabWidget>
#include <QTimer>
#include <utility>

#include "widgets/wire_field.h"

namespace kelvo {
namespace {

// Far beyond what any step takes; only a program that hangs gets here.
constexpr int kJobMilliseconds = 60000;

QString Bare(QString caption) { return caption.remove(u'&'); }

}  // namespace

WindowDriver::WindowDriver(QWidget& window) : window_(window) { qApp->installEventFilter(this); }

QObject* WindowDriver::FindObject(const QString& name) const {
  if (window_.objectName() == name) return &window_;
  return window_.findChild<QObject*>(name);
}

QWidget& WindowDriver::Usable(const QString& name) const {
  QWidget& control = Find(name);
  if (!control.isVisible() || !control.isEnabled()) {
    throw std::runtime_error(name.toStdString() + " is hidden or disabled");
  }
  return control;
}

void WindowDriver::Click(const QString& name) {
  if (auto* action = dynamic_cast<QAction*>(FindObject(name))) {
    if (!action->isEnabled()) throw std::runtime_error(name.toStdString() + " is disabled");
    action->trigger();
  } else {
    dynamic_cast<QAbstractButton&>(Usable(name)).click();
  }
  Check();
}

void WindowDriver::Type(const QString& name, const QString& text) {
  QWidget& control = Usable(name);
  if (auto* field = dynamic_cast<QLineEdit*>(&control)) {
    field->setText(text);
    Q_EMIT field->editingFinished();
  } else if (auto* editor = dynamic_cast<WireEdit*>(&control)) {
    editor->SetWire(text.toLatin1().toStdString());
  } else {
    throw std::runtime_error(name.toStdString() + " takes no text");
  }
  Check();
}

void WindowDriver::Choose(const QString& list, const QString& text) {
  auto& box = dynamic_cast<QComboBox&>(Usable(list));
  const int index = box.findText(text);
  if (index < 0) throw std::runtime_error(list.toStdString() + " has no " + text.toStdString());
  box.setCurrentIndex(index);
  Q_EMIT box.activated(index);
  Check();
}

void WindowDriver::ShowTab(int tab) {
  Find<QTabWidget>(QStringLiteral("cmdTab")).setCurrentIndex(tab);
  Check();
}

QString WindowDriver::Text(const QString& name) const {
  const QVariant text = Find(name).property("text");
  return text.isValid() ? text.toString() : Find<QPlainTextEdit>(name).toPlainText();
}

void WindowDriver::Until(const QString& what, const std::function<bool()>& done) {
  QElapsedTimer elapsed;
  elapsed.start();
  QTimer alarm;  // the wait below ends also when nothing happens any more
  alarm.start(kJobMilliseconds);
  while (!done()) {
    if (elapsed.elapsed() > kJobMilliseconds) {
      throw std::runtime_error("waited in vain: " + what.toStdString());
    }
    QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  Check();
}

bool WindowDriver::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Show) {
    if (auto* dialog = qobject_cast<QDialog*>(object)) {
      QTimer::singleShot(0, this, [this, guarded = QPointer<QDialog>(dialog)] {
        if (guarded && guarded->isVisible()) Handle(*guarded);
      });
    }
  }
  return QObject::eventFilter(object, event);
}

void WindowDriver::Handle(QDialog& dialog) {
  if (handlers_.empty()) {
    const auto* box = qobject_cast<QMessageBox*>(&dialog);
    problem_ = QStringLiteral("unexpected dialog: ") +
               (box != nullptr ? box->text() : dialog.windowTitle());
    return dialog.reject();
  }
  const DialogHandler handler = std::move(handlers_.front());
  handlers_.pop_front();
  try {
    handler(dialog);
  } catch (const std::exception& error) {
    problem_ = QString::fromUtf8(error.what());
    dialog.reject();
  }
}

void WindowDriver::Press(QDialog& dialog, const QString& caption) {
  for (QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
    if (Bare(button->text()) == caption) return button->click();
  }
  throw std::runtime_error("no button " + caption.toStdString());
}

QWidget& WindowDriver::FindWindow(const QString& name) const {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == name) return *window;
  }
  throw std::runtime_error("no window " + name.toStdString());
}

void WindowDriver::Drag(QWidget& control, QPoint from, QPoint to) {
  const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButton button,
                        Qt::MouseButtons held) {
    QMouseEvent event(type, at, control.mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&control, &event);
  };
  send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
  send(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
  send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
  send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

void WindowDriver::Picture(QWidget& window, const QString& file) {
  // What has changed may still have to find its place.
  QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  if (!window.grab().save(file)) throw std::runtime_error("cannot write " + file.toStdString());
}

void WindowDriver::Check() {
  if (problem_.isEmpty()) return;
  throw std::runtime_error(std::exchange(problem_, QString()).toStdString());
}

}  // namespace kelvo
