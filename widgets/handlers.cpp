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

/// The press of a button by the mouse has begun with a refusal: its click counts for nothing. What
/// the operator does after it is another decision.
class RefusedPress final : public QObject {
 public:
  explicit RefusedPress(QAbstractButton* button) : QObject(button) {
    button->setProperty(kRefused, true);
    button->installEventFilter(this);
  }
  bool eventFilter(QObject* button, QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseButtonRelease:  // the click comes with it
        QTimer::singleShot(0, this, [this, button] { End(*button); });
        break;
      case QEvent::KeyPress:
      case QEvent::FocusOut:
        End(*button);
        break;
      default:
        break;
    }
    return false;
  }

 private:
  void End(QObject& button) {
    TakeRefusal(button);
    button.removeEventFilter(this);
    deleteLater();
  }
};

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
    new RefusedPress(button);
  }
}

bool FinishEditing() {
  const QPointer<QWidget> field = QApplication::focusWidget();
  if (field == nullptr) return true;
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
    if (speaks != Speaks::ToStop && (TakeRefusal(*button) || !FinishEditing())) return;
    if (button->property(kRunning).toBool()) return;
    if (speaks == Speaks::No || speaks == Speaks::ToStop) return run();
    if (!(speaks == Speaks::AlsoClosed ? person.MayBegin() : person.MayTalk())) return;
    const auto later = [button, &person, speaks] {
      // The port may have gone meanwhile, which is said once, and not for each press.
      if (speaks == Speaks::AlsoClosed || person.IsPortOpen()) button->click();
    };
    if (TalkLater(person, button, later)) return;
    if (speaks == Speaks::Listens) return run();
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
