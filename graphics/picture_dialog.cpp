#include "graphics/picture_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "graphics/dither.h"
#include "graphics/pixel_image.h"
#include "graphics/prepare.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr Colour kGreyStep = 0x010101;  // from one grey to the next
constexpr int kPreviewZoom = 2;
constexpr int kLargestSide = 2000;  // Terminal pixels; a display has 640 at most

template <typename Control, typename Value>
void SetQuietly(Control* control, Value value) {
  const QSignalBlocker quiet(control);
  if constexpr (requires { control->setValue(value); }) {
    control->setValue(value);
  } else {
    control->setChecked(value);
  }
}

int Length(int length, double scale) { return std::clamp(qRound(length * scale), 1, kLargestSide); }

}  // namespace

PictureDialog::PictureDialog(PictureSource source, QSize display, Colour threshold, QWidget* parent)
    : QDialog(parent), source_(std::move(source)), optionThreshold_(threshold) {
  const QSize size(source_.Pixels().Width(), source_.Pixels().Height());
  const QSize shown = size.boundedTo(size.scaled(display, Qt::KeepAspectRatio));
  scaleX_ = static_cast<double>(shown.width()) / size.width();
  scaleY_ = static_cast<double>(shown.height()) / size.height();
  MakeControls(display);
}

PictureDialog::PictureDialog(const DrawingObject& picture, QSize display, Colour threshold,
                             QWidget* parent)
    : QDialog(parent),
      source_(picture.source),
      preparation_(picture.preparation),
      inserts_(false),
      optionThreshold_(threshold) {
  const PictureSize cut = CutSize(source_, preparation_);
  const Box box = BoundsOf(picture);
  scaleX_ = static_cast<double>(box.Width()) / cut.width;
  scaleY_ = static_cast<double>(box.Height()) / cut.height;
  MakeControls(display);
}

// ---- Building ----

void PictureDialog::MakeControls(QSize display) {
  setObjectName(QStringLiteral("dlgBild"));
  setWindowTitle(inserts_ ? tr("Bild einfügen") : tr("Bild bearbeiten"));
  auto* layout = new QVBoxLayout(this);
  auto* columns = new QHBoxLayout;
  layout->addLayout(columns, 1);
  auto* left = new QVBoxLayout;
  columns->addLayout(left);
  left->addWidget(MakeSizeGroup());
  left->addWidget(MakeCutGroup());
  left->addStretch();
  auto* middle = new QVBoxLayout;
  columns->addLayout(middle);
  middle->addWidget(MakeToneGroup());
  middle->addWidget(MakeBlackGroup());
  middle->addStretch();
  columns->addWidget(MakePreview(display), 1);
  layout->addWidget(MakeButtons());
  ConnectControls();
  ShowFields();
  // The size keeps its proportions where the picture has the source's.
  const QSize size = Size();
  const PictureSize cut = CutSize(source_, preparation_);
  const bool kept = std::abs(Length(cut.height, scaleX_) - size.height()) <= 1 ||
                    std::abs(Length(cut.width, scaleY_) - size.width()) <= 1;
  SetQuietly(chkSeitenverhaeltnis, kept);
  Rescale();
  txtBildBreite->setFocus();
  txtBildBreite->selectAll();  // what is typed takes its place
}

QWidget* PictureDialog::MakeSizeGroup() {
  auto* group = new QGroupBox(tr("Größe"));
  QFormLayout* const form = MakeForm(group);
  txtBildBreite = Named(new QSpinBox, "txtBildBreite");
  txtBildHoehe = Named(new QSpinBox, "txtBildHoehe");
  for (QSpinBox* box : {txtBildBreite, txtBildHoehe}) box->setRange(1, kLargestSide);
  AddRow(form, tr("&Breite:"), txtBildBreite, tr("Punkte"));
  AddRow(form, tr("&Höhe:"), txtBildHoehe, tr("Punkte"));
  chkSeitenverhaeltnis =
      Named(new QCheckBox(tr("Seiten&verhältnis beibehalten")), "chkSeitenverhaeltnis");
  form->addRow(chkSeitenverhaeltnis);
  return group;
}

QWidget* PictureDialog::MakeCutGroup() {
  auto* group = new QGroupBox(tr("Ausschnitt und Lage"));
  QFormLayout* const form = MakeForm(group);
  const struct {
    QSpinBox*& field;
    const char* name;
    QString label;
  } rows[] = {{txtRandLinks, "txtRandLinks", tr("&Links abschneiden:")},
              {txtRandRechts, "txtRandRechts", tr("Re&chts abschneiden:")},
              {txtRandOben, "txtRandOben", tr("&Oben abschneiden:")},
              {txtRandUnten, "txtRandUnten", tr("&Unten abschneiden:")}};
  for (const auto& row : rows) {
    row.field = Named(new QSpinBox, row.name);
    row.field->setToolTip(tr("In Punkten des Bildes, wie es eingefügt wurde"));
    AddRow(form, row.label, row.field);
  }
  cmdBildDrehen = MakeButton("cmdBildDrehen", tr("Um 90° &drehen"));
  cmdBildSpiegeln = MakeButton("cmdBildSpiegeln", tr("S&piegeln"));
  form->addRow(ButtonRow({cmdBildDrehen, cmdBildSpiegeln}));
  return group;
}

QSlider* PictureDialog::MakeSlider(const char* name, int low, int high) {
  auto* slider = Named(new QSlider(Qt::Horizontal), name);
  slider->setRange(low, high);
  return slider;
}

QWidget* PictureDialog::MakeToneGroup() {
  auto* group = new QGroupBox(tr("Helligkeit und Kontrast"));
  QFormLayout* const form = MakeForm(group);
  constexpr int kMax = Preparation::kMaxChange;
  ctlHelligkeit = MakeSlider("ctlHelligkeit", -kMax, kMax);
  ctlKontrast = MakeSlider("ctlKontrast", -kMax, kMax);
  AddRow(form, tr("H&elligkeit:"), ctlHelligkeit);
  AddRow(form, tr("&Kontrast:"), ctlKontrast);
  chkInvertieren = Named(new QCheckBox(tr("&invertieren")), "chkInvertieren");
  form->addRow(chkInvertieren);
  return group;
}

QWidget* PictureDialog::MakeBlackGroup() {
  auto* group = new QGroupBox(tr("Schwarz und Weiß"));
  QFormLayout* const form = MakeForm(group);
  cboRasterung = Named(new QComboBox, "cboRasterung");
  cboRasterung->addItems({tr("Schwelle"), tr("Fehlerverteilung"), tr("Muster 8 x 8")});
  AddRow(form, tr("&Rasterung:"), cboRasterung);
  ctlSchwelle = MakeSlider("ctlSchwelle", 0, Preparation::kMaxThreshold);
  AddRow(form, tr("&Schwelle:"), ctlSchwelle);
  lblSchwelle = MakeValue("lblSchwelle");
  AddRow(form, tr("Farbwert:"), lblSchwelle);
  chkGraustufen = Named(new QCheckBox(tr("zuerst in &Graustufen umwandeln")), "chkGraustufen");
  form->addRow(chkGraustufen);
  lblErklaerung = Named(new QLabel, "lblErklaerung");
  lblErklaerung->setWordWrap(true);
  lblErklaerung->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  // Room for the longest of its texts, so that choosing moves nothing.
  lblErklaerung->setMinimumSize(fontMetrics().averageCharWidth() * 42,
                                fontMetrics().lineSpacing() * 7);
  form->addRow(lblErklaerung);
  return group;
}

QWidget* PictureDialog::MakeButtons() {
  auto* buttons = new QDialogButtonBox;
  Named(buttons->addButton(inserts_ ? tr("Einfügen") : tr("Übernehmen"),
                           QDialogButtonBox::AcceptRole),
        "cmdBildEinfuegen");
  Named(buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole), "cmdBildAbbrechen");
  auto* reset = Named(buttons->addButton(tr("&Zurücksetzen"), QDialogButtonBox::ResetRole),
                      "cmdBildZuruecksetzen");
  reset->setToolTip(tr("Das ganze Bild, wie es eingefügt wurde"));
  connect(reset, &QPushButton::clicked, this, &PictureDialog::Reset);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

QWidget* PictureDialog::MakePreview(QSize display) {
  auto* scroll = new QScrollArea;
  lblVorschau = Named(new QLabel, "lblVorschau");
  lblVorschau->setAccessibleName(tr("Vorschau"));
  lblVorschau->setAlignment(Qt::AlignCenter);
  scroll->setBackgroundRole(QPalette::Mid);
  scroll->setWidget(lblVorschau);
  scroll->setWidgetResizable(true);
  scroll->setMinimumSize(kPreviewZoom * display.boundedTo({320, 240}) + QSize(20, 20));
  return scroll;
}

void PictureDialog::ConnectControls() {
  connect(txtBildBreite, &QSpinBox::valueChanged, this, [this](int width) {
    TypeSize(width, chkSeitenverhaeltnis->isChecked() ? 0 : txtBildHoehe->value());
  });
  connect(txtBildHoehe, &QSpinBox::valueChanged, this, [this](int height) {
    TypeSize(chkSeitenverhaeltnis->isChecked() ? 0 : txtBildBreite->value(), height);
  });
  ConnectCut();
  ConnectTone();
}

void PictureDialog::ConnectCut() {
  for (QSpinBox* margin : {txtRandLinks, txtRandOben, txtRandRechts, txtRandUnten}) {
    connect(margin, &QSpinBox::valueChanged, this, &PictureDialog::TypeMargins);
  }
  connect(cmdBildDrehen, &QPushButton::clicked, this, &PictureDialog::Turn);
  connect(cmdBildSpiegeln, &QPushButton::clicked, this, &PictureDialog::Mirror);
}

void PictureDialog::ConnectTone() {
  const auto change = [this](auto* control, auto signal, auto set) {
    connect(control, signal, this, [this, set](auto value) {
      set(preparation_, value);
      ShowPreview();
    });
  };
  change(ctlHelligkeit, &QSlider::valueChanged, [](Preparation& p, int v) { p.brightness = v; });
  change(ctlKontrast, &QSlider::valueChanged, [](Preparation& p, int v) { p.contrast = v; });
  change(ctlSchwelle, &QSlider::valueChanged, [](Preparation& p, int v) { p.threshold = v; });
  change(chkInvertieren, &QCheckBox::toggled, [](Preparation& p, bool on) { p.invert = on; });
  change(chkGraustufen, &QCheckBox::toggled, [](Preparation& p, bool on) { p.grey = on; });
  change(cboRasterung, &QComboBox::currentIndexChanged,
         [](Preparation& p, int index) { p.dithering = static_cast<Dithering>(index); });
}

// ---- Changing ----

// A side of 0 follows the other one.
void PictureDialog::TypeSize(int width, int height) {
  const PictureSize cut = CutSize(source_, preparation_);
  if (width > 0) scaleX_ = static_cast<double>(width) / cut.width;
  if (height > 0) scaleY_ = static_cast<double>(height) / cut.height;
  if (width == 0) scaleX_ = scaleY_;
  if (height == 0) scaleY_ = scaleX_;
  Rescale();
}

// What is cut off makes the picture smaller; what is left stays as large as it was.
void PictureDialog::TypeMargins() {
  preparation_.margins = {txtRandLinks->value(), txtRandOben->value(), txtRandRechts->value(),
                          txtRandUnten->value()};
  Rescale();
}

void PictureDialog::Turn() {
  preparation_ = Turned(preparation_);
  std::swap(scaleX_, scaleY_);
  Rescale();
}

void PictureDialog::Mirror() {
  preparation_ = Mirrored(preparation_);
  Rescale();
}

void PictureDialog::Reset() {
  if (preparation_.turns % 2 != 0) std::swap(scaleX_, scaleY_);
  preparation_ = {};
  ShowFields();
  Rescale();
}

QSize PictureDialog::Size() const {
  const PictureSize cut = CutSize(source_, preparation_);
  return {Length(cut.width, scaleX_), Length(cut.height, scaleY_)};
}

// Apart from the preview, because a photograph takes its time.
void PictureDialog::Rescale() {
  const QSize size = Size();
  scaled_ = Scaled(source_, preparation_, PreparedSize({size.width(), size.height()}));
  ShowMargins();
  ShowSize();
  ShowPreview();
}

DrawingObject PictureDialog::Result() const {
  DrawingObject object;
  object.kind = Kind::Picture;
  object.source = source_;
  object.preparation = preparation_;
  object.picture = Finished(scaled_, preparation_);
  const QSize size = Size();
  SetCorners(object, {0, 0, size.width() - 1, size.height() - 1});
  return object;
}

// ---- Showing ----

void PictureDialog::ShowFields() {
  SetQuietly(ctlHelligkeit, preparation_.brightness);
  SetQuietly(ctlKontrast, preparation_.contrast);
  SetQuietly(chkInvertieren, preparation_.invert);
  SetQuietly(chkGraustufen, preparation_.grey);
  const QSignalBlocker quiet(cboRasterung);
  cboRasterung->setCurrentIndex(static_cast<int>(preparation_.dithering));
  SetQuietly(ctlSchwelle,
             preparation_.threshold.value_or(static_cast<int>(optionThreshold_ / kGreyStep)));
}

// Of each side and of both together at least one pixel is left.
void PictureDialog::ShowMargins() {
  const Margins& margins = preparation_.margins;
  const PictureSize cut = CutSize(source_, preparation_);
  const auto show = [](QSpinBox* field, int value, int left) {
    const QSignalBlocker quiet(field);
    field->setRange(0, value + left - 1);
    field->setValue(value);
  };
  show(txtRandLinks, margins.left, cut.width);
  show(txtRandRechts, margins.right, cut.width);
  show(txtRandOben, margins.top, cut.height);
  show(txtRandUnten, margins.bottom, cut.height);
}

void PictureDialog::ShowSize() {
  SetQuietly(txtBildBreite, Size().width());
  SetQuietly(txtBildHoehe, Size().height());
}

void PictureDialog::ShowPreview() {
  const Picture seen =
      MadeMonochrome(Finished(scaled_, preparation_), Dithering::Threshold, optionThreshold_);
  lblVorschau->setPixmap(QPixmap::fromImage(ToImage(seen).scaled(Size() * kPreviewZoom)));
  const bool byThreshold = preparation_.dithering == Dithering::Threshold;
  const auto own = preparation_.threshold;
  lblSchwelle->setText(
      QString::number(own ? static_cast<Colour>(*own) * kGreyStep : optionThreshold_));
  // The other ways are grey anyhow.
  chkGraustufen->setEnabled(byThreshold);
  const bool byNumber = byThreshold && !preparation_.grey;
  lblErklaerung->setText(
      byNumber ? tr("Schwarz wird, was unter der Schwelle liegt. Verglichen wird die Zahl "
                    "Rot + 256 x Grün + 65536 x Blau: bei farbigen Bildern entscheidet also fast "
                    "allein der Blauanteil, und reines Rot oder Grün wird schwarz.")
               : tr("Verglichen wird die Helligkeit: dunkle Stellen werden schwarz."));
}

}  // namespace kelvo
