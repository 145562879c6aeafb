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
  const QString now = QTime::currentTime().toString(QStringLiteral("HH:mm"));
  setText(text.arg(now));
  time_ = now;
}

void ReadMark::Outdate(const QString& who) {
  if (time_.isEmpty() || text().isEmpty()) return;
  setText(tr("%1 bei %2").arg(time_, who));
  setToolTip(tr("Das Terminal, von dem das stammt, hört jetzt nicht zu."));
}

}  // namespace kelvo
