#include "widgets/number_note.h"

#include <QTimer>
#include <utility>

#include "widgets/form.h"
#include "widgets/wire_field.h"

namespace kelvo {

NumberNote::NumberNote(const char* name, WireField& field, std::function<Shown()> shown)
    : field_(field), shown_(std::move(shown)) {
  Named(this, name);
  setTextFormat(Qt::PlainText);
  FixRoom(this, 2);
  connect(&field, &WireField::textChanged, this, &NumberNote::Refresh);
}

void NumberNote::SetWords(Words words) {
  words_ = std::move(words);
  Refresh();
}

void NumberNote::Refresh() {
  if (!isVisible()) return;
  bool whole = false;
  const int number = field_.text().trimmed().toInt(&whole);
  const bool asks = whole && number >= 0 && number <= 255 && words_;
  const QString words = asks ? QString::fromStdString(words_(number, shown_())) : QString();
  setText(words.isEmpty() ? QString() : tr("⚠ %1").arg(words));
  setToolTip(words.isEmpty()
                 ? QString()
                 : tr("%1 Wird geschrieben, so ist das dort Liegende überschrieben.").arg(words));
}

void NumberNote::RefreshSoon() {
  if (!isVisible() || std::exchange(waits_, true)) return;
  QTimer::singleShot(0, this, [this] {
    waits_ = false;
    Refresh();
  });
}

void NumberNote::showEvent(QShowEvent* event) {
  QLabel::showEvent(event);
  Refresh();
}

}  // namespace kelvo
