#include "graphics/curve_panel.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kLargestRadius = 999;

}  // namespace

CurvePanel::CurvePanel(QWidget* parent) : QWidget(parent) {
  const CurveStyle first;
  corners_ = new QGroupBox(tr("Runde Ecken"));
  txtRadius =
      AddField(MakeForm(corners_), "txtRadius", tr("Rad&ius:"), kLargestRadius, tr("Punkte"));
  txtRadius->setValue(first.radius);
  arc_ = new QGroupBox(tr("Bogen"));
  arc_->setToolTip(tr("Gegen den Uhrzeigersinn, 0 Grad ist rechts"));
  QFormLayout* const form = MakeForm(arc_);
  txtBogenAnfang = AddField(form, "txtBogenAnfang", tr("A&nfang:"), 360, tr("Grad"));
  txtBogenEnde = AddField(form, "txtBogenEnde", tr("En&de:"), 360, tr("Grad"));
  txtBogenAnfang->setValue(first.arcFrom);
  txtBogenEnde->setValue(first.arcTo);
  chkSektor = Named(new QCheckBox(tr("zur &Mitte (Sektor)")), "chkSektor");
  form->addRow(chkSektor);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(corners_);
  layout->addWidget(arc_);
  ShowFor(ToolKind::Select);
}

QSpinBox* CurvePanel::AddField(QFormLayout* form, const char* name, const QString& caption, int max,
                               const QString& unit) {
  auto* field = Named(new QSpinBox, name);
  field->setRange(0, max);
  AddRow(form, caption, field, unit);
  connect(field->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, &CurvePanel::Complete,
          Qt::QueuedConnection);  // behind the number itself
  return field;
}

CurveStyle CurvePanel::Style() const {
  return {.radius = txtRadius->value(),
          .arcFrom = txtBogenAnfang->value(),
          .arcTo = txtBogenEnde->value(),
          .sector = chkSektor->isChecked()};
}

void CurvePanel::ShowFor(ToolKind kind) {
  corners_->setVisible(kind == ToolKind::RoundedRectangle);
  arc_->setVisible(kind == ToolKind::Arc);
  setVisible(kind == ToolKind::RoundedRectangle || kind == ToolKind::Arc);
}

}  // namespace kelvo
