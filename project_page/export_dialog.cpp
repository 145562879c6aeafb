#include "project_page/export_dialog.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "graphics/pic_reader.h"
#include "graphics/wmf.h"
#include "inventory/journal_text.h"
#include "link/addresses.h"
#include "widgets/dark_list.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr const char* kDrawingFilter = "Vistel(WMF) |*.wmf|Text (txt) |*.txt";
constexpr int kIndexRole = Qt::UserRole;
constexpr int kNameColumn = 0;
constexpr int kNumberColumn = 1;

QString Text(const std::string& text) { return QString::fromStdString(text); }

ProjectKind KindOf(const QTreeWidgetItem& item) {
  return static_cast<ProjectKind>(item.data(kNameColumn, kIndexRole).toInt());
}

std::size_t IndexOf(const QTreeWidgetItem& item) {
  return static_cast<std::size_t>(item.data(kNameColumn, kIndexRole).toULongLong());
}

// Settings have no name of their own: what is known of them tells them apart.
QString NameFor(const ProjectRecord& record) {
  const std::string name = NameOf(record);
  if (!name.empty()) return Text(name);
  if (RowOf(record.kind).name) return ExportDialog::tr("(ohne Bezeichnung)");
  const auto* const text =
      record.values.size() > 1 ? std::get_if<std::string>(&record.values[1]) : nullptr;
  return text != nullptr ? Text(*text) : Text(RowOf(record.kind).noun);
}

QString NumberFor(const ProjectRecord& record) {
  const auto number = NumberOf(record);
  return number && *number >= 0 ? QString::number(*number) : QString();
}

QString TerminalText(const TerminalId& terminal) {
  return terminal.address == kAllAddresses
             ? ExportDialog::tr("alle an %1").arg(Text(terminal.device))
             : ExportDialog::tr("Adresse %1 an %2")
                   .arg(Text(AddressText(terminal.address)), Text(terminal.device));
}

}  // namespace

ExportDialog::ExportDialog(ProjectServices services, QWidget* parent)
    : QDialog(parent), services_(std::move(services)) {
  Named(this, "frmExport");
  setWindowTitle(tr("Exportieren"));
  setWindowModality(Qt::WindowModal);
  ctlExport = Named(new QTreeWidget, "ctlExport");
  ctlExport->setAccessibleName(tr("Was exportiert wird"));
  ctlExport->setHeaderLabels({tr("Was exportiert wird"), tr("Nummer")});
  ctlExport->setUniformRowHeights(true);
  KeepVisibleOnDark(ctlExport);
  ctlExport->header()->setStretchLastSection(false);
  ctlExport->header()->setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
  connect(ctlExport, &QTreeWidget::itemChanged, this, &ExportDialog::ShowCountSoon);
  lblExport = Named(new QLabel, "lblExport");
  lblExport->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->addWidget(ctlExport, 1);
  column->addWidget(lblExport);
  column->addLayout(MakeButtons());
  KeepPlace(this);
  ResizeWithinScreen(this,
                     {fontMetrics().averageCharWidth() * 95, fontMetrics().lineSpacing() * 32});
}

QLayout* ExportDialog::MakeButtons() {
  auto* const all = MakeButton("cmdExportAlles", tr("&Alles"));
  auto* const none = MakeButton("cmdExportNichts", tr("&Nichts"));
  auto* const drawing =
      MakeButton("cmdExportZeichnung", tr("&Zeichnung hinzufügen …"),
                 tr("Nimmt eine gespeicherte Zeichnung mit auf, Objekt für Objekt."));
  cmdExportDatei = MakeButton("cmdExportDatei", tr("&Exportieren …"),
                              tr("Fragt nach der Datei und schreibt, was angekreuzt ist."));
  auto* const close = MakeButton("cmdExportSchliessen", tr("Schl&ießen"));
  cmdExportDatei->setDefault(true);
  auto* row = new QHBoxLayout;
  for (QPushButton* const button : {all, none, drawing}) row->addWidget(button);
  row->addStretch();
  row->addWidget(cmdExportDatei);
  row->addWidget(close);
  Operator& person = services_.person;
  OnClick(all, this, person, &ExportDialog::cmdExportAlles_Click);
  OnClick(none, this, person, &ExportDialog::cmdExportNichts_Click);
  OnClick(drawing, this, person, &ExportDialog::cmdExportZeichnung_Click);
  OnClick(cmdExportDatei, this, person, &ExportDialog::cmdExportDatei_Click);
  ConnectClick(close, person, Speaks::ToStop, [this] { reject(); });
  return row;
}

void ExportDialog::Present() {
  records_ = RecordsHere(services_.database);
  services_.journal.Refresh();
  drawings_.clear();
  std::set<TerminalId> terminals;
  for (const JournalEntry& entry : services_.journal.Entries()) terminals.insert(entry.terminal);
  terminals_.assign(terminals.begin(), terminals.end());
  Fill();
  show();
  raise();
  activateWindow();
}

// A kind of which there is nothing is told of, too: an import may then see that it was deleted.
void ExportDialog::Fill() {
  const QSignalBlocker blocker(ctlExport);
  ctlExport->clear();
  for (const KindRow& row : ProjectKindTable()) {
    if (*row.table != '\0') KindItem(row.kind);
  }
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const ProjectRecord& record = records_[i].record;
    AddEntry(record.kind, NumberFor(record), NameFor(record), i);
  }
  for (std::size_t i = 0; i < terminals_.size(); ++i) {
    AddEntry(ProjectKind::Inventory, {}, TerminalText(terminals_[i]), i);
  }
  ShowKinds();
  ShowCount();
}

QTreeWidgetItem* ExportDialog::KindItem(ProjectKind kind) {
  for (int i = ctlExport->topLevelItemCount(); i-- > 0;) {
    if (KindOf(*ctlExport->topLevelItem(i)) == kind) return ctlExport->topLevelItem(i);
  }
  auto* const item = new QTreeWidgetItem(ctlExport);
  item->setData(kNameColumn, kIndexRole, static_cast<int>(kind));
  item->setFlags(item->flags() | Qt::ItemIsAutoTristate | Qt::ItemIsUserCheckable);
  item->setCheckState(kNameColumn, Qt::Checked);
  return item;
}

void ExportDialog::AddEntry(ProjectKind kind, const QString& number, const QString& name,
                            std::size_t index) {
  auto* const item = new QTreeWidgetItem({name, number});
  item->setData(kNameColumn, kIndexRole, static_cast<qulonglong>(index));
  item->setCheckState(kNameColumn, Qt::Checked);
  item->setTextAlignment(kNumberColumn, Qt::AlignRight | Qt::AlignVCenter);
  KindItem(kind)->addChild(item);
}

// Behind each kind how many there are.
void ExportDialog::ShowKinds() {
  for (int i = 0; i < ctlExport->topLevelItemCount(); ++i) {
    QTreeWidgetItem& item = *ctlExport->topLevelItem(i);
    const QString member = Text(RowOf(KindOf(item)).member);
    item.setText(kNameColumn, tr("%1 (%2)").arg(member).arg(item.childCount()));
  }
}

void ExportDialog::TickAll(bool ticked) {
  const QSignalBlocker blocker(ctlExport);
  for (int i = 0; i < ctlExport->topLevelItemCount(); ++i) {
    ctlExport->topLevelItem(i)->setCheckState(kNameColumn, ticked ? Qt::Checked : Qt::Unchecked);
  }
  ctlExport->viewport()->update();
  ShowCount();
}

std::size_t ExportDialog::Ticked() const {
  std::size_t ticked = 0;
  for (int i = 0; i < ctlExport->topLevelItemCount(); ++i) {
    const QTreeWidgetItem& kind = *ctlExport->topLevelItem(i);
    for (int k = 0; k < kind.childCount(); ++k) {
      ticked += kind.child(k)->checkState(kNameColumn) == Qt::Checked ? 1 : 0;
    }
  }
  return ticked;
}

// A kind's tick changes those of all its records, each for itself.
void ExportDialog::ShowCountSoon() {
  if (std::exchange(countWaits_, true)) return;
  const auto show = [this] {
    countWaits_ = false;
    ShowCount();
  };
  QMetaObject::invokeMethod(this, show, Qt::QueuedConnection);
}

void ExportDialog::ShowCount() {
  const std::size_t ticked = Ticked();
  const std::size_t all = records_.size() + drawings_.size() + terminals_.size();
  bool any = false;
  for (int i = 0; i < ctlExport->topLevelItemCount(); ++i) {
    any = any || ctlExport->topLevelItem(i)->checkState(kNameColumn) != Qt::Unchecked;
  }
  cmdExportDatei->setEnabled(any);
  lblExport->setText(tr("%1 von %2 angekreuzt. Gespeichert wird, was in der Datenbank steht; "
                        "Änderungen, die noch nicht gespeichert sind, kommen nicht mit.")
                         .arg(ticked)
                         .arg(all));
}

Project ExportDialog::Chosen() const {
  Project project;
  for (int i = 0; i < ctlExport->topLevelItemCount(); ++i) {
    const QTreeWidgetItem& item = *ctlExport->topLevelItem(i);
    if (item.checkState(kNameColumn) == Qt::Unchecked) continue;
    project.kinds.insert(KindOf(item));
    if (item.checkState(kNameColumn) == Qt::PartiallyChecked) project.partly.insert(KindOf(item));
    TakeTicked(project, item);
  }
  return project;
}

void ExportDialog::TakeTicked(Project& project, const QTreeWidgetItem& kindItem) const {
  const ProjectKind kind = KindOf(kindItem);
  std::set<TerminalId> terminals;
  for (int i = 0; i < kindItem.childCount(); ++i) {
    const QTreeWidgetItem& item = *kindItem.child(i);
    if (item.checkState(kNameColumn) != Qt::Checked) continue;
    const std::size_t index = IndexOf(item);
    if (kind == ProjectKind::Drawing) {
      project.drawings.push_back(drawings_[index]);
    } else if (kind == ProjectKind::Inventory) {
      terminals.insert(terminals_[index]);
    } else {
      project.records.push_back(records_[index].record);
    }
  }
  const auto& entries = services_.journal.Entries();
  std::copy_if(entries.begin(), entries.end(), std::back_inserter(project.inventory),
               [&](const JournalEntry& entry) { return terminals.count(entry.terminal) > 0; });
}

// Kept for itself until it is exported: the editor's own drawing stays as it is.
void ExportDialog::cmdExportZeichnung_Click() {
  const auto path = services_.person.OpenFile("Zeichnung hinzufügen", kDrawingFilter);
  if (!path) return;
  const auto bytes = ReadFile(*path, WmfLimits().fileBytes);
  if (!bytes) throw std::runtime_error("Die Datei \"" + *path + "\" kann nicht gelesen werden");
  const auto [width, height] = services_.display();
  const LoadedDrawing loaded = LooksLikePic(*bytes)
                                   ? ReadPic(*bytes, height, services_.fonts)
                                   : ReadWmf(*bytes, width, height, services_.fonts);
  if (!loaded.error.empty()) return services_.person.Message(loaded.error, Icon::Exclamation);
  const QString name = QFileInfo(Text(*path)).completeBaseName() + QStringLiteral(".wmf");
  drawings_.push_back({name.toStdString(), loaded.drawing});
  {
    const QSignalBlocker blocker(ctlExport);
    AddEntry(ProjectKind::Drawing, {}, name, drawings_.size() - 1);
    ShowKinds();
  }
  QTreeWidgetItem* const kind = KindItem(ProjectKind::Drawing);
  ctlExport->expandItem(kind);
  ctlExport->scrollToItem(kind->child(kind->childCount() - 1));
  ShowCount();
}

void ExportDialog::cmdExportDatei_Click() {
  const Project project = Chosen();
  const std::size_t ticked = Ticked();
  const auto path = services_.person.SaveFile("Projekt exportieren", kProjectFilter);
  if (!path) return;
  const auto text = ProjectText(project, ShownProgress(this, tr("Schreibt die Datei …")));
  if (!text) return;
  if (const auto reason = WriteFile(*path, *text)) {
    return services_.person.Message(
        "Die Datei konnte nicht geschrieben werden:\n" + *path + "\n" + *reason, Icon::Exclamation);
  }
  Q_EMIT Finished(tr("Export nach %1: %2 geschrieben").arg(FileName(*path)).arg(ticked));
  accept();
}

}  // namespace kelvo
