#include <QActionGroup>
#include <QLabel>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QSpinBox>
#include <QToolBar>
#include <algorithm>

#include "base/guard.h"
#include "graphics/frmGrafik.h"
#include "graphics/transforms.h"
#include "widgets/form.h"
#include "widgets/symbol.h"

namespace kelvo {

/// A menu entry: a name of nullptr is a separator.
struct frmGrafik::Entry {
  const char* name;
  const char* text;
  const char* keys;
  std::function<void(frmGrafik&)> handler;
  Needs needs;
};

const frmGrafik::Entry frmGrafik::kFileEntries[] = {
    {"mnuGrafikNeu", "&Neu", "Ctrl+N", &frmGrafik::mnuGrafikNeu_Click, Needs::Nothing},
    {"mnuGrafikLaden", "&Laden …", "Ctrl+O", &frmGrafik::mnuGrafikLaden_Click, Needs::Nothing},
    {"mnuGrafikDatenbank", "Aus der &Datenbank öffnen …", "Ctrl+Alt+O",
     &frmGrafik::mnuGrafikDatenbank_Click, Needs::Nothing},
    {"mnuGrafikSpeichern", "&Speichern", "Ctrl+S", &frmGrafik::mnuGrafikSpeichern_Click,
     Needs::Nothing},
    {"mnuGrafikSpeichernUnter", "Speichern &unter …", "",
     [](frmGrafik& window) { window.SaveDrawing(); }, Needs::Nothing},
    {"mnuGrafikPng", "Als PN&G exportieren …", "", &frmGrafik::mnuGrafikPng_Click, Needs::Nothing},
    {"mnuGrafikDrucken", "D&rucken …", "Ctrl+P", &frmGrafik::mnuGrafikDrucken_Click,
     Needs::Nothing},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikZeichnung", "&Zeichnung einfügen …", "", &frmGrafik::mnuGrafikZeichnung_Click,
     Needs::Nothing},
    {"mnuGrafikBild", "&Bild einfügen …", "Ctrl+I", &frmGrafik::mnuGrafikBild_Click,
     Needs::Nothing},
    {"mnuGrafikBildEEProm", "Bild ins EE&PROM schreiben …", "",
     &frmGrafik::mnuGrafikBildEEProm_Click, Needs::Nothing},
    {"mnuGrafikBildGeprueft", "Bild &geprüft ins EEPROM schreiben …", "",
     [](frmGrafik& window) {
       window.host_.SaveBMPinEEProm(GraphicsHost::BitmapTo::SelectedProven);
     },
     Needs::Nothing},
    {"mnuGrafikBildAktive", "Bild an &aktive Terminals schreiben …", "",
     [](frmGrafik& window) { window.host_.SaveBMPinEEProm(GraphicsHost::BitmapTo::Many); },
     Needs::Nothing},
    {"mnuGrafikSenden", "Zum Terminal s&enden", "F9", &frmGrafik::mnuGrafikSenden_Click,
     Needs::Nothing},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikSchliessen", "S&chließen", "Ctrl+W", &frmGrafik::mnuGrafikSchliessen_Click,
     Needs::Nothing},
};

const frmGrafik::Entry frmGrafik::kEditEntries[] = {
    {"mnuGrafikRueckgaengig", "&Rückgängig", "Ctrl+Z", &frmGrafik::mnuGrafikRueckgaengig_Click,
     Needs::Nothing},
    {"mnuGrafikWiederholen", "&Wiederholen", "Ctrl+Y", &frmGrafik::mnuGrafikWiederholen_Click,
     Needs::Nothing},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikAusschneiden", "&Ausschneiden", "Ctrl+X", &frmGrafik::mnuGrafikAusschneiden_Click,
     Needs::Selection},
    {"mnuGrafikKopieren", "&Kopieren", "Ctrl+C", &frmGrafik::mnuGrafikKopieren_Click,
     Needs::Selection},
    {"mnuGrafikEinfuegen", "&Einfügen", "Ctrl+V", &frmGrafik::mnuGrafikEinfuegen_Click,
     Needs::Nothing},
    {"mnuGrafikDuplizieren", "&Duplizieren", "Ctrl+D", &frmGrafik::mnuGrafikDuplizieren_Click,
     Needs::Selection},
    {"mnuGrafikLoeschen", "&Löschen", "Del", &frmGrafik::mnuGrafikLoeschen_Click, Needs::Selection},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikAlles", "Alles a&uswählen", "Ctrl+A", &frmGrafik::mnuGrafikAlles_Click,
     Needs::Nothing},
};

const frmGrafik::Entry frmGrafik::kObjectEntries[] = {
    {"mnuGrafikGruppieren", "&Gruppieren", "Ctrl+G", &frmGrafik::mnuGrafikGruppieren_Click,
     Needs::Selection},
    {"mnuGrafikAufloesen", "Gruppe &auflösen", "Ctrl+Shift+G", &frmGrafik::mnuGrafikAufloesen_Click,
     Needs::Group},
    {"mnuGrafikGruppeOeffnen", "Gruppe ö&ffnen", "",
     [](frmGrafik& window) { window.OpenSelected(); }, Needs::Group},
    {"mnuGrafikGruppeVerlassen", "Gruppe verlasse&n", "",
     [](frmGrafik& window) { window.document_.Leave(); }, Needs::Nothing},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikSpiegelnX", "Waagerecht s&piegeln", "Ctrl+H",
     [](frmGrafik& window) { window.Edit([](Drawing& d) { FlipSelected(d, Axis::X); }); },
     Needs::Selection},
    {"mnuGrafikSpiegelnY", "Senkrecht spiege&ln", "Ctrl+J",
     [](frmGrafik& window) { window.Edit([](Drawing& d) { FlipSelected(d, Axis::Y); }); },
     Needs::Selection},
    {"mnuGrafikDrehen", "Um 90° &drehen", "Ctrl+T",
     [](frmGrafik& window) { window.Edit(TurnSelected); }, Needs::Selection},
    {"mnuGrafikBildBearbeiten", "Bild &bearbeiten …", "Ctrl+Shift+I",
     &frmGrafik::mnuGrafikBildBearbeiten_Click, Needs::OnePicture},
    {"mnuGrafikInvertieren", "Bild in&vertieren", "",
     [](frmGrafik& window) { window.Edit(InvertSelected); }, Needs::Picture},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikText", "Te&xt eingeben …", "Ctrl+E", &frmGrafik::mnuGrafikText_Click,
     Needs::Nothing},
    {"mnuGrafikPunktEinfuegen", "Punkt einfügen", "Ins", &frmGrafik::mnuGrafikPunktEinfuegen_Click,
     Needs::Nothing},
    {"mnuGrafikPunktEntfernen", "Punkt entfernen", "Ctrl+Del",
     &frmGrafik::mnuGrafikPunktEntfernen_Click, Needs::Nothing},
    {"mnuGrafikUmwandeln", "Vielecke in Linien&züge umwandeln", "",
     &frmGrafik::mnuGrafikUmwandeln_Click, Needs::Shape},
    {"mnuGrafikVieleckBild", "Vielecke in Bil&der umwandeln", "",
     [](frmGrafik& window) { window.MakePicture(MakePicturesOfShapes); }, Needs::Shape},
    {"mnuGrafikInBild", "Auswahl in &Bild umwandeln", "Ctrl+B",
     [](frmGrafik& window) { window.MakePicture(MakePictureOfSelected); }, Needs::Selection},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikSymbolMerken", "Auswahl als Symbol &merken …", "",
     &frmGrafik::mnuGrafikSymbolMerken_Click, Needs::Selection},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikVorn", "Nach &vorn", "Ctrl+Shift+PgUp",
     [](frmGrafik& window) { window.Reorder(Order::ToFront); }, Needs::Others},
    {"mnuGrafikHoeher", "Eine Ebene &höher", "Ctrl+PgUp",
     [](frmGrafik& window) { window.Reorder(Order::Forward); }, Needs::Others},
    {"mnuGrafikTiefer", "Eine Ebene &tiefer", "Ctrl+PgDown",
     [](frmGrafik& window) { window.Reorder(Order::Backward); }, Needs::Others},
    {"mnuGrafikHinten", "Nach h&inten", "Ctrl+Shift+PgDown",
     [](frmGrafik& window) { window.Reorder(Order::ToBack); }, Needs::Others},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikLinks", "&Links ausrichten", "Ctrl+Shift+L",
     [](frmGrafik& window) { window.Align(Alignment::Left); }, Needs::Selection},
    {"mnuGrafikMitteX", "Waagerecht &mittig", "Ctrl+Shift+M",
     [](frmGrafik& window) { window.Align(Alignment::CentreX); }, Needs::Selection},
    {"mnuGrafikRechts", "&Rechts ausrichten", "Ctrl+Shift+R",
     [](frmGrafik& window) { window.Align(Alignment::Right); }, Needs::Selection},
    {"mnuGrafikOben", "&Oben ausrichten", "Ctrl+Shift+O",
     [](frmGrafik& window) { window.Align(Alignment::Top); }, Needs::Selection},
    {"mnuGrafikMitteY", "&Senkrecht mittig", "Ctrl+Shift+S",
     [](frmGrafik& window) { window.Align(Alignment::CentreY); }, Needs::Selection},
    {"mnuGrafikUnten", "&Unten ausrichten", "Ctrl+Shift+U",
     [](frmGrafik& window) { window.Align(Alignment::Bottom); }, Needs::Selection},
    {nullptr, "", "", nullptr, Needs::Nothing},
    {"mnuGrafikVerteilenX", "Waagerecht v&erteilen", "Ctrl+Shift+H",
     [](frmGrafik& window) { window.Distribute(Axis::X); }, Needs::Three},
    {"mnuGrafikVerteilenY", "Sen&krecht verteilen", "Ctrl+Shift+V",
     [](frmGrafik& window) { window.Distribute(Axis::Y); }, Needs::Three},
};

template <std::size_t count>
void frmGrafik::AddEntries(QMenu* menu, const Entry (&entries)[count]) {
  for (const Entry& entry : entries) {
    if (entry.name == nullptr) {
      menu->addSeparator();
      continue;
    }
    QAction* const action = Named(menu->addAction(QString::fromUtf8(entry.text)), entry.name);
    action->setShortcut(QKeySequence(QString::fromLatin1(entry.keys)));
    connect(action, &QAction::triggered, this, [this, &entry] {
      if (typing_->TakeCommand(entry.name)) return;
      typing_->End();
      Guarded(person_, entry.name, [&] { entry.handler(*this); });
    });
    if (entry.needs != Needs::Nothing) needing_.emplace_back(action, entry.needs);
  }
}

void frmGrafik::MakeMenus() {
  AddEntries(Named(menuBar()->addMenu(tr("&Datei")), "mnuGrafikDatei"), kFileEntries);
  QMenu* const edit = Named(menuBar()->addMenu(tr("&Bearbeiten")), "mnuGrafikBearbeiten");
  AddEntries(edit, kEditEntries);
  AddEntries(Named(menuBar()->addMenu(tr("&Objekt")), "mnuGrafikObjekt"), kObjectEntries);
  Named(menuBar()->addMenu(tr("&Werkzeug")), "mnuGrafikWerkzeug")->addActions(tools_->actions());
  MakeViewMenu();
  mnuGrafikRueckgaengig = findChild<QAction*>(QStringLiteral("mnuGrafikRueckgaengig"));
  mnuGrafikWiederholen = findChild<QAction*>(QStringLiteral("mnuGrafikWiederholen"));
}

void frmGrafik::MakeViewMenu() {
  QMenu* const view = Named(menuBar()->addMenu(tr("&Ansicht")), "mnuGrafikAnsicht");
  const auto addZoom = [&](const char* name, const QString& text, const char* keys, int steps) {
    QAction* const action = Named(view->addAction(text), name);
    action->setShortcut(QKeySequence(QString::fromLatin1(keys)));
    connect(action, &QAction::triggered, this, [this, steps] {
      SetZoom(Display->Zoom() + steps, Display->visibleRegion().boundingRect().center());
    });
  };
  const auto addView = [&](const char* name, const QString& text, const char* keys, auto handler) {
    QAction* const action = Named(view->addAction(text), name);
    action->setShortcut(QKeySequence(QString::fromLatin1(keys)));
    connect(action, &QAction::triggered, this, handler);
  };
  addZoom("mnuGrafikGroesser", tr("&Größer"), "Ctrl++", 1);
  addZoom("mnuGrafikKleiner", tr("&Kleiner"), "Ctrl+-", -1);
  QAction* const fit = Named(view->addAction(tr("&Einpassen")), "mnuGrafikEinpassen");
  fit->setShortcut(QKeySequence(QStringLiteral("Ctrl+0")));
  connect(fit, &QAction::triggered, this, [this] {
    const QSize room = scroll_->viewport()->size();
    const QSize one = Display->sizeHint() / Display->Zoom();
    SetZoom(std::min(room.width() / one.width(), room.height() / one.height()), {});
  });
  addView("mnuGrafikEinsZuEins", tr("&1 : 1"), "Ctrl+1", [this] { SetZoom(1, {}); });
  addView("mnuGrafikZoomAuswahl", tr("A&uswahl zeigen"), "Ctrl+2", [this] { ShowSelection(); });
  view->addSeparator();
  mnuGrafikRaster = Named(view->addAction(tr("Am &Raster einrasten")), "mnuGrafikRaster");
  mnuGrafikRaster->setCheckable(true);
  mnuGrafikRaster->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
  MakeViewChoices(view);
  MakeListEntries(view);
}

void frmGrafik::MakeTools() {
  const auto changePicture = [this] {
    // When the click is over.
    QTimer::singleShot(0, this, [this] {
      Guarded(person_, "mnuGrafikBildBearbeiten", [this] { mnuGrafikBildBearbeiten_Click(); });
    });
  };
  desk_ = std::make_unique<ToolDesk>(document_, *Display, *style_, *curve_, fonts_, *typing_,
                                     changePicture);
  const struct {
    ToolKind kind;
    Symbol symbol;
    const char* name;
    const char* text;
    const char* tip;
    const char* key;
  } rows[] = {
      {ToolKind::Select, Symbol::Select, "toolAuswahl", "&Auswählen",
       "Auswählen, verschieben, Größe ändern", "F2"},
      {ToolKind::Line, Symbol::Line, "toolLinie", "&Linie", "Linie (Umschalt: acht Richtungen)",
       "F3"},
      {ToolKind::Rectangle, Symbol::Rectangle, "toolRechteck", "&Rechteck",
       "Rechteck (Umschalt: Quadrat)", "F4"},
      {ToolKind::RoundedRectangle, Symbol::RoundedRectangle, "toolRundrechteck",
       "Ab&gerundetes Rechteck", "Rechteck mit runden Ecken (Umschalt: Quadrat)", "Shift+F4"},
      {ToolKind::Ellipse, Symbol::Ellipse, "toolEllipse", "&Ellipse", "Ellipse (Umschalt: Kreis)",
       "F5"},
      {ToolKind::Arc, Symbol::Arc, "toolBogen", "&Bogen",
       "Bogen einer Ellipse, auch Sektor (Umschalt: Kreis)", "Shift+F5"},
      {ToolKind::Polyline, Symbol::Polyline, "toolLinienzug", "Linien&zug",
       "Linienzug (Doppelklick oder Eingabetaste beendet, Strg+Z nimmt einen Punkt zurück)", "F6"},
      {ToolKind::Text, Symbol::Letter, "toolText", "&Text", "Text", "F7"},
      {ToolKind::Pencil, Symbol::Pencil, "toolStift", "&Stift", "Stift: einzelne Punkte setzen",
       "F8"},
      {ToolKind::Eraser, Symbol::Eraser, "toolRadierer", "Ra&dierer",
       "Radierer: einzelne Punkte löschen", "F10"},
      {ToolKind::Fill, Symbol::Fill, "toolFuellen", "&Füllen",
       "Füllen: die zusammenhängende Fläche um den Punkt", "F11"},
  };
  auto* bar = Named(new QToolBar(tr("Werkzeuge")), "barWerkzeuge");
  tools_ = new QActionGroup(this);
  for (const auto& row : rows) {
    QAction* const action =
        Named(bar->addAction(SymbolIcon(row.symbol), QString::fromUtf8(row.text)), row.name);
    action->setCheckable(true);
    action->setShortcut(QKeySequence(QString::fromLatin1(row.key)));
    action->setToolTip(QStringLiteral("%1 [%2]").arg(
        QString::fromUtf8(row.tip), action->shortcut().toString(QKeySequence::NativeText)));
    tools_->addAction(action);
    connect(action, &QAction::triggered, this, [this, kind = row.kind] { TakeTool(kind); });
  }
  addToolBar(Qt::LeftToolBarArea, bar);
  toolAuswahl = tools_->actions().first();
  toolAuswahl->setChecked(true);
  TakeTool(ToolKind::Select);
}

void frmGrafik::MakeToolbar() {
  auto* bar = Named(new QToolBar(tr("Befehle")), "barBefehle");
  const std::pair<const char*, Symbol> commands[] = {
      {"mnuGrafikNeu", Symbol::New},          {"mnuGrafikLaden", Symbol::Load},
      {"mnuGrafikSpeichern", Symbol::Save},   {"mnuGrafikBild", Symbol::Picture},
      {"mnuGrafikSenden", Symbol::Send},      {"mnuGrafikRueckgaengig", Symbol::Undo},
      {"mnuGrafikWiederholen", Symbol::Redo}, {"mnuGrafikGruppieren", Symbol::Group}};
  for (const auto& [name, symbol] : commands) {
    auto* const action = findChild<QAction*>(QString::fromLatin1(name));
    action->setIcon(SymbolIcon(symbol));
    bar->addAction(action);
  }
  bar->addSeparator();
  mnuGrafikRaster->setIcon(SymbolIcon(Symbol::Grid));
  bar->addAction(mnuGrafikRaster);
  txtRaster = Named(new QSpinBox, "txtRaster");
  txtRaster->setRange(2, 64);
  txtRaster->setValue(8);
  txtRaster->setSuffix(tr(" Punkte"));
  txtRaster->setAccessibleName(tr("Rasterweite"));
  bar->addWidget(txtRaster);
  mnuGrafikFang->setIcon(SymbolIcon(Symbol::Snap));
  bar->addAction(mnuGrafikFang);
  addToolBar(Qt::TopToolBarArea, bar);
  const auto change = [this] {
    const bool on = mnuGrafikRaster->isChecked();
    desk_->SetGridStep(on ? txtRaster->value() : 1);
    Display->SetGrid(on ? txtRaster->value() : 1, on);
  };
  connect(mnuGrafikRaster, &QAction::toggled, this, change);
  connect(txtRaster, &QSpinBox::valueChanged, this, change);
}

// Of the selecting tool; to the others the right button says that something is complete.
void frmGrafik::MakeContextMenu() {
  Display->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(Display, &QWidget::customContextMenuRequested, this, [this](QPoint at) {
    if (!toolAuswahl->isChecked()) return;
    const Point point = Display->ToDrawing(at);
    SelectUnder(point);
    PickUnder(point);
    const QScopedValueRollback<std::optional<Point>> here(menuPoint_, point);
    QMenu menu;
    for (const char* name : {"mnuGrafikBearbeiten", "mnuGrafikObjekt"}) {
      menu.addActions(findChild<QMenu*>(QString::fromLatin1(name))->actions());
      menu.addSeparator();
    }
    menu.exec(Display->mapToGlobal(at));
  });
}

}  // namespace kelvo
