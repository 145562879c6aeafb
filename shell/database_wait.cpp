#include "shell/database_wait.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "widgets/form.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLongestChange{10'000};
constexpr milliseconds kLongestRead{1000};
constexpr milliseconds kLongestEnd{500};
constexpr milliseconds kNoticedAfter{300};
constexpr milliseconds kOneWait{20};

bool IsEscape(const QEvent& event) {
  const bool key = event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride;
  return key && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

// No menu, tool tip or the like.
bool IsWindow(const QObject& receiver) {
  const auto* const widget = qobject_cast<const QWidget*>(&receiver);
  const auto* const native = qobject_cast<const QWindow*>(&receiver);
  const Qt::WindowType type = widget != nullptr && widget->isWindow() ? widget->windowType()
                              : native != nullptr                     ? native->type()
                                                                      : Qt::Widget;
  return type == Qt::Window || type == Qt::Dialog;
}

// Unless it is gone by then.
void CloseLater(QObject* window) {
  if (window == nullptr) return;
  QTimer::singleShot(0, window, [window] {
    if (auto* const widget = qobject_cast<QWidget*>(window)) widget->close();
    if (auto* const native = qobject_cast<QWindow*>(window)) native->close();
  });
}

}  // namespace

void DatabaseWait::SetEnding(bool ending) {
  ending_ = ending;
  left_ = kLongestEnd;
}

void DatabaseWait::Begin(Access access, const std::string& holder) {
  const bool changes = access == Access::Change;
  longest_ = ending_ ? left_ : changes ? kLongestChange : kLongestRead;
  words_ =
      tr("Die Datenbank ist von einem anderen Programm belegt%1. %2 wartet; Esc bricht "
         "ab.")
          .arg(QString::fromStdString(holder), changes ? tr("Das Speichern") : tr("Das Lesen"));
  begin_ = loop_.Now();
  givenUp_ = false;
  qApp->installEventFilter(this);
}

bool DatabaseWait::Wait() {
  const auto waited = loop_.Now() - begin_;
  if (givenUp_ || loop_.Closing() || waited >= longest_) return false;
  if (waited >= kNoticedAfter && !ending_ && note_ == nullptr) ShowNote();
  loop_.WaitPaintingOnly(std::min<std::chrono::nanoseconds>(kOneWait, longest_ - waited));
  return !givenUp_ && !loop_.Closing();
}

void DatabaseWait::End() {
  qApp->removeEventFilter(this);
  delete note_;
  if (ending_) left_ -= std::min(left_, loop_.Now() - begin_);
  for (const auto& window : std::exchange(closed_, {})) {
    if (!person_.Begun().HandlersRun()) {
      CloseLater(window);
    } else {
      person_.Begun().WhenIdle([window] { CloseLater(window); });
    }
  }
}

// Above everything else in the window, so that nothing in it moves.
void DatabaseWait::ShowNote() {
  QWidget* const front = QApplication::activeWindow();
  QWidget* const window = front != nullptr ? front : &window_;
  note_ = Named(new QLabel(words_, window), "lblDatenbankWartet");
  note_->setTextFormat(Qt::PlainText);
  note_->setWordWrap(true);
  note_->setAlignment(Qt::AlignCenter);
  note_->setFrameStyle(QFrame::Panel | QFrame::Raised);
  note_->setAutoFillBackground(true);
  note_->setMargin(note_->fontMetrics().averageCharWidth() * 2);
  const int width = std::min(window->width(), note_->fontMetrics().averageCharWidth() * 80);
  note_->resize(width, note_->heightForWidth(width));
  note_->move((window->width() - width) / 2, (window->height() - note_->height()) / 2);
  note_->show();
}

bool DatabaseWait::GivesUp(QObject* receiver, QEvent& event) {
  if (IsEscape(event)) {
    event.accept();
    return true;
  }
  if (event.type() != QEvent::Close || !IsWindow(*receiver)) return false;
  event.ignore();
  const bool known = std::find(closed_.begin(), closed_.end(), receiver) != closed_.end();
  if (!known) closed_.emplace_back(receiver);
  return true;
}

bool DatabaseWait::eventFilter(QObject* receiver, QEvent* event) {
  const bool gives = GivesUp(receiver, *event);
  givenUp_ = givenUp_ || gives;
  return gives;
}

}  // namespace kelvo
