#include "widgets/handlers.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace kelvo {
namespace {

constexpr char kRunning[] = "actionRuns";
constexpr char kRefused[] = "textRefused";
constexpr char kWaits[] = "actionWaits";

bool TakeRefusal(QObject& holder) {
  const bool refused = holder.property(kRefused).toBool();
  holder.setProperty(kRefused, false);
  return refused;
}

bool IsTypedIn(const QWidget* field) {
  return qobject_cast<const QLineEdit*>(field) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(field) != nullptr;
}

// The list that the field edits a cell of, if it does.
QAbstractItemView* ListOf(QWidget* field) {
  for (QWidget* above = field; above != nullptr; above = above->parentWidget()) {
    if (auto* const list = qobject_cast<QAbstractItemView*>(above)) return list;
  }
  return nullptr;
}

}  // namespace

void NoteRefusal() {
  qApp->setProperty(kRefused, true);
  // The mouse has gone from the field to the button already that it is about to press.
  if (auto* const button = qobject_cast<QAbstractButton*>(QApplication::focusWidget())) {
    button->setProperty(kRefused, true);
  }
}

bool FinishEditing() {
  const QPointer<QWidget> field = QApplication::focusWidget();
  if (field == nullptr) return true;
  if (qobject_cast<QAbstractButton*>(field) != nullptr) return !TakeRefusal(*field);
  if (!IsTypedIn(field)) return true;
  QAbstractItemView* const list = ListOf(field);
  TakeRefusal(*qApp);
  field->clearFocus();
  if (list != nullptr) {
    list->setFocus();
  } else if (field != nullptr && field->isVisible()) {
    field->setFocus();
  }
  return !TakeRefusal(*qApp);
}

void ConnectClick(QAbstractButton* button, Operator& person, Speaks speaks,
                  std::function<void()> handler) {
  const auto run = [button, &person, handler = std::move(handler)] {
    button->setProperty(kRunning, true);
    const QByteArray name = button->objectName().toUtf8();
    Guarded(person, name.constData(), handler);
    button->setProperty(kRunning, false);
  };
  QObject::connect(button, &QAbstractButton::clicked, button, [button, &person, speaks, run] {
    if (speaks != Speaks::ToStop && !FinishEditing()) return;
    if (button->property(kRunning).toBool()) return;
    if (speaks != Speaks::Yes) return run();
    if (!person.MayTalk()) return;
    if (TalkLater(person, button, [button] { button->click(); })) return;
    const Undertakings::Talking talking(person.Begun());
    run();
  });
}

bool TalkLater(Operator& person, QObject* what, std::function<void()> action) {
  if (!person.Begun().Talks()) return false;
  if (what->property(kWaits).toBool()) return true;  // pressed in haste, more than once
  what->setProperty(kWaits, true);
  person.Begun().WhenIdle([what, action = std::move(action)] {
    QTimer::singleShot(0, what, [what, action] {
      what->setProperty(kWaits, false);
      action();
    });
  });
  return true;
}

}  // namespace kelvo
