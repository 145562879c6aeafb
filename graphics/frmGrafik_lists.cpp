#include <QDockWidget>
#include <QMenu>
#include <QScreen>

#include "graphics/frmGrafik.h"
#include "graphics/object_list.h"
#include "graphics/object_model.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kRoomyScreen = 1280;  // pixels
constexpr char kBarsRecord[] = "frmGrafikLeisten";

}  // namespace

// Wide enough for lists and rulers beside the canvas, before the operator has chosen.
bool frmGrafik::ScreenIsRoomy() const { return screen()->availableSize().width() >= kRoomyScreen; }

// Lists lie on each other at the left edge, the objects on top.
QDockWidget* frmGrafik::AddList(const char* name, const QString& title, QWidget* list) {
  auto* dock = Named(new QDockWidget(title), name);
  dock->setWidget(list);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  if (auto* first = findChild<QDockWidget*>(QStringLiteral("dockObjekte")); first != dock) {
    tabifyDockWidget(first, dock);
    first->raise();
  }
  dock->setVisible(ScreenIsRoomy());
  return dock;
}

void frmGrafik::MakeObjectList() {
  const auto makeSearch = [this] {
    return std::make_unique<SightSearch>(Display->DisplayWidth(), Display->DisplayHeight(), fonts_,
                                         host_.Terminal().blackThreshold);
  };
  auto* model = new ObjectModel(document_, counting_, makeSearch, this);
  objects_ = new ObjectList(document_, *model);
  AddList("dockObjekte", tr("Objekte"), objects_);
  connect(&document_, &DrawingDocument::Changed, objects_, &ObjectList::Follow);
  connect(objects_, &ObjectList::Chosen, this, &frmGrafik::SelectRows);
  connect(objects_, &ObjectList::OpenWanted, this, [this](std::size_t row) {
    SelectRows({row});
    OpenSelected();
  });
  connect(objects_, &ObjectList::LeaveWanted, this, [this] {
    if (!document_.Leave()) Display->setFocus();
  });
  connect(model, &ObjectModel::MoveWanted, this, [this](std::size_t row) {
    Edit([row](Drawing& drawing) { PutSelectedBefore(drawing, row); });
  });
}

// A line that is being drawn is complete then, and is not lost.
void frmGrafik::SelectRows(const std::vector<std::size_t>& rows) {
  if (tool_->Begun()) tool_->Leave();
  Edit([&](Drawing& drawing) {
    SelectAll(drawing, false);
    for (const std::size_t row : rows) {
      if (row < drawing.size()) drawing[row].selected = true;
    }
  });
}

void frmGrafik::MakeListEntries(QMenu* view) {
  view->addSeparator();
  const std::pair<const char*, const char*> docks[] = {{"dockObjekte", "mnuGrafikObjekte"},
                                                       {"dockSymbole", "mnuGrafikSymbole"}};
  for (const auto& [dock, name] : docks) {
    view->addAction(
        Named(findChild<QDockWidget*>(QString::fromLatin1(dock))->toggleViewAction(), name));
  }
}

void frmGrafik::RestoreBars() {
  restoreState(QByteArray::fromBase64(QByteArray::fromStdString(host_.Remembered(kBarsRecord))));
}

void frmGrafik::hideEvent(QHideEvent* event) {
  host_.Remember(kBarsRecord, saveState().toBase64().toStdString());
  QMainWindow::hideEvent(event);
}

}  // namespace kelvo
