#include "graphics/drawing_page.h"

#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/guard.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kZoom = 2;

}  // namespace

DrawingPreview::DrawingPreview(QWidget* parent) : QWidget(parent) {
  setAccessibleName(tr("Zeichnung"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void DrawingPreview::Show(const QImage& pixels) {
  pixels_ = pixels;
  updateGeometry();
  update();
}

QSize DrawingPreview::sizeHint() const { return pixels_.size() * kZoom; }

void DrawingPreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid));
  if (pixels_.isNull()) return;
  const QSize fitting = pixels_.size().scaled(size(), Qt::KeepAspectRatio);
  const int zoom = fitting.width() / pixels_.width();
  QRect target(QPoint(), zoom > 0 ? pixels_.size() * zoom : fitting);
  target.moveCenter(rect().center());
  painter.drawImage(target, pixels_);
}

DrawingPage::DrawingPage(frmGrafik& editor, GraphicsHost& host, Operator& person, QWidget* parent)
    : QWidget(parent), editor_(editor), host_(host), person_(person) {
  auto* layout = new QVBoxLayout(this);
  ctlVorschau = Named(new DrawingPreview, "ctlVorschau");
  layout->addWidget(ctlVorschau, 1);
  lblKosten = Named(new QLabel, "lblZeichnungKosten");
  layout->addWidget(lblKosten);
  layout->addWidget(MakeButtons());
  connect(&editor_, &frmGrafik::DrawingChanged, this, &DrawingPage::ShowDrawing);
  ShowDrawing();
}

QWidget* DrawingPage::MakeButtons() {
  auto* rows = new QWidget;
  auto* column = new QVBoxLayout(rows);
  column->setContentsMargins(0, 0, 0, 0);
  auto* layout = new QHBoxLayout;
  column->addLayout(layout);
  const auto add = [&](const char* name, const QString& caption,
                       const std::function<void()>& handler) {
    QPushButton* const button = MakeButton(name, caption);
    connect(button, &QPushButton::clicked, this,
            [this, name, handler] { Guarded(person_, name, handler); });
    layout->addWidget(button);
  };
  add("cmdGrafik", tr("&Grafik-Editor …"), [this] { cmdGrafik_Click(); });
  add("cmdGrafikSenden", tr("Zum Terminal s&enden"), [this] { host_.Send(); });
  add("cmdGrafikLaden", tr("&Laden …"), [this] { editor_.LoadDrawing(); });
  add("cmdGrafikSpeichern", tr("&Speichern …"), [this] { editor_.SaveDrawing(); });
  add("cmdGrafikText", tr("Als &Text speichern …"), [this] { host_.SaveAsText(); });
  add("cmdGrafikMakro", tr("Als &Makro speichern …"), [this] { host_.SaveAsMakro(); });
  layout->addStretch();
  layout = new QHBoxLayout;
  column->addLayout(layout);
  layout->addWidget(new QLabel(tr("Bild ins EEPROM:")));
  add("cmdGrafikBildGeprueft", tr("Geprüft schreiben …"),
      [this] { host_.SaveBMPinEEProm(GraphicsHost::BitmapTo::SelectedProven); });
  add("cmdGrafikBildAktive", tr("An aktive Terminals …"),
      [this] { host_.SaveBMPinEEProm(GraphicsHost::BitmapTo::Many); });
  layout->addStretch();
  return rows;
}

void DrawingPage::cmdGrafik_Click() {
  editor_.show();
  editor_.raise();
  editor_.activateWindow();
}

void DrawingPage::ShowDrawing() {
  ctlVorschau->Show(editor_.Pixels());
  lblKosten->setText(editor_.CostsText());
}

}  // namespace kelvo
