#include "inventory_page/compare_dialog.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "inventory/terminal_name.h"
#include "inventory_page/comparison_words.h"
#include "inventory_page/write_desk.h"
#include "widgets/column_fit.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/tail_delegate.h"
#include "widgets/tame_text.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr char kTextFilter[] = "Text (txt) |*.txt";

}  // namespace

CompareDialog::CompareDialog(Services services, QWidget* parent)
    : QDialog(parent),
      services_(std::move(services)),
      readings_(services_.readingsPath),
      run_({services_.exchange, services_.loop, readings_}) {
  Named(this, "frmVergleich");
  setWindowTitle(tr("Terminals vergleichen"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  auto* column = new QVBoxLayout(this);
  column->addLayout(MakeChoice());
  MakeTable();
  column->addWidget(ctlVergleich, 1);
  lblVergleich = Named(new QLabel, "lblVergleich");
  lblVergleich->setWordWrap(true);
  column->addWidget(lblVergleich);
  column->addLayout(MakeButtons());
  connect(&services_.desk, &WriteDesk::Finished, this, &CompareDialog::Follow);
  KeepPlace(this);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 200, fontMetrics().lineSpacing() * 38});
}

QLayout* CompareDialog::MakeChoice() {
  auto* row = new QHBoxLayout;
  cboVergleichTerminal = Named(new QComboBox, "cboVergleichTerminal");
  cboVergleichTerminal->setMinimumContentsLength(30);
  chkVergleichUnterschiede =
      Named(new QCheckBox(tr("Nur &Unterschiede")), "chkVergleichUnterschiede");
  row->addWidget(LabelFor(cboVergleichTerminal, tr("&Terminal:")));
  row->addWidget(cboVergleichTerminal);
  row->addSpacing(fontMetrics().averageCharWidth() * 3);
  row->addWidget(chkVergleichUnterschiede);
  row->addStretch();
  connect(cboVergleichTerminal, &QComboBox::activated, this, [this] {
    said_.clear();  // that was of others
    Guarded(services_.person, "cboVergleichTerminal", [this] { Compare(); });
  });
  connect(chkVergleichUnterschiede, &QCheckBox::toggled, this, [this](bool only) {
    filtered_.setFilterFixedString(only ? QStringLiteral("≠") : QString());
  });
  return row;
}

void CompareDialog::MakeTable() {
  filtered_.setSourceModel(&model_);
  filtered_.setFilterKeyColumn(ComparisonModel::Result);
  ctlVergleich = Named(new QTableView, "ctlVergleich");
  ctlVergleich->setAccessibleName(tr("Vergleich"));
  ctlVergleich->setModel(&filtered_);
  ctlVergleich->setTabKeyNavigation(false);
  ctlVergleich->setWordWrap(false);
  ctlVergleich->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlVergleich->setAlternatingRowColors(true);
  ctlVergleich->verticalHeader()->hide();
  ctlVergleich->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * 3 / 2);
  ctlVergleich->setItemDelegateForColumn(ComparisonModel::Terminal, new TailDelegate(this));
  // The name of a Terminal goes first, a value that was read last.
  columns_ = new ColumnFit(ctlVergleich, ctlVergleich->horizontalHeader(),
                           {{ComparisonModel::Terminal, tr("Halle…, Adresse 255")},
                            {ComparisonModel::Result, tr("≠ nicht im Terminal")},
                            {ComparisonModel::Record, tr("Display löschen")},
                            {ComparisonModel::Written, tr("Display löschen (23.11…")},
                            {ComparisonModel::Read, tr("64,409 (23.11.2026…")}});
}

QLayout* CompareDialog::MakeButtons() {
  cmdVergleichLesen = MakeButton("cmdVergleichLesen", tr("&Lesen"),
                                 tr("Wählt die gezeigten Terminals nacheinander und fragt alles "
                                    "ab, was sie von sich sagen."));
  cmdVergleichAbbrechen = MakeButton("cmdVergleichAbbrechen", tr("A&bbrechen"),
                                     tr("Hört auf zu lesen; was gelesen ist, bleibt."));
  cmdVergleichAbbrechen->setEnabled(false);
  cmdVergleichSchreiben =
      MakeButton("cmdVergleichSchreiben", tr("Geändertes &schreiben …"),
                 tr("Zeigt, was in der Datenbank anders ist als zuletzt geschrieben, und was dem "
                    "Terminal fehlt; schreibt davon geprüft, was angekreuzt ist."));
  cmdVergleichKopieren = MakeButton("cmdVergleichKopieren", tr("&Kopieren"),
                                    tr("Legt die gezeigten Zeilen als Text in die Ablage."));
  cmdVergleichSpeichern = MakeButton("cmdVergleichSpeichern", tr("Spei&chern …"),
                                     tr("Speichert die gezeigten Zeilen als Text."));
  cmdVergleichSchliessen = MakeButton("cmdVergleichSchliessen", tr("Schl&ießen"));
  cmdVergleichLesen->setDefault(true);
  auto* row = new QHBoxLayout;
  row->addWidget(cmdVergleichLesen);
  row->addWidget(cmdVergleichAbbrechen);
  row->addWidget(cmdVergleichSchreiben);
  row->addStretch();
  for (QPushButton* const button :
       {cmdVergleichKopieren, cmdVergleichSpeichern, cmdVergleichSchliessen}) {
    row->addWidget(button);
  }
  Operator& person = services_.person;
  OnSend(cmdVergleichLesen, this, person, &CompareDialog::cmdVergleichLesen_Click);
  OnClick(cmdVergleichAbbrechen, this, person, &CompareDialog::cmdVergleichAbbrechen_Click,
          Speaks::ToStop);
  OnClick(cmdVergleichSchreiben, this, person, &CompareDialog::cmdVergleichSchreiben_Click);
  OnClick(cmdVergleichKopieren, this, person, &CompareDialog::cmdVergleichKopieren_Click);
  OnClick(cmdVergleichSpeichern, this, person, &CompareDialog::cmdVergleichSpeichern_Click);
  OnClick(cmdVergleichSchliessen, this, person, &CompareDialog::reject, Speaks::ToStop);
  return row;
}

void CompareDialog::Present() {
  closing_ = false;  // wanted again before its reading has come to an end
  if (!reading_) {
    said_.clear();
    FillChoice();
    Compare();
  }
  // Whatever was pressed last, Enter always does the same.
  if (!isVisible()) {
    ctlVergleich->setFocus();
    cmdVergleichLesen->setDefault(true);
  }
  show();
  raise();
  activateWindow();
}

QString CompareDialog::NameOf(int address) const {
  return QString::fromStdString(TerminalName(services_.nameOf(address), address));
}

// The one that listens is chosen, and all of the list stand first.
void CompareDialog::FillChoice() {
  const std::optional<int> selected = services_.desk.Selected();
  std::vector<int> addresses = services_.addresses();
  if (selected && std::count(addresses.begin(), addresses.end(), *selected) == 0) {
    addresses.push_back(*selected);
  }
  cboVergleichTerminal->clear();
  cboVergleichTerminal->addItem(tr("Alle der Liste"));
  for (const int address : addresses) {
    cboVergleichTerminal->addItem(Tamed(NameOf(address)), address);
  }
  const int chosen = selected ? cboVergleichTerminal->findData(*selected) : 0;
  cboVergleichTerminal->setCurrentIndex(std::max(chosen, 0));
}

// Much may change at once.
void CompareDialog::Follow() {
  if (!isVisible() || reading_ || std::exchange(follows_, true)) return;
  QMetaObject::invokeMethod(this, &CompareDialog::FollowNow, Qt::QueuedConnection);
}

// What is chosen and seen of the table stays.
void CompareDialog::FollowNow() {
  follows_ = false;
  if (!isVisible() || reading_) return;
  const int row = ctlVergleich->currentIndex().row();
  const int seen = ctlVergleich->verticalScrollBar()->value();
  Guarded(services_.person, "frmVergleich", [this] { Compare(); });
  if (row >= 0) ctlVergleich->selectRow(std::min(row, filtered_.rowCount() - 1));
  ctlVergleich->verticalScrollBar()->setValue(seen);
}

// What another program has done meanwhile is seen when the operator comes back.
void CompareDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) Follow();
}

std::vector<int> CompareDialog::Chosen() const {
  const QVariant address = cboVergleichTerminal->currentData();
  return address.isValid() ? std::vector<int>{address.toInt()} : services_.addresses();
}

void CompareDialog::Compare() {
  services_.journal.Refresh();
  const std::vector<StoredRecord> records = services_.records();
  const std::string device = services_.device();
  std::vector<ComparisonRow> rows;
  for (const int address : Chosen()) {
    const TerminalId terminal{device, address};
    for (ComparisonRow& row : kelvo::Compare(terminal, services_.journal.Of(terminal), readings_,
                                             records, services_.settings(terminal))) {
      rows.push_back(std::move(row));
    }
  }
  model_.Show(std::move(rows), services_.nameOf);
  ctlVergleich->setColumnHidden(ComparisonModel::Terminal,
                                cboVergleichTerminal->currentData().isValid());
  columns_->Fit();
  ShowSummary();
}

void CompareDialog::ShowSummary() {
  const auto& rows = model_.Rows();
  const bool writable =
      std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row.order || row.offer; });
  cmdVergleichSchreiben->setEnabled(writable && !reading_);
  lblVergleich->setText(
      (said_.isEmpty() ? QString() : said_ + u' ') + DifferenceWords(rows) +
      tr(" „gleich“ heißt: wie zuletzt von hier geschrieben; was ein EEPROM enthält, lässt sich "
         "nicht zurücklesen."));
}

void CompareDialog::cmdVergleichLesen_Click() {
  const std::vector<int> addresses = Chosen();
  if (addresses.empty()) {
    said_ = tr("Es gibt nichts zu lesen: In der Liste steht kein Terminal.");
    return ShowSummary();
  }
  const Undertakings::Alone alone(services_.person.Begun(), "Die Terminals werden gelesen.");
  // Else it would go on to another button, which a Return would then press.
  const bool focused = focusWidget() == cmdVergleichLesen;
  if (focused) ctlVergleich->setFocus();
  reading_ = true;
  for (QWidget* const control : std::initializer_list<QWidget*>{
           cboVergleichTerminal, cmdVergleichLesen, cmdVergleichSchreiben}) {
    control->setEnabled(false);
  }
  cmdVergleichAbbrechen->setEnabled(true);
  const ReadRun::Result result = run_.Run(
      services_.device(), addresses, services_.desk.Selected(),
      [this](int address) { lblVergleich->setText(tr("Liest „%1“ …").arg(NameOf(address))); });
  reading_ = false;
  cboVergleichTerminal->setEnabled(true);
  cmdVergleichLesen->setEnabled(true);
  if (focused && focusWidget() == ctlVergleich) cmdVergleichLesen->setFocus();
  cmdVergleichAbbrechen->setEnabled(false);
  said_ = ReadWords(result, addresses, [this](int address) { return NameOf(address); });
  Compare();
  Q_EMIT Finished(said_, !result.complete || result.answered.empty());
  if (closing_) reject();
}

void CompareDialog::cmdVergleichAbbrechen_Click() { run_.Stop(); }

// Each order is a row of the dialog that writes: there it is named, and may be left out. What is
// only offered stands behind what has changed.
void CompareDialog::cmdVergleichSchreiben_Click() {
  std::vector<WriteDesk::Task> tasks;
  for (const ComparisonRow& row : model_.Rows()) {
    if (row.order) tasks.push_back({row.terminal.address, *row.order, true, row.words});
  }
  for (const ComparisonRow& row : model_.Rows()) {
    if (row.offer) tasks.push_back({row.terminal.address, *row.offer, false, row.words});
  }
  services_.desk.WriteAll(tasks);
}

QString CompareDialog::Report() const {
  return model_.Report(
      [this](int row) { return filtered_.mapFromSource(model_.index(row, 0)).isValid(); });
}

void CompareDialog::cmdVergleichKopieren_Click() {
  QGuiApplication::clipboard()->setText(Report());
}

void CompareDialog::cmdVergleichSpeichern_Click() {
  const auto name = services_.person.SaveFile("Vergleich speichern", kTextFilter);
  if (!name) return;
  const auto reason = WriteFile(*name, Report().toStdString());
  if (!reason) {
    said_ = tr("Der Vergleich ist gespeichert: %1.").arg(Text(*name));
    Q_EMIT Finished(said_, false);
    return ShowSummary();
  }
  throw std::runtime_error("Die Datei \"" + *name + "\" kann nicht geschrieben werden: " + *reason);
}

// Escape or the window's frame: a reading under way is stopped first.
void CompareDialog::reject() {
  closing_ = reading_;
  if (reading_) return run_.Stop();
  QDialog::reject();
}

}  // namespace kelvo
