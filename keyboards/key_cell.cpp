#include "keyboards/key_cell.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace kelvo {
namespace {

constexpr QRgb kLightBlue = qRgb(0, 0, 255);  // number 9 of the 16-colour palette
constexpr QRgb kOnLightBlue = qRgb(255, 255, 255);

}  // namespace

KeyCell::KeyCell(QWidget* parent) : WireField(parent) {
  setAlignment(Qt::AlignCenter);
  setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("$0000")) * 3 / 2);
  Paint(KeyColour::White);
}

void KeyCell::Paint(KeyColour colour) {
  if (colour == colour_) return;
  colour_ = colour;
  QPalette colours;
  if (colour == KeyColour::LightBlue) {
    colours.setColor(QPalette::Base, QColor(kLightBlue));
    colours.setColor(QPalette::Text, QColor(kOnLightBlue));
  }
  setPalette(colours);
}

void KeyCell::focusOutEvent(QFocusEvent* event) {
  WireField::focusOutEvent(event);
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
      reason == Qt::MenuBarFocusReason) {
    return;
  }
  if (!checked_ || isModified()) Q_EMIT Left();
  checked_ = reason == Qt::OtherFocusReason;
  setModified(false);
}

void KeyCell::keyPressEvent(QKeyEvent* event) {
  const bool atStart = cursorPosition() == 0 && !hasSelectedText();
  const bool atEnd = cursorPosition() == text().size() && !hasSelectedText();
  if (event->key() == Qt::Key_Up) return Q_EMIT NeighbourWanted(-1, 0);
  if (event->key() == Qt::Key_Down) return Q_EMIT NeighbourWanted(1, 0);
  if (event->key() == Qt::Key_Left && atStart) return Q_EMIT NeighbourWanted(0, -1);
  if (event->key() == Qt::Key_Right && atEnd) return Q_EMIT NeighbourWanted(0, 1);
  WireField::keyPressEvent(event);
}

}  // namespace kelvo
