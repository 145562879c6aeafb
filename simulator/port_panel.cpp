#include "simulator/port_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>

namespace kelvo::sim {

Lamp::Lamp(const QString& name, QWidget* parent) : QWidget(parent), name_(name) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(name_ + tr(": aus"));
}

void Lamp::Set(bool on) {
  if (on == on_) return;
  on_ = on;
  setAccessibleName(name_ + (on ? tr(": ein") : tr(": aus")));
  setToolTip(accessibleName());
  update();
}

void Lamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
  painter.setBrush(on_ ? QColor(0xE5, 0x39, 0x2B) : palette().color(QPalette::Base));
  painter.drawEllipse(rect().adjusted(2, 2, -3, -3));
}

PortPanel::PortPanel(QWidget* parent) : QGroupBox(tr("Ports"), parent) {
  auto* grid = new QGridLayout(this);
  grid->addWidget(new QLabel(tr("Leitung")), 0, 0);
  auto* outputs = new QLabel(tr("P0 (aus)"));
  auto* inputs = new QLabel(tr("P&1 (ein)"));
  grid->addWidget(outputs, 1, 0);
  grid->addWidget(inputs, 2, 0);
  for (int line = 7; line >= 0; --line) {
    const auto i = static_cast<std::size_t>(line);
    const int column = 8 - line;
    grid->addWidget(new QLabel(QString::number(line)), 0, column, Qt::AlignCenter);
    p0_[i] = new Lamp(tr("P0 Leitung %1").arg(line));
    p0_[i]->setObjectName(QStringLiteral("lampP0_%1").arg(line));
    grid->addWidget(p0_[i], 1, column, Qt::AlignCenter);
    p1_[i] = new QCheckBox;
    p1_[i]->setObjectName(QStringLiteral("chkP1_%1").arg(line));
    p1_[i]->setAccessibleName(tr("P1 Leitung %1").arg(line));
    grid->addWidget(p1_[i], 2, column, Qt::AlignCenter);
    connect(p1_[i], &QCheckBox::toggled, this, [this] { Q_EMIT P1Changed(Switches()); });
  }
  inputs->setBuddy(p1_[7]);
}

void PortPanel::Show(int p0, int p1) {
  for (std::size_t i = 0; i < p0_.size(); ++i) {
    p0_[i]->Set((p0 >> i & 1) != 0);
    const QSignalBlocker quiet(p1_[i]);
    p1_[i]->setChecked((p1 >> i & 1) != 0);
  }
}

int PortPanel::Switches() const {
  int lines = 0;
  for (std::size_t i = 0; i < p1_.size(); ++i) lines |= p1_[i]->isChecked() ? 1 << i : 0;
  return lines;
}

}  // namespace kelvo::sim
