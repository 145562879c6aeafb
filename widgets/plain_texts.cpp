#include "widgets/plain_texts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QStatusBar>
#include <typeinfo>

#include "widgets/tame_text.h"

namespace kelvo {
namespace {

void TameLabel(QLabel& label) {
  if (label.textFormat() == Qt::AutoText) label.setTextFormat(Qt::PlainText);
  if (label.textFormat() != Qt::PlainText) return;
  const QString tame = Tamed(label.text());
  if (tame != label.text()) label.setText(tame);
}

void TameTitle(QWidget& window) {
  const QString tame = Tamed(window.windowTitle());
  if (tame != window.windowTitle()) window.setWindowTitle(tame);
}

// One that has a delegate of its own shows what that makes of it.
void TameItems(QAbstractItemView& view) {
  const QAbstractItemDelegate* const usual = view.itemDelegate();
  if (usual == nullptr || typeid(*usual) != typeid(QStyledItemDelegate)) return;
  view.setItemDelegate(new TameDelegate(&view));
}

// Before it finds its place, so that nothing grows with an endless name.
void TameLabelsOf(const QWidget& widget) {
  for (QLabel* const label : widget.findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
    TameLabel(*label);
  }
}

void Tame(QWidget& widget) {
  if (auto* const label = qobject_cast<QLabel*>(&widget)) TameLabel(*label);
  if (auto* const view = qobject_cast<QAbstractItemView*>(&widget)) TameItems(*view);
  auto* const bar = qobject_cast<QStatusBar*>(&widget);
  if (bar == nullptr) return;
  const QString tame = Tamed(bar->currentMessage());
  if (tame != bar->currentMessage()) bar->showMessage(tame);
}

}  // namespace

PlainTexts::PlainTexts() { qApp->installEventFilter(this); }

// A tool tip is a label, too.
bool PlainTexts::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWidgetType()) return false;
  auto& widget = *static_cast<QWidget*>(watched);
  switch (event->type()) {
    case QEvent::Polish:
    case QEvent::Paint:
      Tame(widget);
      break;
    case QEvent::LayoutRequest:
      TameLabelsOf(widget);
      break;
    case QEvent::WindowTitleChange:
      TameTitle(widget);
      break;
    default:
      break;
  }
  return false;
}

}  // namespace kelvo
