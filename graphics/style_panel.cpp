#include "graphics/style_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "graphics/editing.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

// In the order of the font numbers.
const char* const kFontNames[] = {"8 x 8",         "8 x 10",     "8 x 14",      "8 x 16",
                                  "4 x 6 Ziffern", "8 x 8 fett", "8 x 10 fett", "8 x 14 fett",
                                  "8 x 16 fett",   "16 x 32"};

// What objects do not differ in, or do not have, is as it will be for the next one.
void ShowBox(QCheckBox* box, const CommonStyle::Attribute& attribute, bool next) {
  box->setTristate(attribute.mixed);
  if (attribute.mixed) return box->setCheckState(Qt::PartiallyChecked);
  box->setCheckState(next ? Qt::Checked : Qt::Unchecked);
}

// 0 stands for different zooms.
void ShowNumber(QSpinBox* box, const CommonStyle::Attribute& attribute, int next) {
  box->setMinimum(attribute.mixed ? 0 : 1);
  box->setSpecialValueText(attribute.mixed ? QStringLiteral("–") : QString());
  box->setValue(attribute.mixed ? 0 : next);
}

template <typename Value>
void Take(Value& value, const CommonStyle::Attribute& attribute) {
  if (attribute.value) value = static_cast<Value>(*attribute.value);
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
  // Clicks, because what is shown can be chosen for all as well.
  connect(optZeichnen, &QRadioButton::clicked, this, [this] { ChoosePenMode(PenMode::Draw); });
  connect(optLoeschen, &QRadioButton::clicked, this, [this] { ChoosePenMode(PenMode::Erase); });
  connect(chkGefuellt, &QCheckBox::clicked, this, [this](bool filled) {
    chkGefuellt->setTristate(false);
    style_.filled = filled;
    Q_EMIT FilledChosen(filled);
  });
  return group;
}

QWidget* StylePanel::MakeTextGroup() {
  auto* group = new QGroupBox(tr("Text"));
  QFormLayout* const form = MakeForm(group);
  cboTextStyle = Named(new QComboBox, "cboTextStyle");
  for (const char* name : kFontNames) cboTextStyle->addItem(QString::fromUtf8(name));
  AddRow(form, tr("S&chrift:"), cboTextStyle);
  txtTextZoomX = MakeZoomBox("txtTextZoomX", kMaxZoomX, &TextAttributes::zoomX);
  txtTextZoomY = MakeZoomBox("txtTextZoomY", kMaxZoomY, &TextAttributes::zoomY);
  AddRow(form, tr("&waagerecht:"), txtTextZoomX, tr("fach"));
  AddRow(form, tr("&senkrecht:"), txtTextZoomY, tr("fach"));
  lblTextZoom = MakeValue("lblTextZoom");
  lblTextZoom->setMinimumWidth(0);
  AddRow(form, tr("Zoom:"), lblTextZoom);
  ctlFontBold = MakeTextBox("ctlFontBold", tr("fe&tt"), &TextAttributes::bold);
  ctlFontInvers = MakeTextBox("ctlFontInvers", tr("in&vers"), &TextAttributes::inverse);
  ctlFontUdrline = MakeTextBox("ctlFontUdrline", tr("&unterstrichen"), &TextAttributes::underline);
  for (QCheckBox* box : {ctlFontBold, ctlFontInvers, ctlFontUdrline}) form->addRow(box);
  const auto chooseFont = [this](int font) {
    if (font >= 0) Choose([font](TextAttributes& text) { text.font = font; });
  };
  connect(cboTextStyle, &QComboBox::currentIndexChanged, this, chooseFont);
  connect(cboTextStyle, &QComboBox::activated, this, chooseFont);  // also the one that is shown
  return group;
}

QCheckBox* StylePanel::MakeTextBox(const char* name, const QString& caption,
                                   bool TextAttributes::*attribute) {
  auto* box = Named(new QCheckBox(caption), name);
  connect(box, &QCheckBox::clicked, this, [this, box, attribute](bool on) {
    box->setTristate(false);
    Choose([=](TextAttributes& text) { text.*attribute = on; });
  });
  return box;
}

QSpinBox* StylePanel::MakeZoomBox(const char* name, int max, int TextAttributes::*zoom) {
  auto* box = Named(new QSpinBox, name);
  box->setRange(1, max);
  connect(box, &QSpinBox::valueChanged, this, [this, zoom](int value) {
    if (value > 0) Choose([=](TextAttributes& text) { text.*zoom = value; });
  });
  return box;
}

void StylePanel::ShowZoom() {
  lblTextZoom->setText(QStringLiteral("%1 x %2").arg(txtTextZoomX->text(), txtTextZoomY->text()));
}

void StylePanel::Choose(const TextChange& change) {
  change(style_.text);
  ShowZoom();
  Q_EMIT TextChosen(change);
}

void StylePanel::ChoosePenMode(PenMode penMode) {
  style_.penMode = penMode;
  Q_EMIT PenModeChosen(penMode);
}

void StylePanel::TakeFocusByClick(bool on) {
  for (QWidget* control :
       {static_cast<QWidget*>(cboTextStyle), static_cast<QWidget*>(txtTextZoomX),
        static_cast<QWidget*>(txtTextZoomY), static_cast<QWidget*>(ctlFontBold),
        static_cast<QWidget*>(ctlFontInvers), static_cast<QWidget*>(ctlFontUdrline)}) {
    control->setFocusPolicy(on ? Qt::StrongFocus : Qt::TabFocus);
  }
}

void StylePanel::FocusText() { cboTextStyle->setFocus(Qt::TabFocusReason); }

void StylePanel::ShowStyle(const CommonStyle& style) {
  const QSignalBlocker quiet(this);
  Take(style_.penMode, style.penMode);
  Take(style_.filled, style.filled);
  Take(style_.text.font, style.font);
  Take(style_.text.zoomX, style.zoomX);
  Take(style_.text.zoomY, style.zoomY);
  Take(style_.text.bold, style.bold);
  Take(style_.text.inverse, style.inverse);
  Take(style_.text.underline, style.underline);
  const ObjectStyle kept = style_;
  for (QRadioButton* option : {optZeichnen, optLoeschen}) option->setAutoExclusive(false);
  optZeichnen->setChecked(!style.penMode.mixed && style_.penMode != PenMode::Erase);
  optLoeschen->setChecked(!style.penMode.mixed && style_.penMode == PenMode::Erase);
  for (QRadioButton* option : {optZeichnen, optLoeschen}) option->setAutoExclusive(true);
  ShowBox(chkGefuellt, style.filled, kept.filled);
  cboTextStyle->setCurrentIndex(style.font.mixed ? -1 : kept.text.font);
  ShowNumber(txtTextZoomX, style.zoomX, kept.text.zoomX);
  ShowNumber(txtTextZoomY, style.zoomY, kept.text.zoomY);
  ShowBox(ctlFontBold, style.bold, kept.text.bold);
  ShowBox(ctlFontInvers, style.inverse, kept.text.inverse);
  ShowBox(ctlFontUdrline, style.underline, kept.text.underline);
  ShowZoom();
  style_ = kept;  // showing chooses nothing
}

void CommonStyle::Attribute::Meet(int other) {
  mixed = mixed || (value && *value != other);
  value = mixed ? std::nullopt : std::optional(other);
}

CommonStyle CommonStyleOf(const Drawing& drawing) {
  CommonStyle common;
  const auto meet = [&common](const DrawingObject& object) {
    if (object.kind == Kind::Group) return;
    if (object.kind != Kind::Text) {
      common.penMode.Meet(static_cast<int>(object.penMode));
      if (CanBeFilled(object.kind)) common.filled.Meet(object.filled);
      return;
    }
    const TextAttributes text = object.style.value_or(TextAttributes());
    common.font.Meet(text.font);
    common.zoomX.Meet(text.zoomX);
    common.zoomY.Meet(text.zoomY);
    common.bold.Meet(text.bold);
    common.inverse.Meet(text.inverse);
    common.underline.Meet(text.underline);
  };
  for (const DrawingObject& object : drawing) {
    if (object.selected) ForEachMember(object, meet);
  }
  return common;
}

}  // namespace kelvo
