#include <QAbstractSpinBox>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolBar>

#include "graphics/frmGrafik.h"

// What the window does to the keys of the fields around the canvas.

namespace kelvo {

namespace {

// A number's own undo goes no further than what is being typed.
bool HasNothingToUndo(const QObject& field, const QKeyEvent& key) {
  const auto* const number = qobject_cast<const QAbstractSpinBox*>(&field);
  if (number == nullptr) return false;
  const auto* const edit = number->findChild<const QLineEdit*>();
  return (key.matches(QKeySequence::Undo) && !edit->isUndoAvailable()) ||
         (key.matches(QKeySequence::Redo) && !edit->isRedoAvailable());
}

}  // namespace

void frmGrafik::WatchFields() {
  for (const QWidget* area :
       {static_cast<QWidget*>(findChild<QDockWidget*>(QStringLiteral("dockEigenschaften"))),
        static_cast<QWidget*>(findChild<QToolBar*>(QStringLiteral("barBefehle")))}) {
    for (QWidget* field : area->findChildren<QWidget*>()) field->installEventFilter(this);
  }
}

bool frmGrafik::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      HasNothingToUndo(*watched, *static_cast<QKeyEvent*>(event))) {
    event->ignore();
    return true;
  }
  if (event->type() != QEvent::KeyPress ||
      static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) {
    return QMainWindow::eventFilter(watched, event);
  }
  LeaveField();
  return true;
}

// What is half typed there is given up.
void frmGrafik::LeaveField() {
  ShowGeometry();
  typing_->Active() ? typing_->setFocus() : Display->setFocus();
}

}  // namespace kelvo
