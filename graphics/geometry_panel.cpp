#include "graphics/geometry_panel.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>

#include "widgets/form.h"

namespace kelvo {

namespace {

// Half of the range of a command's numbers, so that sums stay inside.
constexpr int kFarthestPixel = 16000;

// Knows whether its number comes from an arrow, a key or the wheel, and not from typing.
class StepField : public QSpinBox {
 public:
  void stepBy(int steps) override {
    stepping_ = true;
    QSpinBox::stepBy(steps);
    stepping_ = false;
  }
  /// Steps with the same key are taken back together.
  std::string MergeKey() const { return stepping_ ? objectName().toStdString() : std::string(); }

 private:
  bool stepping_ = false;
};

}  // namespace

GeometryPanel::GeometryPanel(const Counting& counting, QWidget* parent)
    : QGroupBox(tr("Lage und Größe"), parent), counting_(counting) {
  QFormLayout* const form = MakeForm(this);
  txtPosX = MakeField("txtPosX", -kFarthestPixel);
  txtPosY = MakeField("txtPosY", -kFarthestPixel);
  txtBreite = MakeField("txtBreite", 1);
  txtHoehe = MakeField("txtHoehe", 1);
  AddRow(form, tr("&X:"), txtPosX, tr("Punkte"));
  AddRow(form, tr("&Y:"), txtPosY, tr("Punkte"));
  AddRow(form, tr("B&reite:"), txtBreite, tr("Punkte"));
  AddRow(form, tr("Hö&he:"), txtHoehe, tr("Punkte"));
}

// A number counts when it is complete, not digit by digit.
QSpinBox* GeometryPanel::MakeField(const char* name, int min) {
  auto* field = Named(new StepField, name);
  field->setRange(min, kFarthestPixel);
  field->setKeyboardTracking(false);
  connect(field, &QSpinBox::valueChanged, this, [this, field] {
    Q_EMIT BoxTyped(counting_.BoxAt({txtPosX->value(), txtPosY->value()}, txtBreite->value(),
                                    txtHoehe->value()),
                    field->MergeKey());
  });
  connect(field->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, &GeometryPanel::Complete,
          Qt::QueuedConnection);  // behind the number itself
  return field;
}

void GeometryPanel::ShowBox(const Box& box, bool selected) {
  const QSignalBlocker quiet(this);
  setEnabled(selected);
  const Point corner = selected ? counting_.FirstCorner(box) : Point();
  txtPosX->setValue(corner.x);
  txtPosY->setValue(corner.y);
  txtBreite->setValue(selected ? box.Width() : 1);
  txtHoehe->setValue(selected ? box.Height() : 1);
}

}  // namespace kelvo
