#include "graphics/frmGrafik.h"

#include <QDockWidget>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>

#include "graphics/costs.h"
#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/pixel_image.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kFirstZoom = 3;
constexpr std::chrono::milliseconds kDraftDelay(1000);
constexpr std::chrono::milliseconds kSendInterval(500);

// As large as the panel in it where the screen has room, else it scrolls.
class PanelArea : public QScrollArea {
 public:
  explicit PanelArea(QWidget* panel) {
    setWidget(panel);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);  // its fields have the keys
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumWidth(panel->sizeHint().width() + verticalScrollBar()->sizeHint().width());
  }
  QSize sizeHint() const override { return {minimumWidth(), widget()->sizeHint().height()}; }
};

}  // namespace

frmGrafik::frmGrafik(GraphicsHost& host, Operator& person, const DeviceFonts& fonts,
                     Timer& sendTimer, QSize display, const std::string& draftPath)
    : host_(host), person_(person), fonts_(fonts), sendTimer_(sendTimer), draft_(draftPath) {
  setObjectName(QStringLiteral("frmGrafik"));
  setAcceptDrops(true);
  MakeCanvas(display);
  MakePanels();
  MakeStatusBar();
  MakeTools();
  MakeMenus();
  MakeToolbar();
  MakeContextMenu();
  ConnectPanels();
  connect(&document_, &DrawingDocument::Changed, this, &frmGrafik::ShowState);
  connect(&document_, &DrawingDocument::Edited, this, &frmGrafik::Edited);
  Named(&draftTimer_, "tmrEntwurf")->setSingleShot(true);
  draftTimer_.setInterval(kDraftDelay);
  connect(&draftTimer_, &QTimer::timeout, this, &frmGrafik::KeepDraft);
  sendTimer_.SetInterval(kSendInterval);
  sendTimer_.SetHandler([this] { SendTick(); });
  OptionsChanged();
  ShowState();
  FitWindow();
}

// Room for the whole display beside the panels, and a smaller zoom where the screen has none.
void frmGrafik::FitWindow() {
  ensurePolished();
  const int frame = 2 * scroll_->frameWidth();
  const QSize around = sizeHint() - scroll_->sizeHint() + QSize(frame, frame);
  const QSize room = screen()->availableSize() - around;
  while (Display->Zoom() > 1 && Display->size() != Display->size().boundedTo(room)) {
    Display->SetZoom(Display->Zoom() - 1);
  }
  ShowZoom();
  resize((Display->size() + around).expandedTo(sizeHint()).boundedTo(screen()->availableSize()));
}

void frmGrafik::MakeCanvas(QSize display) {
  Display = new DrawingCanvas(document_, fonts_);
  Display->SetDisplaySize(display.width(), display.height());
  Display->SetZoom(kFirstZoom);
  scroll_ = new QScrollArea;
  scroll_->setFocusPolicy(Qt::NoFocus);  // the canvas in it has the keys
  scroll_->setWidget(Display);
  scroll_->setAlignment(Qt::AlignCenter);
  scroll_->setBackgroundRole(QPalette::Mid);
  setCentralWidget(scroll_);
}

void frmGrafik::MakePanels() {
  style_ = new StylePanel;
  geometry_ = new GeometryPanel;
  auto* panel = new QWidget;
  auto* layout = new QVBoxLayout(panel);
  layout->addWidget(geometry_);
  layout->addWidget(style_);
  layout->addStretch();
  auto* dock = Named(new QDockWidget(tr("Eigenschaften")), "dockEigenschaften");
  dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  dock->setWidget(new PanelArea(panel));
  addDockWidget(Qt::RightDockWidgetArea, dock);
}

void frmGrafik::MakeStatusBar() {
  lblKoordinaten = Named(new QLabel, "lblKoordinaten");
  lblKoordinaten->setMinimumWidth(
      fontMetrics().horizontalAdvance(QStringLiteral("X 0000  Y 0000  ")));
  lblKosten = Named(new QLabel, "lblKosten");
  lblHinweis = Named(new QLabel, "lblHinweis");
  ctlZoom = Named(new QSlider(Qt::Horizontal), "ctlZoom");
  ctlZoom->setAccessibleName(tr("Zoom"));
  ctlZoom->setRange(1, Display->MaxZoom());
  ctlZoom->setFixedWidth(120);
  lblZoom = Named(new QLabel, "lblZoom");
  statusBar()->addWidget(lblKoordinaten);
  statusBar()->addWidget(lblKosten);
  statusBar()->addWidget(lblHinweis);
  statusBar()->addPermanentWidget(new QLabel(tr("Zoom:")));
  statusBar()->addPermanentWidget(ctlZoom);
  statusBar()->addPermanentWidget(lblZoom);
  connect(ctlZoom, &QSlider::valueChanged, this,
          [this](int zoom) { SetZoom(zoom, Display->visibleRegion().boundingRect().center()); });
}

void frmGrafik::ConnectPanels() {
  connect(geometry_, &GeometryPanel::BoxTyped, this, &frmGrafik::TypeBox);
  connect(style_, &StylePanel::PenModeChosen, this, &frmGrafik::ChoosePenMode);
  connect(style_, &StylePanel::FilledChosen, this, &frmGrafik::ChooseFilled);
  connect(style_, &StylePanel::TextChosen, this, &frmGrafik::ChooseText);
  connect(Display, &DrawingCanvas::Pointed, this, [this](Point p) {
    lblKoordinaten->setText(QStringLiteral("X %1  Y %2").arg(p.x).arg(p.y));
  });
  connect(Display, &DrawingCanvas::MoveWanted, this, &frmGrafik::MoveSelection);
  connect(Display, &DrawingCanvas::ZoomWanted, this,
          [this](int steps, QPointF position) { SetZoom(Display->Zoom() + steps, position); });
}

void frmGrafik::showEvent(QShowEvent* event) {
  OptionsChanged();
  Display->setFocus();
  QMainWindow::showEvent(event);
}

TerminalTraits frmGrafik::Terminal() const {
  TerminalTraits traits = host_.Terminal();
  traits.displayHeight = Display->DisplayHeight();
  return traits;
}

std::optional<std::string> frmGrafik::TryCreatePic() {
  TerminalTraits traits = Terminal();
  Translation translation = kelvo::CreatePic(document_.Current(), traits);
  for (const std::string& message : translation.messages) person_.Message(message);
  if (translation.failed) return std::nullopt;
  return std::move(translation.text);
}

void frmGrafik::SetDisplaySize(int width, int height) {
  document_.Commit({});
  Display->SetDisplaySize(width, height);
  ctlZoom->setMaximum(Display->MaxZoom());
  SetZoom(Display->Zoom(), {});
  Q_EMIT DrawingChanged();
}

// ---- Following the drawing ----

void frmGrafik::OptionsChanged() {
  Display->SetBlackThreshold(host_.Terminal().blackThreshold);
  ShowCosts();
  Q_EMIT DrawingChanged();
}

void frmGrafik::ShowState() {
  const Drawing& drawing = document_.Shown();
  const bool selected = AnySelected(drawing);
  geometry_->ShowBox(SelectionBounds(drawing), selected);
  for (QAction* action : selectionActions_) action->setEnabled(selected);
  mnuGrafikRueckgaengig->setEnabled(document_.CanUndo());
  mnuGrafikWiederholen->setEnabled(document_.CanRedo());
  setWindowTitle(tr("Grafik") + (document_.Unsaved() ? QStringLiteral(" *") : QString()));
  ShowSelectedStyle();
}

void frmGrafik::ShowSelectedStyle() {
  const Drawing& drawing = document_.Current();
  const auto selected = std::find_if(drawing.begin(), drawing.end(),
                                     [](const DrawingObject& object) { return object.selected; });
  if (selected == drawing.end() || selected->kind == Kind::Group) return;
  ObjectStyle style = style_->Style();
  if (selected->kind == Kind::Text) {
    style.text = selected->style.value_or(TextAttributes());
  } else {
    style.penMode = selected->penMode;
    if (CanBeFilled(selected->kind)) style.filled = selected->filled;
  }
  style_->ShowStyle(style);
}

QImage frmGrafik::Pixels() const {
  PixelMap map(Display->DisplayWidth(), Display->DisplayHeight());
  PaintDrawing(map, document_.Current(), fonts_, host_.Terminal().blackThreshold);
  return ToImage(map);
}

QString frmGrafik::CostsText() const {
  const DrawingCosts costs =
      CostsOf(document_.Current(), Terminal(), Display->DisplayWidth(), host_.BitsPerSecond());
  const QString seconds = QLocale(QLocale::German).toString(costs.seconds, 'f', 2);
  return tr("%1 Zeichen%2 · EEPROM: %3 Byte als Makro, %4 Byte als Bitmap")
      .arg(costs.wireBytes)
      .arg(host_.BitsPerSecond() > 0 ? tr(", %1 s").arg(seconds) : QString())
      .arg(costs.macroBytes)
      .arg(costs.bitmapBytes);
}

void frmGrafik::ShowCosts() {
  lblKosten->setText(CostsText());
  const std::size_t unsent = CountKind(document_.Current(), Kind::Vertices);
  lblHinweis->setText(unsent == 0 ? QString() : tr("Nicht gesendete Vielecke: %1").arg(unsent));
}

void frmGrafik::Edited() {
  sendPending_ = true;
  ShowCosts();
  draftTimer_.start();
  Q_EMIT DrawingChanged();
}

void frmGrafik::SetAutomaticSend(bool on) {
  automaticSend_ = on;
  sendTimer_.SetEnabled(on);
}

// Between two ticks any number of changes goes out as one drawing. Without a port nothing is lost:
// the drawing stays pending.
void frmGrafik::SendTick() {
  if (!automaticSend_ || !sendPending_ || !host_.CanSend()) return;
  sendPending_ = false;
  host_.Send();
}

// ---- Zoom ----

// What lies under `anchor` stays where it is on the screen.
void frmGrafik::SetZoom(int zoom, QPointF anchor) {
  const QSize before = Display->size();
  const int old = Display->Zoom();
  Display->SetZoom(zoom);
  ShowZoom();
  const QPointF moved = anchor * Display->Zoom() / old - anchor;
  scroll_->horizontalScrollBar()->setValue(scroll_->horizontalScrollBar()->value() +
                                           qRound(moved.x()));
  scroll_->verticalScrollBar()->setValue(scroll_->verticalScrollBar()->value() + qRound(moved.y()));
  if (host_.FensterMitZoomen()) FollowZoom(before);
}

void frmGrafik::ShowZoom() {
  const QSignalBlocker quiet(ctlZoom);
  ctlZoom->setValue(Display->Zoom());
  lblZoom->setText(QStringLiteral("%1 x").arg(Display->Zoom()));
}

void frmGrafik::FollowZoom(QSize before) {
  if (isMaximized() || isFullScreen()) return;
  const QSize room = screen()->availableSize();
  resize((size() + Display->size() - before).boundedTo(room).expandedTo(minimumSizeHint()));
}

}  // namespace kelvo
