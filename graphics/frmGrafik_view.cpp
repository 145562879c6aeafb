#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>

#include "graphics/frmGrafik.h"
#include "graphics/object_list.h"
#include "graphics/ruler.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr char kOn[] = "1";
constexpr char kOff[] = "0";

}  // namespace

// The canvas between its rulers.
QWidget* frmGrafik::MakeRulers() {
  auto* around = new QWidget;
  auto* layout = new QGridLayout(around);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(scroll_, 1, 1);
  const auto add = [&](const char* name, Qt::Orientation along, int row, int column) {
    auto* ruler = Named(new Ruler(along, *Display, counting_), name);
    layout->addWidget(ruler, row, column);
    Display->installEventFilter(ruler);
    connect(Display, &DrawingCanvas::Pointed, ruler, &Ruler::SetPointer);
    rulers_.push_back(ruler);
  };
  add("linOben", Qt::Horizontal, 0, 1);
  add("linLinks", Qt::Vertical, 1, 0);
  return around;
}

// A choice of the operator's that holds at the next start, too.
QAction* frmGrafik::AddChoice(QMenu* menu, const Choice& choice) {
  QAction* const action = Named(menu->addAction(QString::fromUtf8(choice.text)), choice.name);
  action->setCheckable(true);
  action->setShortcut(QKeySequence(QString::fromLatin1(choice.keys)));
  const std::string remembered = host_.Remembered(choice.name);
  action->setChecked(remembered.empty() ? choice.atFirst : remembered == kOn);
  choice.follow(action->isChecked());
  connect(action, &QAction::toggled, this, [this, choice](bool on) {
    choice.follow(on);
    host_.Remember(choice.name, on ? kOn : kOff);
  });
  return action;
}

void frmGrafik::MakeViewChoices(QMenu* view) {
  mnuGrafikFang = AddChoice(view, {"mnuGrafikFang", "An &Objekten ausrichten", "Ctrl+Shift+F",
                                   false, [this](bool on) { desk_->SetSnaps(on); }});
  AddChoice(view, {"mnuGrafikLineale", "&Lineale", "Ctrl+L", ScreenIsRoomy(), [this](bool on) {
                     for (QWidget* ruler : rulers_) ruler->setVisible(on);
                   }});
  AddChoice(view, {"mnuGrafikZaehlung", "&Zählung wie die Befehle (y nach unten)", "", false,
                   [this](bool on) { CountLikeCommands(on); }});
}

void frmGrafik::CountLikeCommands(bool on) {
  counting_ =
      Counting(on ? Counting::Way::LikeCommands : Counting::Way::Stored, Display->DisplayHeight());
  lblZaehlung->setText(on ? tr("Y nach unten") : tr("Y nach oben"));
  lblZaehlung->setToolTip(on ? tr("Die Zahlen zählen wie die Befehle: 0,0 ist links oben.")
                             : tr("0,0 ist links unten; die Befehle zählen von links oben."));
  ShowGeometry();
  ShowHints();
  if (pointed_) ShowPointer(*pointed_);
  for (QWidget* ruler : rulers_) ruler->update();
  objects_->Follow();
}

void frmGrafik::ShowGeometry() {
  const Drawing& drawing = document_.Shown();
  geometry_->ShowBox(SelectionBounds(drawing), AnySelected(drawing));
}

void frmGrafik::ShowPointer(Point p) {
  pointed_ = p;
  const Point shown = counting_.Shown(p);
  lblKoordinaten->setText(QStringLiteral("X %1  Y %2").arg(shown.x).arg(shown.y));
}

}  // namespace kelvo
