#include "graphics/style_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "widgets/form.h"

namespace kelvo {

namespace {

// In the order of the font numbers.
const char* const kFontNames[] = {"8 x 8",         "8 x 10",     "8 x 14",      "8 x 16",
                                  "4 x 6 Ziffern", "8 x 8 fett", "8 x 10 fett", "8 x 14 fett",
                                  "8 x 16 fett",   "16 x 32"};

QSpinBox* MakeZoomBox(const char* name, int max) {
  auto* box = Named(new QSpinBox, name);
  box->setRange(1, max);
  return box;
}

}  // namespace

StylePanel::StylePanel(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeDrawingGroup());
  layout->addWidget(MakeTextGroup());
  ShowZoom();
}

QWidget* StylePanel::MakeDrawingGroup() {
  auto* group = new QGroupBox(tr("Zeichnen"));
  auto* layout = new QVBoxLayout(group);
  optZeichnen = Named(new QRadioButton(tr("Punkte s&etzen")), "optZeichnen");
  optLoeschen = Named(new QRadioButton(tr("Punkte &löschen")), "optLoeschen");
  chkGefuellt = Named(new QCheckBox(tr("&gefüllt")), "chkGefuellt");
  optZeichnen->setChecked(true);
  for (QWidget* control : {static_cast<QWidget*>(optZeichnen), static_cast<QWidget*>(optLoeschen),
                           static_cast<QWidget*>(chkGefuellt)}) {
    layout->addWidget(control);
  }
  connect(optLoeschen, &QRadioButton::toggled, this,
          [this](bool erase) { Q_EMIT PenModeChosen(erase ? PenMode::Erase : PenMode::Draw); });
  connect(chkGefuellt, &QCheckBox::toggled, this, &StylePanel::FilledChosen);
  return group;
}

QWidget* StylePanel::MakeTextGroup() {
  auto* group = new QGroupBox(tr("Text"));
  QFormLayout* const form = MakeForm(group);
  cboTextStyle = Named(new QComboBox, "cboTextStyle");
  for (const char* name : kFontNames) cboTextStyle->addItem(QString::fromUtf8(name));
  AddRow(form, tr("S&chrift:"), cboTextStyle);
  txtTextZoomX = MakeZoomBox("txtTextZoomX", kMaxZoomX);
  txtTextZoomY = MakeZoomBox("txtTextZoomY", kMaxZoomY);
  AddRow(form, tr("&waagerecht:"), txtTextZoomX, tr("fach"));
  AddRow(form, tr("&senkrecht:"), txtTextZoomY, tr("fach"));
  lblTextZoom = MakeValue("lblTextZoom");
  lblTextZoom->setMinimumWidth(0);
  AddRow(form, tr("Zoom:"), lblTextZoom);
  ctlFontBold = Named(new QCheckBox(tr("fe&tt")), "ctlFontBold");
  ctlFontInvers = Named(new QCheckBox(tr("in&vers")), "ctlFontInvers");
  ctlFontUdrline = Named(new QCheckBox(tr("&unterstrichen")), "ctlFontUdrline");
  for (QCheckBox* box : {ctlFontBold, ctlFontInvers, ctlFontUdrline}) {
    form->addRow(box);
    connect(box, &QCheckBox::toggled, this, &StylePanel::TextChanged);
  }
  connect(cboTextStyle, &QComboBox::currentIndexChanged, this, &StylePanel::TextChanged);
  for (QSpinBox* box : {txtTextZoomX, txtTextZoomY}) {
    connect(box, &QSpinBox::valueChanged, this, &StylePanel::TextChanged);
  }
  return group;
}

void StylePanel::ShowZoom() {
  lblTextZoom->setText(
      QStringLiteral("%1 x %2").arg(txtTextZoomX->value()).arg(txtTextZoomY->value()));
}

void StylePanel::TextChanged() {
  ShowZoom();
  Q_EMIT TextChosen(Style().text);
}

ObjectStyle StylePanel::Style() const {
  ObjectStyle style;
  style.penMode = optLoeschen->isChecked() ? PenMode::Erase : PenMode::Draw;
  style.filled = chkGefuellt->isChecked();
  style.text.font = cboTextStyle->currentIndex();
  style.text.zoomX = txtTextZoomX->value();
  style.text.zoomY = txtTextZoomY->value();
  style.text.bold = ctlFontBold->isChecked();
  style.text.inverse = ctlFontInvers->isChecked();
  style.text.underline = ctlFontUdrline->isChecked();
  return style;
}

void StylePanel::ShowStyle(const ObjectStyle& style) {
  const QSignalBlocker quiet(this);
  (style.penMode == PenMode::Erase ? optLoeschen : optZeichnen)->setChecked(true);
  chkGefuellt->setChecked(style.filled);
  cboTextStyle->setCurrentIndex(style.text.font);
  txtTextZoomX->setValue(style.text.zoomX);
  txtTextZoomY->setValue(style.text.zoomY);
  ctlFontBold->setChecked(style.text.bold);
  ctlFontInvers->setChecked(style.text.inverse);
  ctlFontUdrline->setChecked(style.text.underline);
  ShowZoom();
}

}  // namespace kelvo
