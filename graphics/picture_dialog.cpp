#include "graphics/picture_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPixmap>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <algorithm>
#include <utility>

#include "graphics/pixel_image.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr Colour kGreyStep = 0x010101;  // from one grey to the next
constexpr int kPreviewZoom = 2;
constexpr int kLargestSide = 2000;  // Terminal pixels; a display has 640 at most

}  // namespace

PictureDialog::PictureDialog(QImage image, QSize display, Colour threshold, QWidget* parent)
    : QDialog(parent), image_(std::move(image)), optionThreshold_(threshold) {
  setObjectName(QStringLiteral("dlgBild"));
  setWindowTitle(tr("Bild einfügen"));
  MakeControls(display);
  Rescale();
}

void PictureDialog::MakeControls(QSize display) {
  auto* layout = new QHBoxLayout(this);
  auto* left = new QVBoxLayout;
  layout->addLayout(left);
  left->addWidget(MakeSizeGroup());
  left->addWidget(MakeBlackGroup());
  left->addStretch();
  left->addWidget(MakeButtons());
  layout->addWidget(MakePreview(display), 1);

  const QSize size = image_.size().boundedTo(image_.size().scaled(display, Qt::KeepAspectRatio));
  txtBildBreite->setValue(std::max(1, size.width()));
  txtBildHoehe->setValue(std::max(1, size.height()));
  ConnectControls();
}

void PictureDialog::ConnectControls() {
  connect(txtBildBreite, &QSpinBox::valueChanged, this, &PictureDialog::ChangeWidth);
  connect(txtBildHoehe, &QSpinBox::valueChanged, this, &PictureDialog::ChangeHeight);
  connect(cboRasterung, &QComboBox::currentIndexChanged, this, &PictureDialog::ShowPreview);
  connect(chkGraustufen, &QCheckBox::toggled, this, &PictureDialog::ShowPreview);
  connect(ctlSchwelle, &QSlider::valueChanged, this, [this] {
    thresholdMoved_ = true;
    ShowPreview();
  });
}

QWidget* PictureDialog::MakeBlackGroup() {
  auto* group = new QGroupBox(tr("Schwarz und Weiß"));
  QFormLayout* const form = MakeForm(group);
  cboRasterung = Named(new QComboBox, "cboRasterung");
  cboRasterung->addItems({tr("Schwelle"), tr("Fehlerverteilung"), tr("Muster 8 x 8")});
  AddRow(form, tr("&Rasterung:"), cboRasterung);
  ctlSchwelle = Named(new QSlider(Qt::Horizontal), "ctlSchwelle");
  ctlSchwelle->setRange(0, 256);
  ctlSchwelle->setValue(static_cast<int>(optionThreshold_ / kGreyStep));
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
  Named(buttons->addButton(tr("Einfügen"), QDialogButtonBox::AcceptRole), "cmdBildEinfuegen");
  Named(buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole), "cmdBildAbbrechen");
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
  chkSeitenverhaeltnis->setChecked(true);
  form->addRow(chkSeitenverhaeltnis);
  return group;
}

void PictureDialog::ChangeWidth(int width) {
  if (chkSeitenverhaeltnis->isChecked()) {
    const QSignalBlocker quiet(txtBildHoehe);
    txtBildHoehe->setValue(qRound(static_cast<double>(width) * image_.height() / image_.width()));
  }
  Rescale();
}

void PictureDialog::ChangeHeight(int height) {
  if (chkSeitenverhaeltnis->isChecked()) {
    const QSignalBlocker quiet(txtBildBreite);
    txtBildBreite->setValue(qRound(static_cast<double>(height) * image_.width() / image_.height()));
  }
  Rescale();
}

// Apart from the preview, because a photograph takes its time.
void PictureDialog::Rescale() {
  const QSize size(txtBildBreite->value(), txtBildHoehe->value());
  scaled_ = ToPicture(size == image_.size()
                          ? image_
                          : image_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  ShowPreview();
}

Colour PictureDialog::Threshold() const {
  return thresholdMoved_ ? static_cast<Colour>(ctlSchwelle->value()) * kGreyStep : optionThreshold_;
}

Dithering PictureDialog::ChosenDithering() const {
  return static_cast<Dithering>(cboRasterung->currentIndex());
}

Picture PictureDialog::Shown() const {
  return chkGraustufen->isChecked() ? MadeGrey(scaled_) : scaled_;
}

Picture PictureDialog::Result() const {
  const bool asSent = ChosenDithering() == Dithering::Threshold && !thresholdMoved_;
  return asSent ? Shown() : Monochrome();
}

// The dithers compare brightness; the option's threshold is a colour value.
Picture PictureDialog::Monochrome() const {
  const int middle = thresholdMoved_ ? ctlSchwelle->value() : kMiddleBrightness;
  return MadeMonochrome(Shown(), ChosenDithering(), Threshold(), middle);
}

void PictureDialog::ShowPreview() {
  const QImage shown = ToImage(Monochrome());
  lblVorschau->setPixmap(QPixmap::fromImage(shown.scaled(shown.size() * kPreviewZoom)));
  lblSchwelle->setText(QString::number(Threshold()));
  // The other ways are grey anyhow.
  const bool byThreshold = ChosenDithering() == Dithering::Threshold;
  chkGraustufen->setEnabled(byThreshold);
  const bool byNumber = byThreshold && !chkGraustufen->isChecked();
  lblErklaerung->setText(
      byNumber ? tr("Schwarz wird, was unter der Schwelle liegt. Verglichen wird die Zahl "
                    "Rot + 256 x Grün + 65536 x Blau: bei farbigen Bildern entscheidet also fast "
                    "allein der Blauanteil, und reines Rot oder Grün wird schwarz.")
               : tr("Verglichen wird die Helligkeit: dunkle Stellen werden schwarz."));
}

}  // namespace kelvo
