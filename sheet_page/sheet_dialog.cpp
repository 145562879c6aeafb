#include "sheet_page/sheet_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "bus/tick_list.h"
#include "sheet_page/sheet_output.h"
#include "sheet_page/sheet_view.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr char kPdfFilter[] = "PDF |*.pdf";
constexpr int kSliceMs = 20;  // of work, before the operator has another turn

// The last part of a device's path is what people call it.
QString DeviceText(const std::string& device) {
  const QString name = QFileInfo(Text(device)).fileName();
  return name.isEmpty() ? SheetDialog::tr("kein Anschluss") : name;
}

}  // namespace

SheetDialog::SheetDialog(Services services, QWidget* parent)
    : QDialog(parent), services_(std::move(services)) {
  Named(this, "frmDatenblatt");
  setWindowTitle(tr("Datenblatt"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  auto* columns = new QHBoxLayout;
  columns->addLayout(MakeChoice(), 1);
  columns->addLayout(MakePreview(), 2);
  auto* page = new QVBoxLayout(this);
  page->addLayout(columns, 1);
  page->addLayout(MakeButtons());
  ConnectControls();
  KeepPlace(this);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 165, fontMetrics().lineSpacing() * 42});
}

SheetDialog::~SheetDialog() = default;

QLayout* SheetDialog::MakeChoice() {
  ctlDatenblattListe =
      Named(new TickList({tr("Terminal"), tr("Anschluss")}, {}), "ctlDatenblattListe");
  ctlDatenblattListe->setAccessibleName(tr("Terminals"));
  // Of a long name the middle is left out, but not where the Terminal is.
  ctlDatenblattListe->setTextElideMode(Qt::ElideMiddle);
  QHeaderView& header = *ctlDatenblattListe->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  header.setSectionResizeMode(1, QHeaderView::ResizeToContents);
  cmdDatenblattAlle = MakeButton("cmdDatenblattAlle", tr("&Alle"));
  cmdDatenblattKeine = MakeButton("cmdDatenblattKeine", tr("K&eines"));
  chkDatenblattDatum =
      Named(new QCheckBox(tr("Datum der Erstellung dr&ucken")), "chkDatenblattDatum");
  auto* column = new QVBoxLayout;
  column->addWidget(LabelFor(ctlDatenblattListe, tr("&Terminals:")));
  column->addWidget(ctlDatenblattListe, 1);
  column->addLayout(ButtonRow({cmdDatenblattAlle, cmdDatenblattKeine}));
  column->addLayout(MakeChapters());
  column->addWidget(chkDatenblattDatum);
  return column;
}

QLayout* SheetDialog::MakeChapters() {
  auto* group = new QGroupBox(tr("Kapitel"));
  auto* rows = new QVBoxLayout(group);
  const auto add = [&](SheetChapter chapter, const QString& caption) {
    const int index = static_cast<int>(chapter);
    auto* const box = Named(new QCheckBox(caption), ArrayName("chkDatenblattKapitel", index));
    box->setChecked(true);
    box->setToolTip(Text(ChapterTitle(chapter)));
    rows->addWidget(box);
    chkDatenblattKapitel[chapter] = box;
  };
  add(SheetChapter::Interfaces, tr("Sc&hnittstellen, Konfiguration"));
  add(SheetChapter::Matrix, tr("Tasten&feld"));
  add(SheetChapter::At, tr("AT-Tastatu&r"));
  add(SheetChapter::Macros, tr("&Makros"));
  add(SheetChapter::Bitmaps, tr("&Bitmaps"));
  add(SheetChapter::Eeprom, tr("EEPR&OM"));
  add(SheetChapter::Readings, tr("Ant&worten des Terminals"));
  add(SheetChapter::Drawings, tr("&Zeichnungen der Datenbank"));
  add(SheetChapter::Database, tr("Übr&ige Sätze der Datenbank"));
  add(SheetChapter::Characters, tr("Zeichenerk&lärung"));
  auto* column = new QVBoxLayout;
  column->addWidget(group);
  return column;
}

QLayout* SheetDialog::MakePreview() {
  ctlDatenblatt = Named(new SheetView, "ctlDatenblatt");
  ctlDatenblatt->setAccessibleName(tr("Vorschau"));
  txtDatenblattSeite = Named(new QSpinBox, "txtDatenblattSeite");
  txtDatenblattSeite->setRange(1, 1);
  txtDatenblattSeite->setKeyboardTracking(false);
  lblDatenblattSeiten = Named(new QLabel, "lblDatenblattSeiten");
  cboDatenblattZoom = Named(new QComboBox, "cboDatenblattZoom");
  cboDatenblattZoom->addItems({tr("ganze Seite"), tr("Seitenbreite"), tr("wie gedruckt")});
  auto* row = new QHBoxLayout;
  row->addWidget(LabelFor(txtDatenblattSeite, tr("&Seite:")));
  row->addWidget(txtDatenblattSeite);
  row->addWidget(lblDatenblattSeiten);
  row->addStretch();
  row->addWidget(LabelFor(cboDatenblattZoom, tr("&Vergrößerung:")));
  row->addWidget(cboDatenblattZoom);
  auto* column = new QVBoxLayout;
  column->addLayout(row);
  column->addWidget(ctlDatenblatt, 1);
  return column;
}

QLayout* SheetDialog::MakeButtons() {
  lblDatenblattStand = Named(new QLabel, "lblDatenblattStand");
  lblDatenblattStand->setTextFormat(Qt::PlainText);
  ctlDatenblattFortschritt = Named(new QProgressBar, "ctlDatenblattFortschritt");
  ctlDatenblattFortschritt->setAccessibleName(tr("Fortschritt"));
  QSizePolicy policy = ctlDatenblattFortschritt->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  ctlDatenblattFortschritt->setSizePolicy(policy);
  cmdDatenblattPdf = MakeButton("cmdDatenblattPdf", tr("Als &PDF speichern …"),
                                tr("Schreibt alle Seiten in eine Datei."));
  cmdDatenblattDrucken = MakeButton("cmdDatenblattDrucken", tr("&Drucken …"));
  cmdDatenblattSchliessen = MakeButton("cmdDatenblattSchliessen", tr("S&chließen"));
  FitCaptions(cmdDatenblattSchliessen, {tr("S&chließen"), tr("Abbre&chen")});
  cmdDatenblattPdf->setDefault(true);
  auto* row = new QHBoxLayout;
  row->addWidget(lblDatenblattStand, 3);
  row->addWidget(ctlDatenblattFortschritt, 2);
  for (QPushButton* const button :
       {cmdDatenblattPdf, cmdDatenblattDrucken, cmdDatenblattSchliessen}) {
    row->addWidget(button);
  }
  return row;
}

void SheetDialog::ConnectControls() {
  Operator& person = services_.person;
  OnClick(cmdDatenblattPdf, this, person, &SheetDialog::cmdDatenblattPdf_Click);
  OnClick(cmdDatenblattDrucken, this, person, &SheetDialog::cmdDatenblattDrucken_Click);
  OnClick(cmdDatenblattSchliessen, this, person, &SheetDialog::reject, Speaks::ToStop);
  ConnectClick(cmdDatenblattAlle, person, Speaks::No, [this] { TickAll(true); });
  ConnectClick(cmdDatenblattKeine, person, Speaks::No, [this] { TickAll(false); });
  connect(ctlDatenblattListe, &QTreeWidget::itemChanged, this, [this] { Chosen(); });
  for (const auto& [chapter, box] : chkDatenblattKapitel) {
    connect(box, &QCheckBox::toggled, this, &SheetDialog::Chosen);
  }
  connect(chkDatenblattDatum, &QCheckBox::toggled, this, &SheetDialog::Chosen);
  connect(txtDatenblattSeite, &QSpinBox::valueChanged, this, [this](int page) {
    ctlDatenblatt->SetPage(static_cast<std::size_t>(page) - 1);
    ShowPageNumber();
  });
  connect(ctlDatenblatt, &SheetView::Turned, this, &SheetDialog::Turn);
  connect(cboDatenblattZoom, &QComboBox::currentIndexChanged, this,
          [this](int index) { ctlDatenblatt->SetZoom(static_cast<SheetView::Zoom>(index)); });
  connect(&work_, &QTimer::timeout, this,
          [this] { Guarded(services_.person, "frmDatenblatt", [this] { Work(); }); });
}

void SheetDialog::Present(const std::optional<TerminalId>& terminal) {
  if (output_ == nullptr) FillTerminals(terminal);
  show();
  raise();
  activateWindow();
}

// Where the Terminal that is wanted is none of these, all of the list are ticked, or the only one.
void SheetDialog::FillTerminals(const std::optional<TerminalId>& terminal) {
  terminals_ = services_.terminals();
  const bool found = std::any_of(terminals_.begin(), terminals_.end(), [&](const auto& some) {
    return terminal && some.id == *terminal;
  });
  filling_ = true;
  ctlDatenblattListe->clear();
  for (const SheetTerminal& some : terminals_) {
    const bool ticked = found ? some.id == *terminal : some.stored || terminals_.size() == 1;
    ctlDatenblattListe->Add({Text(SheetName(some)), DeviceText(some.id.device)}, ticked);
  }
  filling_ = false;
  Remake();
}

std::vector<SheetTerminal> SheetDialog::Ticked() const {
  std::vector<SheetTerminal> ticked;
  for (std::size_t i = 0; i < terminals_.size(); ++i) {
    if (ctlDatenblattListe->Ticked(static_cast<int>(i))) ticked.push_back(terminals_[i]);
  }
  return ticked;
}

void SheetDialog::TickAll(bool ticked) {
  filling_ = true;
  ctlDatenblattListe->TickAll(ticked);
  filling_ = false;
  Remake();
}

void SheetDialog::Chosen() {
  if (!filling_) Guarded(services_.person, "frmDatenblatt", [this] { Remake(); });
}

void SheetDialog::Remake() {
  ctlDatenblatt->Show(nullptr);
  layout_.reset();
  maker_.reset();
  made_ = false;
  news_.clear();
  work_.stop();
  std::vector<SheetTerminal> ticked = Ticked();
  if (!ticked.empty()) {
    SheetSources sources = services_.sources(std::move(ticked));
    if (chkDatenblattDatum->isChecked()) sources.made = services_.loop.WallClock();
    std::set<SheetChapter> chapters;
    for (const auto& [chapter, box] : chkDatenblattKapitel) {
      if (box->isChecked()) chapters.insert(chapter);
    }
    maker_ = std::make_unique<SheetMaker>(std::move(sources), std::move(chapters), services_.fonts);
    work_.start(0);
  }
  ShowPageNumber();
  ShowState();
}

// ---- the work, in slices ----

// What has failed once is not tried again.
void SheetDialog::Work() {
  QElapsedTimer slice;
  slice.start();
  try {
    while (work_.isActive() && slice.elapsed() < kSliceMs) {
      if (!WorkOnce()) work_.stop();
    }
  } catch (...) {
    work_.stop();
    throw;
  }
  ShowState();
}

bool SheetDialog::WorkOnce() {
  if (output_ == nullptr) return Make();
  if (output_->Step()) return true;
  EndOutput();
  return work_.isActive();
}

bool SheetDialog::Make() {
  if (layout_ == nullptr) {
    if (!maker_->Step()) layout_ = std::make_unique<SheetLayout>(maker_->Made());
    return true;
  }
  if (layout_->Step()) return true;
  EndMaking();
  return false;
}

void SheetDialog::EndMaking() {
  made_ = true;
  ctlDatenblatt->Show(&layout_->Laid());
  txtDatenblattSeite->setMaximum(static_cast<int>(layout_->Laid().pages.size()));
  txtDatenblattSeite->setValue(static_cast<int>(ctlDatenblatt->ShownPage()) + 1);
  ShowPageNumber();
}

void SheetDialog::ShowPageNumber() {
  lblDatenblattSeiten->setText(made_ ? tr("von %1").arg(layout_->Laid().pages.size()) : QString());
}

QString SheetDialog::StateText() const {
  if (output_ != nullptr) {
    return path_.empty() ? tr("Druckt …") : tr("Schreibt „%1“ …").arg(Text(path_));
  }
  if (maker_ == nullptr) return tr("Kein Terminal ist angekreuzt.");
  if (!made_) return layout_ == nullptr ? tr("Stellt zusammen …") : tr("Ordnet an …");
  if (!news_.isEmpty()) return news_;
  const std::size_t pages = layout_->Laid().pages.size();
  return pages == 1 ? tr("1 Seite.") : tr("%1 Seiten.").arg(pages);
}

// How many pages there will be nobody knows while they are laid out.
void SheetDialog::ShowProgress() {
  ctlDatenblattFortschritt->setVisible(work_.isActive());
  if (!work_.isActive()) return;
  const bool out = output_ != nullptr;
  const std::size_t all = out ? output_->Pages() : layout_ == nullptr ? maker_->Steps() : 0;
  ctlDatenblattFortschritt->setMaximum(static_cast<int>(all));
  ctlDatenblattFortschritt->setValue(static_cast<int>(out ? output_->Done() : maker_->Done()));
}

void SheetDialog::ShowState() {
  const bool out = output_ != nullptr;
  lblDatenblattStand->setText(StateText());
  ShowProgress();
  for (QWidget* const control : std::initializer_list<QWidget*>{
           ctlDatenblattListe, cmdDatenblattAlle, cmdDatenblattKeine, chkDatenblattDatum}) {
    control->setEnabled(!out);
  }
  for (const auto& [chapter, box] : chkDatenblattKapitel) box->setEnabled(!out);
  txtDatenblattSeite->setEnabled(made_);
  cmdDatenblattPdf->setEnabled(made_ && !out);
  cmdDatenblattDrucken->setEnabled(made_ && !out);
  cmdDatenblattSchliessen->setText(out ? tr("Abbre&chen") : tr("S&chließen"));
}

void SheetDialog::Turn(int pages) {
  txtDatenblattSeite->setValue(txtDatenblattSeite->value() + pages);
}

// ---- where it goes ----

void SheetDialog::Begin(std::unique_ptr<SheetOutput> output, std::string path) {
  output_ = std::move(output);
  path_ = std::move(path);
  work_.start(0);
  // Else it would go on to the button that stops it, which a Return would then press.
  ctlDatenblatt->setFocus();
  ShowState();
}

void SheetDialog::cmdDatenblattPdf_Click() {
  const auto path = services_.person.SaveFile("Datenblatt speichern", kPdfFilter);
  if (path && made_) Begin(std::make_unique<SheetOutput>(layout_->Laid(), *path), *path);
}

void SheetDialog::cmdDatenblattDrucken_Click() {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  printer->setDocName(layout_->Laid().title);
  printer->setCreator(QStringLiteral("kelvo"));
  printer->setPageSize(QPageSize(QPageSize::A4));
  if (!services_.choosePrinter(*printer, this) || !made_) return;
  Begin(std::make_unique<SheetOutput>(layout_->Laid(), std::move(printer)), {});
}

void SheetDialog::EndOutput() {
  const std::size_t pages = output_->Pages();
  const std::optional<std::string> reason = output_->End();
  output_.reset();
  work_.stop();
  const QString what = path_.empty() ? tr("Datenblatt gedruckt") : tr("Datenblatt gespeichert");
  news_ = reason ? tr("Datenblatt nicht ausgegeben.")
                 : tr("%1: %2.").arg(what, pages == 1 ? tr("1 Seite") : tr("%1 Seiten").arg(pages));
  ShowState();
  Q_EMIT Finished(news_, reason.has_value());
  if (reason && path_.empty()) {
    services_.person.Message("Das Datenblatt konnte nicht gedruckt werden.", Icon::Exclamation);
  } else if (reason) {
    services_.person.Message(
        "Die Datei \"" + path_ + "\" kann nicht geschrieben werden: " + *reason, Icon::Exclamation);
  }
}

// Escape or the window's frame: what is being written is stopped first.
void SheetDialog::reject() {
  work_.stop();
  if (output_ == nullptr) return QDialog::reject();
  output_.reset();
  news_ = tr("Abgebrochen.");
  ShowState();
}

}  // namespace kelvo
