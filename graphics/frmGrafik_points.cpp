#include <QAction>
#include <utility>

#include "graphics/frmGrafik.h"
#include "graphics/grips.h"
#include "graphics/points.h"

// What the window does to single points of a line.

namespace kelvo {

void frmGrafik::ShowPointActions() {
  const auto object = OnlyWithPoints(document_.Current());
  const auto enable = [this](const char* name, bool on) {
    findChild<QAction*>(QString::fromLatin1(name))->setEnabled(on && !typing_->Active());
  };
  enable("mnuGrafikPunktEinfuegen", object.has_value());
  enable("mnuGrafikPunktEntfernen", CanRemovePoint());
}

bool frmGrafik::CanRemovePoint() const {
  const auto object = OnlyWithPoints(document_.Current());
  return object && document_.Picked() && document_.Current()[*object].vertices.size() > 2;
}

// Of the point as it is shown, which may be on its way.
QString frmGrafik::PointText() const {
  const Drawing& drawing = document_.Shown();
  const std::size_t point = *document_.Picked();
  const auto index = OnlyWithPoints(drawing);
  if (!index || point >= drawing[*index].vertices.size()) return {};
  const auto& points = drawing[*index].vertices;
  const Point shown = counting_.Shown(points[point]);
  return tr("Punkt %1 von %2: X %3  Y %4 – Einfg, Entf")
      .arg(point + 1)
      .arg(points.size())
      .arg(shown.x)
      .arg(shown.y);
}

// Where the context menu was opened, else in the middle.
void frmGrafik::mnuGrafikPunktEinfuegen_Click() {
  const auto index = OnlyWithPoints(document_.Current());
  if (!index) return;
  const DrawingObject& object = document_.Current()[*index];
  const PointPlace place =
      menuPoint_ ? NearestPlace(object, *menuPoint_) : MiddlePlace(object, document_.Picked());
  Edit([&](Drawing& drawing) { InsertPoint(drawing[*index], place); });
  document_.Pick(place.before + 1);
}

// The next point is the picked one then, so that several go one after the other.
void frmGrafik::mnuGrafikPunktEntfernen_Click() {
  if (!CanRemovePoint()) return;
  const std::size_t index = *OnlyWithPoints(document_.Current());
  const std::size_t point = *document_.Picked();
  Edit([&](Drawing& drawing) { RemovePoint(drawing[index], point); });
  document_.Pick(std::min(point, document_.Current()[index].vertices.size() - 1));
}

void frmGrafik::MovePoint(std::size_t index, int dx, int dy) {
  const std::size_t point = *document_.Picked();
  const auto move = [=](Drawing& drawing) {
    Point& p = drawing[index].vertices[point];
    p = {p.x + dx, p.y + dy};
  };
  Edit(move, "point" + std::to_string(point));
  document_.Pick(point);
}

void frmGrafik::PickUnder(Point at) {
  const auto grip = GripAt(document_.Current(), at, Display->Tolerance());
  if (grip && grip->vertex) document_.Pick(grip->vertex);
}

}  // namespace kelvo
