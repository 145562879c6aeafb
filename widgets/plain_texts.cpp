#include "widgets/plain_texts.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>

namespace kelvo {

PlainTexts::PlainTexts() { qApp->installEventFilter(this); }

// Before it is first seen; a tool tip is a label, too.
bool PlainTexts::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Polish) return false;
  auto* const label = qobject_cast<QLabel*>(watched);
  if (label != nullptr && label->textFormat() == Qt::AutoText) {
    label->setTextFormat(Qt::PlainText);
  }
  return false;
}

}  // namespace kelvo
