#include "graphics/frmGrafik.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <bitset>

#include "graphics/costs.h"
#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/pixel_image.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kFirstZoom = 3;
constexpr std::chrono::milliseconds kDraftDelay(1000);
constexpr std::chrono::milliseconds kLineInterval(200);
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

// What of Needs the selection offers.
std::bitset<8> OfferedBy(const Drawing& drawing) {
  std::bitset<8> offered;
  const auto offer = [&offered](Needs needs) { offered.set(static_cast<std::size_t>(needs)); };
  const auto meet = [&offer](const DrawingObject& object) {
    if (object.kind == Kind::Group) offer(Needs::Group);
    if (object.kind == Kind::Picture) offer(Needs::Picture);
    if (object.kind == Kind::Vertices) offer(Needs::Shape);
  };
  std::size_t selected = 0;
  for (const DrawingObject& object : drawing) {
    if (!object.selected) continue;
    ++selected;
    offer(Needs::Selection);
    ForEachMember(object, meet);
  }
  const auto only = OnlySelected(drawing);
  if (only && drawing[*only].kind == Kind::Picture) offer(Needs::OnePicture);
  if (selected >= 3) offer(Needs::Three);  // two have nothing between them
  if (selected > 0 && selected < drawing.size()) offer(Needs::Others);
  return offered;
}

}  // namespace

frmGrafik::frmGrafik(GraphicsHost& host, Operator& person, const DeviceFonts& fonts,
                     Timer& sendTimer, QSize display, const std::string& draftPath)
    : host_(host),
      person_(person),
      fonts_(fonts),
      sendTimer_(sendTimer),
      draft_(draftPath, "entwurf.wmf") {
  setObjectName(QStringLiteral("frmGrafik"));
  setAcceptDrops(true);
  MakeCanvas(display);
  MakePanels();
  MakeObjectList();
  MakeSymbolPanel();
  MakeStatusBar();
  MakeTools();
  MakeMenus();
  MakeToolbar();
  MakeContextMenu();
  ConnectPanels();
  WatchFields();
  connect(&document_, &DrawingDocument::Changed, this, &frmGrafik::ShowState);
  // What a tool has begun refers to the drawing as it was.
  connect(&document_, &DrawingDocument::Replaced, this, [this] {
    if (tool_ && !desk_->Commits()) tool_->Cancel();
  });
  connect(&document_, &DrawingDocument::Edited, this, &frmGrafik::Edited);
  Named(&draftTimer_, "tmrEntwurf")->setSingleShot(true);
  draftTimer_.setInterval(kDraftDelay);
  connect(&draftTimer_, &QTimer::timeout, this, &frmGrafik::KeepDraft);
  sendTimer_.SetInterval(kSendInterval);
  sendTimer_.SetHandler([this] { SendTick(); });
  OptionsChanged();
  ShowState();
  RestoreBars();
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
  setCentralWidget(MakeRulers());
}

void frmGrafik::MakePanels() {
  style_ = new StylePanel;
  geometry_ = new GeometryPanel(counting_);
  auto* panel = new QWidget;
  auto* layout = new QVBoxLayout(panel);
  curve_ = new CurvePanel;
  layout->addWidget(geometry_);
  layout->addWidget(curve_);
  layout->addWidget(style_);
  layout->addStretch();
  typing_ = new TextTyping(document_, *Display, *style_, fonts_);
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
  lblHinweis->setMinimumWidth(1);  // a hint must not widen the window
  ctlZoom = Named(new QSlider(Qt::Horizontal), "ctlZoom");
  ctlZoom->setAccessibleName(tr("Zoom"));
  ctlZoom->setRange(1, Display->MaxZoom());
  ctlZoom->setFixedWidth(120);
  ctlZoom->installEventFilter(this);  // Esc goes back to the canvas
  lblZoom = Named(new QLabel, "lblZoom");
  statusBar()->addWidget(lblKoordinaten);
  statusBar()->addWidget(lblKosten);
  statusBar()->addWidget(lblHinweis);
  lblSenden = Named(new QLabel, "lblSenden");
  statusBar()->addWidget(lblSenden);
  lineTimer_.setInterval(kLineInterval);
  connect(&lineTimer_, &QTimer::timeout, this, &frmGrafik::ShowSending);
  lblZaehlung = Named(new QLabel, "lblZaehlung");
  lblZaehlung->setContentsMargins(0, 0, 12, 0);
  statusBar()->addPermanentWidget(lblZaehlung);
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
  connect(Display, &DrawingCanvas::Pointed, this, &frmGrafik::ShowPointer);
  connect(typing_, &TextTyping::CaretMoved, this,
          [this](QPoint at) { scroll_->ensureVisible(at.x(), at.y(), 8, 8); });
  connect(typing_, &TextTyping::inputRejected, this, [this] { person_.Beep(); });
  connect(Display, &DrawingCanvas::MoveWanted, this, &frmGrafik::MoveSelection);
  connect(Display, &DrawingCanvas::WalkWanted, this, &frmGrafik::WalkObjects);
  connect(Display, &DrawingCanvas::ToolLeft, this, &frmGrafik::LeaveTool);
  connect(Display, &DrawingCanvas::BackWanted, this, &frmGrafik::StepBack);
  connect(Display, &DrawingCanvas::PanWanted, this, [this](QPoint way) {
    scroll_->horizontalScrollBar()->setValue(scroll_->horizontalScrollBar()->value() - way.x());
    scroll_->verticalScrollBar()->setValue(scroll_->verticalScrollBar()->value() - way.y());
  });
  // The view follows what is dragged over its edge.
  connect(Display, &DrawingCanvas::Dragged, this,
          [this](QPoint at) { scroll_->ensureVisible(at.x(), at.y(), 8, 8); });
  connect(curve_, &CurvePanel::Complete, Display, [this] { Display->setFocus(); });
  connect(geometry_, &GeometryPanel::Complete, Display, [this] { Display->setFocus(); });
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
  typing_->End();
  TerminalTraits traits = Terminal();
  Translation translation = kelvo::CreatePic(document_.Whole(), traits);
  for (const std::string& message : translation.messages) person_.Message(message);
  if (translation.failed) return std::nullopt;
  return std::move(translation.text);
}

void frmGrafik::SetDisplaySize(int width, int height) {
  typing_->End();
  document_.Replace({});
  Display->SetDisplaySize(width, height);
  CountLikeCommands(counting_.LikeCommands());
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
  ShowGeometry();
  const auto offered = OfferedBy(drawing);
  for (const auto& [action, needs] : needing_) {
    action->setEnabled(offered.test(static_cast<std::size_t>(needs)));
  }
  mnuGrafikRueckgaengig->setEnabled(document_.CanUndo() || typing_->Active() ||
                                    (tool_ && tool_->Begun()));
  mnuGrafikWiederholen->setEnabled(document_.CanRedo() || typing_->Active());
  const QString name = QString::fromStdString(FileName());
  setWindowTitle((name.isEmpty() ? tr("Grafik") : tr("%1 – Grafik").arg(name)) +
                 (document_.Unsaved() ? QStringLiteral(" *") : QString()));
  ShowSelectedStyle();
  ShowPointActions();
  ShowHints();
}

void frmGrafik::ShowHints() {
  findChild<QAction*>(QStringLiteral("mnuGrafikGruppeVerlassen"))->setEnabled(document_.InGroup());
  QStringList hints;
  if (document_.InGroup()) hints << tr("In der Gruppe – Esc verlässt sie");
  if (document_.Picked()) hints << PointText();
  const std::size_t unsent = CountKind(document_.Whole(), Kind::Vertices);
  if (unsent > 0) hints << tr("Nicht gesendete Vielecke: %1").arg(unsent);
  lblHinweis->setText(hints.join(QStringLiteral(" · ")));
  lblHinweis->setToolTip(lblHinweis->text());
}

void frmGrafik::ShowSelectedStyle() {
  style_->ShowStyle(CommonStyleOf(typing_->Active() ? document_.Shown() : document_.Current()));
}

QImage frmGrafik::Pixels(const Drawing& drawing) const {
  PixelMap map(Display->DisplayWidth(), Display->DisplayHeight());
  PaintDrawing(map, drawing, fonts_, host_.Terminal().blackThreshold);
  return ToImage(map);
}

QString frmGrafik::CostsText() const {
  const DrawingCosts costs = CostsOf(document_.Whole(), Terminal(), host_.BitsPerSecond());
  const QString seconds = QLocale(QLocale::German).toString(costs.seconds, 'f', 2);
  const QString bitmap = costs.bitmapBytes ? tr("das Bild %1 Byte").arg(*costs.bitmapBytes)
                                           : tr("kein Bild zu speichern");
  return tr("%1 Zeichen%2 · EEPROM: %3 Byte als Makro, %4")
      .arg(costs.wireBytes)
      .arg(host_.BitsPerSecond() > 0 ? tr(", %1 s").arg(seconds) : QString())
      .arg(costs.macroBytes)
      .arg(bitmap);
}

void frmGrafik::ShowCosts() { lblKosten->setText(CostsText()); }

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

// Between two ticks any number of changes goes out as one drawing, the newest, and not before the
// line has taken the one before. Without a port nothing is lost: the drawing stays pending.
void frmGrafik::SendTick() {
  if (automaticSend_ && sendPending_ && host_.CanSend()) SendNow();
}

void frmGrafik::SendNow() {
  if (!host_.Send()) return;
  sendPending_ = false;
  lineTimer_.start();
  ShowSending();
}

void frmGrafik::ShowSending() {
  const bool sending = host_.Sending();
  lblSenden->setText(sending ? tr("wird gesendet …") : QString());
  if (!sending) lineTimer_.stop();
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
