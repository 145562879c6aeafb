#include "widgets/read_mark.h"

#include <QTime>

#include "widgets/form.h"

namespace kelvo {

ReadMark::ReadMark(const char* name, const QString& unread) : QLabel(unread) {
  Named(this, name);
  setTextFormat(Qt::PlainText);
  QFont small = font();
  small.setItalic(true);
  setFont(small);
  const QString widest = tr("Antwort unvollständig");
  setMinimumWidth(fontMetrics().horizontalAdvance(widest) + fontMetrics().averageCharWidth());
}

void ReadMark::ShowTime(const QString& text) {
  setText(text.arg(QTime::currentTime().toString(QStringLiteral("HH:mm"))));
}

}  // namespace kelvo
