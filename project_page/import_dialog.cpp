#include "project_page/import_dialog.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <stdexcept>

#include "graphics/wmf.h"
#include "project_page/side_by_side.h"
#include "widgets/column_fit.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr int kMeasuredRows = 200;  // for the widths of the columns
constexpr const char* kWmfFilter = "Vistel(WMF) |*.wmf";

SideBySide::Lines LinesOf(const ProjectRecord* record) {
  return record != nullptr ? ReadableLines(*record) : SideBySide::Lines();
}

}  // namespace

void ImportDialog::Filter::ShowAll(bool all) {
  all_ = all;
  invalidateFilter();
}

bool ImportDialog::Filter::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
  const auto* const model = static_cast<const ImportModel*>(sourceModel());
  return all_ || model->Item(row).finding != Finding::Equal;
}

ImportDialog::ImportDialog(ProjectServices services, QWidget* parent)
    : QDialog(parent), services_(std::move(services)) {
  Named(this, "frmImport");
  setWindowTitle(tr("Importieren"));
  setWindowModality(Qt::WindowModal);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  MakeTable();
  sides_ = new SideBySide;
  auto* upper = new QWidget;
  auto* choices = new QVBoxLayout(upper);
  choices->setContentsMargins({});
  choices->addWidget(ctlImport, 1);
  choices->addLayout(MakeChoices());
  auto* const halves = Named(new QSplitter(Qt::Vertical), "ctlImportTeiler");
  halves->setChildrenCollapsible(false);
  halves->addWidget(upper);
  halves->addWidget(sides_);
  lblImport = Named(new QLabel, "lblImport");
  lblImport->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->addLayout(MakeTop());
  column->addWidget(halves, 1);
  column->addLayout(MakeExtras());
  column->addWidget(lblImport);
  column->addLayout(MakeButtons());
  KeepPlace(this);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 150, fontMetrics().lineSpacing() * 40});
}

QLayout* ImportDialog::MakeTop() {
  lblImportDatei = Named(new QLabel, "lblImportDatei");
  lblImportStand = Named(new QLabel, "lblImportStand");
  auto* const base =
      MakeButton("cmdImportStand", tr("&Gemeinsamer Stand …"),
                 tr("Der Export, von dem beide Seiten ausgegangen sind. Damit wird nur "
                    "gefragt, was beide verschieden geändert haben."));
  OnClick(base, this, services_.person, &ImportDialog::cmdImportStand_Click);
  chkImportGleiche = Named(new QCheckBox(tr("Auch Glei&ches zeigen")), "chkImportGleiche");
  connect(chkImportGleiche, &QCheckBox::toggled, this, [this](bool all) { shown_.ShowAll(all); });
  auto* row = new QHBoxLayout;
  row->addWidget(lblImportDatei);
  row->addSpacing(fontMetrics().averageCharWidth() * 3);
  row->addWidget(base);
  row->addWidget(lblImportStand, 1);
  row->addWidget(chkImportGleiche);
  return row;
}

void ImportDialog::MakeTable() {
  shown_.setSourceModel(&model_);
  ctlImport = Named(new QTableView, "ctlImport");
  ctlImport->setAccessibleName(tr("Was importiert wird"));
  ctlImport->setModel(&shown_);
  ctlImport->setTabKeyNavigation(false);
  ctlImport->setWordWrap(false);
  ctlImport->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlImport->setAlternatingRowColors(true);
  ctlImport->verticalHeader()->hide();
  ctlImport->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
  auto* const fit = new ColumnFit(ctlImport, ctlImport->horizontalHeader(),
                                  {{ImportModel::Name, tr("Display löschen")},
                                   {ImportModel::Found, tr("nur dort geändert")},
                                   {ImportModel::Choice, tr("? „Anzeige“ gibt es hier schon")}});
  connect(&shown_, &QAbstractItemModel::modelReset, fit, &ColumnFit::FitSoon);
  connect(&shown_, &QAbstractItemModel::dataChanged, fit, &ColumnFit::FitSoon);
  connect(ctlImport->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { ShowCurrent(); });
  connect(&model_, &ImportModel::dataChanged, this, [this] { ShowSummary(); });
}

QLayout* ImportDialog::MakeChoices() {
  cmdImportUebernehmen =
      MakeButton("cmdImportUebernehmen", tr("&Übernehmen"), tr("Was in der Datei steht, gilt."));
  cmdImportLassen = MakeButton("cmdImportLassen", tr("&Lassen"), tr("Was hier steht, bleibt."));
  cmdImportDaneben = MakeButton("cmdImportDaneben", tr("Dane&ben"),
                                tr("Was hier steht, bleibt; was in der Datei steht, kommt unter "
                                   "anderem Namen dazu."));
  cmdImportOffene = MakeButton("cmdImportOffene", tr("&Offene auswählen"),
                               tr("Wählt alle Zeilen aus, die noch zu entscheiden sind."));
  txtImportName = Named(new QLineEdit, "txtImportName");
  connect(txtImportName, &QLineEdit::textEdited, this, &ImportDialog::TypeName);
  auto* row = new QHBoxLayout;
  row->addWidget(new QLabel(tr("Ausgewählte Zeilen:")));
  for (QPushButton* const button : {cmdImportUebernehmen, cmdImportLassen, cmdImportDaneben}) {
    row->addWidget(button);
  }
  row->addWidget(LabelFor(txtImportName, tr("al&s:")));
  row->addWidget(txtImportName, 1);
  row->addWidget(cmdImportOffene);
  Operator& person = services_.person;
  OnClick(cmdImportUebernehmen, this, person, &ImportDialog::cmdImportUebernehmen_Click);
  OnClick(cmdImportLassen, this, person, &ImportDialog::cmdImportLassen_Click);
  OnClick(cmdImportDaneben, this, person, &ImportDialog::cmdImportDaneben_Click);
  OnClick(cmdImportOffene, this, person, &ImportDialog::cmdImportOffene_Click);
  return row;
}

QLayout* ImportDialog::MakeExtras() {
  chkImportBestand = Named(new QCheckBox, "chkImportBestand");
  connect(chkImportBestand, &QCheckBox::toggled, this, [this](bool take) {
    model_.TakeInventory(take);
    ShowSummary();
  });
  cmdImportZeichnungen = MakeButton("cmdImportZeichnungen", {},
                                    tr("Fragt für jede Zeichnung, die als Datei im Projekt liegt, "
                                       "wohin sie gespeichert wird."));
  OnClick(cmdImportZeichnungen, this, services_.person, &ImportDialog::cmdImportZeichnungen_Click);
  auto* row = new QHBoxLayout;
  row->addWidget(chkImportBestand);
  row->addStretch();
  row->addWidget(cmdImportZeichnungen);
  return row;
}

QLayout* ImportDialog::MakeButtons() {
  cmdImportAusfuehren = MakeButton("cmdImportAusfuehren", tr("&Importieren"),
                                   tr("Ändert alles auf einmal; „Rückgängig“ nimmt es zurück."));
  auto* const close = MakeButton("cmdImportSchliessen", tr("Schli&eßen"));
  // A Return in the name's field does not import.
  for (QPushButton* const button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  for (QPushButton* const button : {cmdImportAusfuehren, close}) button->setAutoDefault(false);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cmdImportAusfuehren);
  row->addWidget(close);
  OnClick(cmdImportAusfuehren, this, services_.person, &ImportDialog::cmdImportAusfuehren_Click);
  ConnectClick(close, services_.person, Speaks::ToStop, [this] { reject(); });
  return row;
}

void ImportDialog::Present(const QString& file, Project project) {
  file_ = file;
  there_ = std::move(project);
  base_.reset();
  lblImportDatei->setText(tr("Datei %1").arg(file));
  lblImportStand->setText(tr("nicht angegeben"));
  chkImportGleiche->setChecked(false);
  Compare();
  show();
  raise();
  activateWindow();
}

void ImportDialog::Compare() {
  services_.journal.Refresh();
  model_.Show(PlanImport(there_, RecordsHere(services_.database), services_.journal.Entries(),
                         base_ ? &*base_ : nullptr));
  ShowExtras();
  ctlImport->selectRow(FirstRow());
  ctlImport->setFocus();
  ShowCurrent();
  ShowSummary();
}

// Of those that are shown, the first that is to be decided, or of all.
int ImportDialog::FirstRow() const {
  for (int row = 0; row < shown_.rowCount(); ++row) {
    if (IsOpen(row)) return row;
  }
  return 0;
}

bool ImportDialog::IsOpen(int shownRow) const {
  return model_.IsOpen(shown_.mapToSource(shown_.index(shownRow, 0)).row());
}

void ImportDialog::ShowExtras() {
  const ImportPlan& plan = model_.Plan();
  chkImportBestand->setVisible(!plan.inventory.empty());
  chkImportBestand->setChecked(true);
  chkImportBestand->setText(tr("&Bestände der Terminals: %1 Einträge kommen dazu, %2 sind schon da")
                                .arg(plan.inventory.size())
                                .arg(plan.inventoryKnown));
  cmdImportZeichnungen->setVisible(!plan.drawings.empty());
  cmdImportZeichnungen->setText(plan.drawings.size() == 1
                                    ? tr("1 &Zeichnung speichern …")
                                    : tr("%1 &Zeichnungen speichern …").arg(plan.drawings.size()));
}

std::vector<int> ImportDialog::SelectedRows() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : ctlImport->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(shown_.mapToSource(shown_.index(row, 0)).row());
    }
  }
  return rows;
}

// The one that is looked at; among several none.
std::optional<int> ImportDialog::CurrentRow() const {
  const std::vector<int> rows = SelectedRows();
  return rows.size() == 1 ? std::optional(rows.front()) : std::nullopt;
}

void ImportDialog::ShowCurrent() {
  const std::vector<int> rows = SelectedRows();
  const auto may = [&](ImportChoice choice) {
    return std::any_of(rows.begin(), rows.end(),
                       [&](int row) { return model_.Item(row).MayChoose(choice); });
  };
  cmdImportUebernehmen->setEnabled(may(ImportChoice::Take));
  cmdImportLassen->setEnabled(!rows.empty());
  cmdImportDaneben->setEnabled(may(ImportChoice::Beside));
  const auto row = CurrentRow();
  const ImportItem* const item = row ? &model_.Item(*row) : nullptr;
  const bool named = item != nullptr && item->MayBeBeside() && RowOf(item->kind).name.has_value();
  txtImportName->setEnabled(named);
  txtImportName->setText(named ? QString::fromStdString(item->besideName) : QString());
  if (item == nullptr) return sides_->Show({}, {});
  std::optional<SideBySide::Lines> base;
  if (item->base && item->finding != Finding::Equal) base = LinesOf(&*item->base);
  std::optional<SideBySide::Lines> result;
  if (item->finding == Finding::Merged) result = LinesOf(&*item->result);
  sides_->Show(LinesOf(item->here ? &item->here->record : nullptr),
               LinesOf(item->there ? &*item->there : nullptr), base, result);
}

QString ImportDialog::CountsText() const {
  QStringList counts;
  for (std::size_t i = 0; i < kFindings; ++i) {
    const auto& items = model_.Plan().items;
    const auto count = std::count_if(items.begin(), items.end(), [i](const ImportItem& item) {
      return item.finding == static_cast<Finding>(i);
    });
    if (count == 0) continue;
    counts << tr("%1 %2").arg(count).arg(
        QString::fromStdString(FindingText(static_cast<Finding>(i))));
  }
  return counts.isEmpty() ? tr("Die Datei enthält keine Sätze") : counts.join(QStringLiteral("; "));
}

// What is against the names that were given, the first of it.
QString ImportDialog::FaultText() const {
  for (int row = 0; row < model_.rowCount(); ++row) {
    const QString fault = model_.Fault(row);
    if (!fault.isEmpty()) return tr(" So geht es nicht: %1.").arg(fault);
  }
  return {};
}

void ImportDialog::ShowSummary() {
  const ImportPlan& plan = model_.Plan();
  const std::size_t open = model_.Open();
  const std::size_t changed = model_.Changes();
  const bool entries = plan.takeInventory && !plan.inventory.empty();
  cmdImportAusfuehren->setEnabled(open == 0 && (changed > 0 || entries));
  cmdImportOffene->setEnabled(open > 0);
  const QString changes = changed == 0   ? tr("Kein Satz ändert sich")
                          : changed == 1 ? tr("1 Satz ändert sich")
                                         : tr("%1 Sätze ändern sich").arg(changed);
  const QString left = open == 0   ? tr("nichts ist mehr zu entscheiden")
                       : open == 1 ? tr("1 ist noch zu entscheiden")
                                   : tr("%1 sind noch zu entscheiden").arg(open);
  lblImport->setText(tr("%1. %2, %3.%4").arg(CountsText(), changes, left, FaultText()));
}

void ImportDialog::ChooseSelected(ImportChoice choice) { model_.Choose(SelectedRows(), choice); }

// A name that is typed is meant to be used.
void ImportDialog::TypeName(const QString& name) {
  const auto row = CurrentRow();
  if (!row) return;
  model_.SetBesideName(*row, name.toStdString());
  model_.Choose({*row}, ImportChoice::Beside);
}

// Rows that follow one another as one range: thousands of ranges would be slow.
void ImportDialog::cmdImportOffene_Click() {
  QItemSelection open;
  int first = -1;
  for (int row = 0; row <= shown_.rowCount(); ++row) {
    const bool isOpen = row < shown_.rowCount() && IsOpen(row);
    if (isOpen && first < 0) first = row;
    if (isOpen || first < 0) continue;
    open.select(shown_.index(first, 0), shown_.index(row - 1, ImportModel::ColumnCount - 1));
    first = -1;
  }
  ctlImport->selectionModel()->select(open, QItemSelectionModel::ClearAndSelect);
  ctlImport->setFocus();
}

void ImportDialog::cmdImportStand_Click() {
  const auto path = services_.person.OpenFile("Gemeinsamer Stand", kProjectFilter);
  if (!path) return;
  auto base =
      LoadProject(*path, services_.person, this, "Der gemeinsame Stand ist nicht lesbar:\n");
  if (!base) return;
  base_ = std::move(base);
  lblImportStand->setText(FileName(*path));
  Compare();
}

void ImportDialog::cmdImportZeichnungen_Click() {
  const auto [width, height] = services_.display();
  for (const ProjectDrawing& drawing : model_.Plan().drawings) {
    const auto path = services_.person.SaveFile("\"" + drawing.name + "\" speichern", kWmfFilter);
    if (!path) return;
    const WmfFile file = WriteWmf(drawing.drawing, width, height);
    if (!file.error.empty()) return services_.person.Message(file.error, Icon::Exclamation);
    if (const auto reason = WriteFile(*path, file.bytes)) {
      return services_.person.Message(
          "Die Datei konnte nicht geschrieben werden:\n" + *path + "\n" + *reason,
          Icon::Exclamation);
    }
  }
}

// Where another program has come first, what is there now is compared anew.
void ImportDialog::cmdImportAusfuehren_Click() {
  try {
    const ImportDone done = ApplyImport(services_.database, services_.journal, model_.Plan());
    accept();
    Q_EMIT Imported(file_, done);
  } catch (const StoreConflict&) {
    services_.person.Message(
        "Ein Satz wurde inzwischen von anderer Stelle geändert; es wurde nichts importiert. Der "
        "Vergleich zeigt jetzt, was nun da ist.",
        Icon::Exclamation);
    Compare();
  }
}

}  // namespace kelvo
