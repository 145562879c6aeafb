#include "widgets/read_mark.h"

#include <QPainter>
#include <QStyle>
#include <QTime>
#include <algorithm>
#include <utility>

#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kFewest = 8;  // characters that are seen in any case

}  // namespace

ReadMark::ReadMark(const char* name, const QString& unread) : QLabel(unread) {
  Named(this, name);
  setTextFormat(Qt::PlainText);
  QFont small = font();
  small.setItalic(true);
  setFont(small);
  Put(unread);
}

QSize ReadMark::sizeHint() const {
  int width = 0;
  for (const QString& words : {tr("Antwort unvollständig"), tr("00:00 bei einem anderen")}) {
    width = std::max(width, fontMetrics().horizontalAdvance(words));
  }
  return {width + fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

QSize ReadMark::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * kFewest, QLabel::minimumSizeHint().height()};
}

void ReadMark::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString words = fontMetrics().elidedText(text(), Qt::ElideRight, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        words, foregroundRole());
}

void ReadMark::Put(const QString& text) {
  QLabel::setText(text);
  setToolTip(why_.isEmpty() ? text : text + u'\n' + why_);
}

void ReadMark::ShowTime(const QString& text) {
  const QString now = QTime::currentTime().toString(QStringLiteral("HH:mm"));
  setText(text.arg(now));
  time_ = now;
}

void ReadMark::Outdate(const QString& who) {
  if (time_.isEmpty() || text().isEmpty()) return;
  const QString time = std::exchange(time_, {});
  why_ = tr("Das Terminal, von dem das stammt, hört jetzt nicht zu.");
  Put(tr("%1 bei %2").arg(time, who));
}

}  // namespace kelvo
