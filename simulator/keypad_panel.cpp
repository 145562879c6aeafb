#include "simulator/keypad_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

namespace kelvo::sim {
namespace {

QString CodeText(unsigned char code) {
  const bool printable = (code > 32 && code < 127) || code > 160;
  if (printable && code < 128) return QString(QChar(code));
  return QStringLiteral("$") + QString::number(code, 16).toUpper();
}

}  // namespace

KeypadPanel::KeypadPanel(QWidget* parent) : QGroupBox(tr("Matrix-Tastatur"), parent) {
  auto* grid = new QGridLayout(this);
  grid->setSpacing(2);
  const int widest = fontMetrics().horizontalAdvance(QStringLiteral("$MM"));
  for (int i = 0; i < kSide; ++i) {
    grid->addWidget(new QLabel(tr("S%1").arg(i)), 0, i + 1, Qt::AlignCenter);
    grid->addWidget(new QLabel(tr("Z%1").arg(i)), i + 1, 0, Qt::AlignCenter);
    grid->setColumnMinimumWidth(i + 1, widest);
    grid->setColumnStretch(i + 1, 1);
  }
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      auto* button = new QToolButton;
      button->setObjectName(QStringLiteral("cmdKey_%1_%2").arg(row).arg(column));
      button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
      grid->addWidget(button, row + 1, column + 1);
      connect(button, &QToolButton::pressed, this, [=, this] { Q_EMIT Pressed(row, column); });
      connect(button, &QToolButton::released, this, &KeypadPanel::Released);
      buttons_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = button;
    }
  }
  Show({});
}

void KeypadPanel::Show(const Keys& keys) {
  if (shown_ == keys) return;
  shown_ = keys;
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      ShowKey(row, column, keys[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]);
    }
  }
}

void KeypadPanel::ShowKey(int row, int column, const Key& key) {
  QToolButton& button = *buttons_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
  const QString place = tr("Zeile %1, Spalte %2").arg(row).arg(column);
  button.setEnabled(key.wired);
  button.setText(key.wired && key.code ? CodeText(*key.code) : QStringLiteral("·"));
  if (!key.wired) {
    button.setToolTip(place + tr(": nicht angeschlossen"));
  } else if (!key.code) {
    button.setToolTip(place + tr(": unbenutzt, sendet nichts"));
  } else {
    button.setToolTip(place + tr(": sendet %1").arg(*key.code));
  }
  button.setAccessibleName(button.toolTip());
}

}  // namespace kelvo::sim
