#include "shell/traffic_view.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>

#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/front.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr std::size_t kLargestCapture = 100'000'000;
constexpr char kFileFilter[] = "Text (txt) |*.txt";
// The last entry of `cboVerkehrArt`, behind the kinds.
constexpr int kFailures = -2;
constexpr int kAllKinds = -1;

}  // namespace

TrafficView::TrafficView(TrafficRecord& record, Operator& person, QWidget* parent)
    : QWidget(parent, Qt::Window), record_(record), person_(person) {
  Named(this, "frmDatenverkehr");
  lblVerkehr = Named(new QLabel, "lblVerkehr");
  lblVerkehr->setTextFormat(Qt::PlainText);
  auto* page = new QVBoxLayout(this);
  page->addWidget(MakeChoice());
  page->addWidget(MakeButtons());
  page->addWidget(MakeTable(), 1);
  page->addWidget(lblVerkehr);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 150, fontMetrics().lineSpacing() * 28});
  record_.SetListener([this](TrafficRecord::Number changed) { Follow(changed); });
  ShowState();
}

QWidget* TrafficView::MakeTable() {
  filter_.setSourceModel(&model_);
  ctlVerkehr = Named(new QTableView, "ctlVerkehr");
  ctlVerkehr->setModel(&filter_);
  ctlVerkehr->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlVerkehr->setWordWrap(false);
  ctlVerkehr->setTabKeyNavigation(false);
  ctlVerkehr->setAccessibleName(tr("Datenverkehr"));
  ctlVerkehr->verticalHeader()->hide();
  ctlVerkehr->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * 3 / 2);
  const int em = fontMetrics().averageCharWidth();
  for (const auto& [column, widths] : {std::pair{TrafficModel::Time, 15},
                                       {TrafficModel::Way, 16},
                                       {TrafficModel::Meaning, 44},
                                       {TrafficModel::Took, 13},
                                       {TrafficModel::Result, 26},
                                       {TrafficModel::Readable, 20}}) {
    ctlVerkehr->setColumnWidth(column, em * widths);
  }
  ctlVerkehr->horizontalHeader()->setStretchLastSection(true);
  return ctlVerkehr;
}

QWidget* TrafficView::MakeChoice() {
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  txtVerkehrFilter = Named(new QLineEdit, "txtVerkehrFilter");
  txtVerkehrFilter->setClearButtonEnabled(true);
  cboVerkehrArt = Named(new QComboBox, "cboVerkehrArt");
  cboVerkehrArt->addItem(tr("alles"), kAllKinds);
  for (const auto& [kind, name] : {std::pair{TrafficKind::Query, tr("Abfragen")},
                                   {TrafficKind::Command, tr("bestätigte Befehle")},
                                   {TrafficKind::Plain, tr("übrige Befehle")},
                                   {TrafficKind::Unasked, tr("unverlangt Empfangenes")}}) {
    cboVerkehrArt->addItem(name, static_cast<int>(kind));
  }
  cboVerkehrArt->addItem(tr("nur Störungen"), kFailures);
  cboVerkehrRichtung = Named(new QComboBox, "cboVerkehrRichtung");
  cboVerkehrRichtung->addItem(tr("beide Richtungen"), -1);
  for (const Direction way : {Direction::ToTerminal, Direction::FromTerminal}) {
    cboVerkehrRichtung->addItem(Text(DirectionText(way)), static_cast<int>(way));
  }
  cmdVerkehrAlles = MakeButton("cmdVerkehrAlles", tr("&Alles zeigen"),
                               tr("Nimmt alle Filter zurück und zeigt auch, was geleert wurde."));
  row->addWidget(LabelFor(txtVerkehrFilter, tr("&Filter:")));
  row->addWidget(txtVerkehrFilter, 1);
  row->addWidget(LabelFor(cboVerkehrArt, tr("&Zeigen:")));
  row->addWidget(cboVerkehrArt);
  row->addWidget(LabelFor(cboVerkehrRichtung, tr("&Richtung:")));
  row->addWidget(cboVerkehrRichtung);
  row->addWidget(cmdVerkehrAlles);
  connect(txtVerkehrFilter, &QLineEdit::textChanged, this, &TrafficView::Choose);
  connect(cboVerkehrArt, &QComboBox::currentIndexChanged, this, &TrafficView::Choose);
  connect(cboVerkehrRichtung, &QComboBox::currentIndexChanged, this, &TrafficView::Choose);
  OnClick(cmdVerkehrAlles, this, person_, &TrafficView::cmdVerkehrAlles_Click);
  return bar;
}

QWidget* TrafficView::MakeButtons() {
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  auto* failure = MakeButton("cmdVerkehrStoerung", tr("Zur letzten S&törung"),
                             tr("Sucht rückwärts, was nicht gelungen ist."));
  cmdVerkehrPause = MakeButton("cmdVerkehrPause", tr("&Pause"),
                               tr("Hält die Anzeige an; aufgezeichnet wird weiter."));
  cmdVerkehrPause->setCheckable(true);
  auto* copy = MakeButton("cmdVerkehrKopieren", tr("&Kopieren"),
                          tr("Kopiert die gewählten Zeilen, sonst alle (Strg+C)."));
  auto* save = MakeButton("cmdVerkehrSpeichern", tr("&Speichern …"),
                          tr("Schreibt, was gezeigt wird, in eine Textdatei."));
  auto* open =
      MakeButton("cmdVerkehrOeffnen", tr("&Öffnen …"), tr("Zeigt eine gespeicherte Aufzeichnung."));
  cmdVerkehrLeitung = MakeButton("cmdVerkehrLeitung", tr("Datei s&chließen"),
                                 tr("Zeigt wieder, was über die Leitung geht."));
  auto* clear = MakeButton("cmdVerkehrLeeren", tr("&Leeren"),
                           tr("Blendet aus, was bis jetzt war; es bleibt aufgezeichnet."));
  for (QWidget* button : {failure, cmdVerkehrPause, copy, save, open, cmdVerkehrLeitung, clear}) {
    row->addWidget(button);
  }
  row->addStretch();
  OnClick(failure, this, person_, &TrafficView::cmdVerkehrStoerung_Click);
  connect(cmdVerkehrPause, &QPushButton::toggled, this, &TrafficView::cmdVerkehrPause_Click);
  OnClick(copy, this, person_, &TrafficView::cmdVerkehrKopieren_Click);
  OnClick(save, this, person_, &TrafficView::cmdVerkehrSpeichern_Click);
  OnClick(open, this, person_, &TrafficView::cmdVerkehrOeffnen_Click);
  OnClick(cmdVerkehrLeitung, this, person_, &TrafficView::cmdVerkehrLeitung_Click);
  OnClick(clear, this, person_, &TrafficView::cmdVerkehrLeeren_Click);
  auto* const keys =
      new QShortcut(QKeySequence::Copy, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(keys, &QShortcut::activated, copy, &QPushButton::click);
  CloseByEscape(this);
  return bar;
}

void TrafficView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  ShowRecord();
}

void TrafficView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  model_.Show(nullptr);  // recording costs nothing more then
}

const TrafficRecord& TrafficView::Shown() const { return opened_ ? opened_->record : record_; }

bool TrafficView::Paused() const { return cmdVerkehrPause->isChecked(); }

void TrafficView::ShowRecord() {
  model_.Show(&Shown(), from_);
  ctlVerkehr->scrollToBottom();
  ShowState();
}

void TrafficView::Follow(TrafficRecord::Number changed) {
  if (opened_ || !isVisible()) return;
  const QScrollBar* bar = ctlVerkehr->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  model_.Follow(changed, !Paused());
  ShowState();
  if (atEnd) ctlVerkehr->scrollToBottom();
}

void TrafficView::ShowState() {
  const bool hidden = from_ > Shown().Begin();
  lblVerkehr->setText(tr("%1 von %2 Einträgen%3%4")
                          .arg(filter_.rowCount())
                          .arg(Shown().End() - Shown().Begin())
                          .arg(hidden ? tr(", ältere ausgeblendet") : QString(),
                               Paused() ? tr(" – Pause") : QString()));
  cmdVerkehrAlles->setEnabled(hidden || !filter_.Choice().All());
  cmdVerkehrLeitung->setVisible(opened_.has_value());
  cmdVerkehrPause->setVisible(!opened_);
  if (!opened_) setWindowTitle(tr("Datenverkehr"));
}

void TrafficView::Choose() {
  const int kind = cboVerkehrArt->currentData().toInt();
  const int way = cboVerkehrRichtung->currentData().toInt();
  TrafficChoice choice;
  choice.text = txtVerkehrFilter->text();
  choice.failuresAlone = kind == kFailures;
  if (kind >= 0) choice.kind = static_cast<TrafficKind>(kind);
  if (way >= 0) choice.direction = static_cast<Direction>(way);
  filter_.SetChoice(choice);
  ShowState();
}

void TrafficView::Present() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  BringToFront(*this);
}

void TrafficView::ShowLastFailureOfLine() {
  if (opened_) cmdVerkehrLeitung_Click();
  ShowLastFailure();
}

void TrafficView::ShowLastFailure() {
  const auto number = LastFailure(Shown());
  if (!number) return lblVerkehr->setText(tr("Keine Störung ist aufgezeichnet."));
  const auto shownAt = [&] {
    const auto row = model_.RowOf(*number);
    return row ? filter_.mapFromSource(model_.index(*row, TrafficModel::Time)) : QModelIndex();
  };
  if (!shownAt().isValid()) cmdVerkehrAlles_Click();
  model_.Grow();
  ctlVerkehr->setCurrentIndex(shownAt());
  ctlVerkehr->scrollTo(shownAt(), QAbstractItemView::PositionAtCenter);
  ctlVerkehr->setFocus();
}

QByteArray TrafficView::Columns() const { return ctlVerkehr->horizontalHeader()->saveState(); }

void TrafficView::RestoreColumns(const QByteArray& columns) {
  ctlVerkehr->horizontalHeader()->restoreState(columns);
}

std::vector<TrafficRecord::Number> TrafficView::Rows(bool selectedOnly) const {
  std::vector<TrafficRecord::Number> numbers;
  const QItemSelectionModel* selection = ctlVerkehr->selectionModel();
  for (int row = 0; row < filter_.rowCount(); ++row) {
    if (selectedOnly && !selection->isRowSelected(row, {})) continue;
    numbers.push_back(model_.NumberAt(filter_.mapToSource(filter_.index(row, 0)).row()));
  }
  return numbers;
}

void TrafficView::cmdVerkehrStoerung_Click() { ShowLastFailure(); }

void TrafficView::cmdVerkehrAlles_Click() {
  txtVerkehrFilter->clear();
  cboVerkehrArt->setCurrentIndex(0);
  cboVerkehrRichtung->setCurrentIndex(0);
  from_ = 0;
  ShowRecord();
}

void TrafficView::cmdVerkehrPause_Click() {
  if (!Paused() && !opened_) model_.Grow();
  ShowState();
}

void TrafficView::cmdVerkehrKopieren_Click() {
  const auto rows = Rows(ctlVerkehr->selectionModel()->hasSelection());
  QApplication::clipboard()->setText(Text(CaptureLines(Shown(), rows)));
}

void TrafficView::cmdVerkehrSpeichern_Click() {
  const std::string lines = std::string(kCaptureHead) + '\n' + CaptureLines(Shown(), Rows(false));
  const auto name = person_.SaveFile("Datenverkehr speichern", kFileFilter);
  if (!name) return;
  const auto reason = WriteFile(*name, lines);
  if (!reason) return lblVerkehr->setText(tr("Gespeichert: %1").arg(Text(*name)));
  person_.Message("Die Datei \"" + *name + "\" wurde nicht geschrieben: " + *reason,
                  Icon::Exclamation);
}

void TrafficView::cmdVerkehrOeffnen_Click() {
  const auto name = person_.OpenFile("Datenverkehr öffnen", kFileFilter);
  if (!name) return;
  const auto text = ReadFile(*name, kLargestCapture);
  if (!text) {
    return person_.Message("Die Datei \"" + *name + "\" kann nicht gelesen werden.",
                           Icon::Exclamation);
  }
  Capture capture = ReadCapture(*text);
  if (capture.record.End() == 0) {
    return person_.Message("Die Datei \"" + *name + "\" enthält keinen gespeicherten Datenverkehr.",
                           Icon::Exclamation);
  }
  const std::size_t bad = capture.notUnderstood;
  ShowFile(*name, std::move(capture));
  if (bad == 0) return;
  person_.Message(std::to_string(bad) + " Zeilen der Datei \"" + *name +
                      "\" sind kein Datenverkehr und fehlen in der Anzeige.",
                  Icon::Exclamation);
}

void TrafficView::ShowFile(const std::string& path, Capture capture) {
  model_.Show(nullptr);  // before the one that is shown goes
  opened_ = std::move(capture);
  cmdVerkehrAlles_Click();
  setWindowTitle(tr("Datenverkehr – %1").arg(QFileInfo(Text(path)).fileName()));
}

void TrafficView::cmdVerkehrLeitung_Click() {
  model_.Show(nullptr);
  opened_.reset();
  from_ = 0;
  ShowRecord();
}

void TrafficView::cmdVerkehrLeeren_Click() {
  from_ = Shown().End();
  ShowRecord();
}

}  // namespace kelvo
