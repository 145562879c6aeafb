#include "widgets/up_down.h"

#include <QHBoxLayout>
#include <QToolButton>

#include "widgets/form.h"

namespace kelvo {
namespace {

QToolButton* MakeArrowButton(const QString& name, Qt::ArrowType arrow, const QString& tip) {
  auto* button = Named(new QToolButton, name);
  button->setArrowType(arrow);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setAutoRepeat(true);
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace

UpDown::UpDown(const QString& name, const QString& what, QWidget* parent) : QWidget(parent) {
  Named(this, name);
  setAccessibleName(what);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2, 2, 2, 2);
  row->setSpacing(0);
  QToolButton* const down =
      MakeArrowButton(name + QStringLiteral("_Down"), Qt::DownArrow, tr("%1 kleiner").arg(what));
  QToolButton* const up =
      MakeArrowButton(name + QStringLiteral("_Up"), Qt::UpArrow, tr("%1 größer").arg(what));
  row->addWidget(down);
  row->addWidget(up);
  connect(up, &QToolButton::clicked, this, &UpDown::Up);
  connect(down, &QToolButton::clicked, this, &UpDown::Down);
}

}  // namespace kelvo
