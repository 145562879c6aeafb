#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <functional>
#include <utility>

#include "bus/tick_list.h"

namespace kelvo::testing_world {

/// Goes through boxes and dialogs by itself, as soon as each is there, also while a handler waits.
class Presser {
 public:
  /// `steps`, with a blank between: the name or the caption of a button that is pressed; a file
  /// that is chosen, behind a colon; a button that is only waited for, behind a question mark.
  Presser(const char* steps, QString folder, std::function<void()> done)
      : steps_(QString::fromUtf8(steps).split(u' ', Qt::SkipEmptyParts)),
        folder_(std::move(folder)),
        done_(std::move(done)) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
    timer_.start(2);
    ++all_;
  }
  ~Presser() { --all_; }
  Presser(const Presser&) = delete;
  Presser& operator=(const Presser&) = delete;
  /// Somebody goes through boxes just now.
  static bool Any() { return all_ > 0; }

 private:
  void Look() {
    if (!steps_.isEmpty() && !Do(steps_.front())) return;
    if (!steps_.isEmpty()) steps_.removeFirst();
    if (!steps_.isEmpty()) return;
    timer_.stop();
    done_();
  }
  bool Do(const QString& step) const {
    if (step.startsWith(u':')) return Choose(folder_ + u'/' + step.mid(1));
    if (step.startsWith(u'+')) return Tick(step.mid(1));
    QAbstractButton* const button = Find(step.startsWith(u'?') ? step.mid(1) : step);
    if (button == nullptr) return false;
    // It may not return before everything is over.
    if (!step.startsWith(u'?')) {
      QMetaObject::invokeMethod(button, &QAbstractButton::click, Qt::QueuedConnection);
    }
    return true;
  }
  static bool Choose(const QString& path) {
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return false;
    dialog->setDirectory(QFileInfo(path).path());
    dialog->selectFile(path);
    // A field that is being typed in keeps what it holds.
    dialog->findChild<QLineEdit*>()->setText(QFileInfo(path).fileName());
    QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
    return true;
  }
  static bool Tick(const QString& name) {
    const QWidget* const modal = QApplication::activeModalWidget();
    auto* const list = modal != nullptr ? modal->findChild<TickList*>(name) : nullptr;
    if (list != nullptr) list->TickAll(true);
    return list != nullptr;
  }
  static QAbstractButton* Find(const QString& wanted) {
    const QWidget* const modal = QApplication::activeModalWidget();
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (!top->isVisible() || (modal != nullptr && modal != top)) continue;
      for (auto* const button : top->findChildren<QAbstractButton*>()) {
        const bool meant = button->objectName() == wanted || button->text().remove(u'&') == wanted;
        if (meant && button->isVisible() && button->isEnabled()) return button;
      }
    }
    return nullptr;
  }

  static inline int all_ = 0;
  QStringList steps_;
  QString folder_;
  std::function<void()> done_;
  QTimer timer_;
};

}  // namespace kelvo::testing_world
