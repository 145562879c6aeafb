#include "keyboards/table_number_hint.h"

#include <QLabel>
#include <QPushButton>
#include <QTime>

#include "base/val.h"
#include "inventory_page/write_desk.h"
#include "link/chronicle.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

// At a low rate a table takes longer than is waited for it.
QString FailedText(const Reply& reply) {
  if (reply.kind == ReplyKind::Unfinished) {
    return QObject::tr(": nur %1 Zeichen kamen rechtzeitig. Rate zu niedrig?")
        .arg(reply.received.size());
  }
  return QStringLiteral(": ") + QString::fromStdString(FailureWords(reply));
}

}  // namespace

void ShowTableNumberRange(WireField& field, QLabel& range) {
  const auto show = [&field, &range] {
    bool whole = false;
    const int number = field.text().trimmed().toInt(&whole);
    const bool good = whole && number >= 0 && number <= 255;
    const QString sent = QString::fromStdString(NumberText(Val(field.Wire())));
    range.setText(good                     ? QObject::tr("0 … 255")
                  : field.text().isEmpty() ? QObject::tr("0 … 255 – leer: Tabelle 0")
                                           : QObject::tr("0 … 255 – gesendet würde %1").arg(sent));
  };
  show();
  QObject::connect(&field, &WireField::textChanged, &range, show);
}

void ShowReadTable(QPushButton& take, QLabel& words, const WriteDesk* desk, const Reply& reply,
                   std::optional<int> number) {
  QString time = QTime::currentTime().toString(QStringLiteral("HH:mm"));
  if (desk != nullptr) time += QStringLiteral(" ") + QString::fromStdString(desk->AnswersFrom());
  take.setEnabled(number.has_value());
  words.setText(number           ? QObject::tr("%1 gelesen: Tabelle %2").arg(time).arg(*number)
                : reply.Failed() ? time + FailedText(reply)
                                 : QObject::tr("%1 gelesen: keine Tabelle, die sich hier zeigen "
                                               "lässt")
                                       .arg(time));
  words.show();
}

}  // namespace kelvo
