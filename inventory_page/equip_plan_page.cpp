#include "inventory_page/equip_plan_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

#include "bus/stored_terminals.h"
#include "bus/terminal_search.h"
#include "bus/tick_list.h"
#include "inventory/equip_target.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/tame_text.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr std::size_t kLargestFile = 10'000'000;
constexpr char kFilter[] = "Bestand |*.txt";
constexpr int kBytesColumn = 2;
constexpr int kOutlookColumn = 3;
constexpr int kReadColumn = 2;

}  // namespace

EquipPlanPage::EquipPlanPage(const EquipServices& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  auto* right = new QVBoxLayout;
  right->addWidget(MakeTargets(), 2);
  right->addWidget(MakePlan(), 3);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(MakeSource(), 1);
  row->addLayout(right, 1);
  ConnectControls();
}

QWidget* EquipPlanPage::MakeSource() {
  auto* group = new QGroupBox(tr("Quelle"));
  cboAusstattenQuelle = Named(new QComboBox, "cboAusstattenQuelle");
  cboAusstattenQuelle->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cboAusstattenQuelle->setAccessibleName(tr("Quelle"));
  cmdAusstattenLaden =
      MakeButton("cmdAusstattenLaden", tr("&Laden …"), tr("Nimmt einen Bestand aus einer Datei."));
  cmdAusstattenSichern = MakeButton("cmdAusstattenSichern", tr("Si&chern …"),
                                    tr("Speichert diesen Bestand in einer Textdatei."));
  ctlAusstattenPosten =
      Named(new TickList({tr("Posten"), tr("Bezeichnung"), tr("Byte"), tr("am Ziel")}, {18, 18, 7}),
            "ctlAusstattenPosten");
  ctlAusstattenPosten->setAccessibleName(tr("Posten"));
  ctlAusstattenPosten->FitColumns({{1, tr("Display löschen")}});
  ctlAusstattenPosten->headerItem()->setToolTip(kBytesColumn,
                                                tr("mindestens, errechnet; was das Terminal dazu "
                                                   "braucht, sagt es nicht"));
  auto* column = new QVBoxLayout(group);
  column->addWidget(cboAusstattenQuelle);
  column->addWidget(ctlAusstattenPosten, 1);
  column->addLayout(ButtonRow({cmdAusstattenLaden, cmdAusstattenSichern}));
  lblAusstattenGesichert = Named(new QLabel, "lblAusstattenGesichert");
  lblAusstattenGesichert->setWordWrap(true);
  lblAusstattenGesichert->hide();
  column->addWidget(lblAusstattenGesichert);
  return group;
}

QWidget* EquipPlanPage::MakeTargets() {
  auto* group = new QGroupBox(tr("Ziele"));
  ctlAusstattenZiele =
      Named(new TickList({tr("Terminal"), tr("Checksumme"), tr("gelesen")}, {27, 15}),
            "ctlAusstattenZiele");
  ctlAusstattenZiele->setAccessibleName(tr("Ziele"));
  ctlAusstattenZiele->KeepAddresses();
  ctlAusstattenZiele->FitColumns({{0, tr("✓ Halle…, Adresse 255")}, {2, tr("2.10F, 8192 Byte…")}});
  cmdAusstattenLesen = MakeButton("cmdAusstattenLesen", tr("&Ziele lesen"),
                                  tr("Fragt die angekreuzten nach Adresse, Version und freiem "
                                     "Platz. Geschrieben wird nichts."));
  chkAusstattenLoeschen =
      Named(new QCheckBox(tr("EEPROM der Ziele &vorher ganz löschen")), "chkAusstattenLoeschen");
  auto* column = new QVBoxLayout(group);
  column->addWidget(ctlAusstattenZiele, 1);
  column->addLayout(ButtonRow({cmdAusstattenLesen, chkAusstattenLoeschen}));
  return group;
}

QWidget* EquipPlanPage::MakePlan() {
  auto* group = new QGroupBox(tr("Plan"));
  txtAusstattenPlan = Named(new QPlainTextEdit, "txtAusstattenPlan");
  txtAusstattenPlan->setReadOnly(true);
  txtAusstattenPlan->setTabChangesFocus(true);
  txtAusstattenPlan->setAccessibleName(tr("Plan"));
  cmdAusstatten = MakeButton("cmdAusstatten", tr("&Ausstatten …"),
                             tr("Schreibt nach einer Rückfrage, was der Plan sagt."));
  auto* column = new QVBoxLayout(group);
  column->addWidget(txtAusstattenPlan, 1);
  return group;
}

void EquipPlanPage::ConnectControls() {
  Operator& person = services_.person;
  OnClick(cmdAusstattenLaden, this, person, &EquipPlanPage::cmdAusstattenLaden_Click);
  OnClick(cmdAusstattenSichern, this, person, &EquipPlanPage::cmdAusstattenSichern_Click);
  OnSend(cmdAusstattenLesen, this, person, &EquipPlanPage::cmdAusstattenLesen_Click);
  connect(cboAusstattenQuelle, &QComboBox::currentIndexChanged, this,
          [this] { cboAusstattenQuelle_Click(); });
  const auto show = [this] { ShowPlan(); };
  connect(chkAusstattenLoeschen, &QCheckBox::toggled, this, show);
  connect(ctlAusstattenPosten, &QTreeWidget::itemChanged, this, show);
  connect(ctlAusstattenZiele, &QTreeWidget::itemChanged, this, show);
  connect(ctlAusstattenZiele, &QTreeWidget::currentItemChanged, this, show);
}

void EquipPlanPage::Refresh() {
  services_.journal.Refresh();
  FillSources();
  FillTargets();
  cboAusstattenQuelle_Click();
  cboAusstattenQuelle->setFocus();
}

// The stored Terminals are those of the line that is open.
QString EquipPlanPage::NameOf(const TerminalId& id) const {
  EquipTarget target{id, {}, {}};
  if (id.device == services_.device()) {
    const auto stored = StoredTerminalAt(services_.terminals, id.address);
    if (stored) target.name = stored->name;
  }
  return Text(TargetText(target));
}

void EquipPlanPage::FillSources() {
  const QSignalBlocker blocker(cboAusstattenQuelle);
  const QString before = cboAusstattenQuelle->currentText();
  std::erase_if(sources_, [](const Source& source) { return !source.file; });
  for (const TerminalId& id : services_.journal.Terminals()) {
    if (id.address == kUnknownAddress || services_.journal.Of(id).Items().empty()) continue;
    sources_.push_back({tr("Bestand von %1 an %2").arg(NameOf(id), Text(id.device)), id});
  }
  sources_.push_back({tr("Datensätze der Datenbank")});
  cboAusstattenQuelle->clear();
  for (const Source& source : sources_) cboAusstattenQuelle->addItem(Tamed(source.title));
  cboAusstattenQuelle->setCurrentIndex(std::max(0, cboAusstattenQuelle->findText(before)));
}

// The stored Terminals, and the one that is selected if it is none of them.
void EquipPlanPage::FillTargets() {
  const std::string device = services_.device();
  const std::optional<int> selected = services_.selected();
  filling_ = true;
  targets_.clear();
  readings_.clear();
  ctlAusstattenZiele->clear();
  bool listed = !selected;
  for (const StoredTerminal& stored : StoredTerminals(services_.terminals)) {
    const bool isSelected = stored.address == selected;
    listed = listed || isSelected;
    AddTarget({{device, stored.address}, stored.name, stored.checksum}, isSelected);
  }
  if (!listed) AddTarget({{device, *selected}, {}, {}}, true);
  filling_ = false;
}

void EquipPlanPage::AddTarget(EquipTarget target, bool ticked) {
  ctlAusstattenZiele->Add(
      {Text(TargetText(target)),
       target.checksum ? Text(YesNoText(*target.checksum)) : tr("nach Version"), QString()},
      ticked);
  targets_.push_back(std::move(target));
}

Equipment EquipPlanPage::EquipmentOf(const Source& source) const {
  const std::string origin = source.title.toStdString();
  if (source.file) {
    Equipment equipment = *source.file;
    equipment.origin = origin + (equipment.origin.empty() ? "" : " (" + equipment.origin + ")");
    return equipment;
  }
  if (!source.terminal) return kelvo::EquipmentOf(services_.records(), origin);
  return kelvo::EquipmentOf(services_.journal.Of(*source.terminal), origin);
}

void EquipPlanPage::cboAusstattenQuelle_Click() {
  const auto index = static_cast<std::size_t>(std::max(0, cboAusstattenQuelle->currentIndex()));
  if (index >= sources_.size()) return;
  equipment_ = EquipmentOf(sources_[index]);
  lblAusstattenGesichert->hide();
  UntickOrigin();
  FillItems();
  ShowPlan();
}

// What the source comes from is not to be written over but by the operator's own tick.
void EquipPlanPage::UntickOrigin() {
  filling_ = true;
  for (std::size_t i = 0; i < targets_.size(); ++i) {
    if (ViewOf(i).isOrigin) ctlAusstattenZiele->Tick(static_cast<int>(i), false);
  }
  filling_ = false;
}

// Of the records, which hold more than any Terminal is to have, the operator chooses.
void EquipPlanPage::FillItems() {
  const auto index = static_cast<std::size_t>(cboAusstattenQuelle->currentIndex());
  const bool all = sources_[index].terminal || sources_[index].file;
  filling_ = true;
  ctlAusstattenPosten->clear();
  for (const Item& item : equipment_.items) {
    ctlAusstattenPosten->Add(
        {Text(ItemText(item.key)), Text(item.name), QString::number(LeastBytes(item)), QString()},
        all);
  }
  filling_ = false;
}

EquipJob EquipPlanPage::Job() const {
  EquipJob job{equipment_, {}, chkAusstattenLoeschen->isChecked()};
  job.equipment.items.clear();
  for (std::size_t i = 0; i < equipment_.items.size(); ++i) {
    if (!ctlAusstattenPosten->Ticked(static_cast<int>(i))) continue;
    job.equipment.items.push_back(equipment_.items[i]);
  }
  const int settings = static_cast<int>(equipment_.items.size());
  if (settings == ctlAusstattenPosten->Rows() || !ctlAusstattenPosten->Ticked(settings)) {
    job.equipment.settings.clear();
  }
  for (std::size_t i = 0; i < targets_.size(); ++i) {
    if (ctlAusstattenZiele->Ticked(static_cast<int>(i))) job.targets.push_back(targets_[i]);
  }
  return job;
}

TargetView EquipPlanPage::ViewOf(std::size_t row) const {
  const auto source = static_cast<std::size_t>(cboAusstattenQuelle->currentIndex());
  TargetView view{targets_[row]};
  const auto reading = readings_.find(row);
  if (reading != readings_.end()) view.reading = reading->second;
  view.there = services_.journal.Of(view.target.id);
  view.isOrigin = source < sources_.size() && sources_[source].terminal == view.target.id;
  return view;
}

std::vector<TargetView> EquipPlanPage::Views() const {
  std::vector<TargetView> views;
  for (std::size_t i = 0; i < targets_.size(); ++i) {
    if (ctlAusstattenZiele->Ticked(static_cast<int>(i))) views.push_back(ViewOf(i));
  }
  return views;
}

void EquipPlanPage::ShowPlan() {
  if (filling_) return;
  const EquipJob job = Job();
  QString plan = Text(PlanText(job, Views())).trimmed();
  if (targets_.empty()) {
    plan +=
        tr("\nBekannt ist keines: „Verbindung prüfen“ stellt fest, wer zuhört; die Seite "
           "Terminals hat die Liste.");
  }
  txtAusstattenPlan->setPlainText(plan);
  cmdAusstatten->setEnabled(Obstacles(job).empty());
  cmdAusstattenLesen->setEnabled(!job.targets.empty());
  cmdAusstattenSichern->setEnabled(!job.equipment.items.empty());
  ShowOutlooks(job);
}

// For the target that is marked, else for the first that is ticked.
void EquipPlanPage::ShowOutlooks(const EquipJob& job) {
  int row = ctlAusstattenZiele->indexOfTopLevelItem(ctlAusstattenZiele->currentItem());
  for (int i = 0; row < 0 && i < ctlAusstattenZiele->Rows(); ++i) {
    if (ctlAusstattenZiele->Ticked(i)) row = i;
  }
  const std::optional<TargetView> view =
      row < 0 ? std::nullopt : std::optional(ViewOf(static_cast<std::size_t>(row)));
  const Inventory* const there = view ? &view->there : nullptr;
  filling_ = true;
  for (std::size_t i = 0; i < equipment_.items.size(); ++i) {
    const Item& item = equipment_.items[i];
    const Outlook outlook = OutlookOf(item, there, job.erase);
    ctlAusstattenPosten->SetText(static_cast<int>(i), kOutlookColumn,
                                 view ? Text(OutlookText(outlook, item, there)) : QString());
  }
  filling_ = false;
}

void EquipPlanPage::cmdAusstattenLaden_Click() {
  const auto path = services_.person.OpenFile("Bestand laden", kFilter);
  if (!path) return;
  const auto bytes = ReadFile(*path, kLargestFile);
  auto equipment = bytes ? ReadEquipmentFile(*bytes) : std::nullopt;
  if (!equipment) {
    services_.person.Message("Die Datei enthält keinen Bestand oder ist beschädigt.",
                             Icon::Exclamation);
    return;
  }
  const QString name = Text(path->substr(path->rfind('/') + 1));
  sources_.insert(sources_.begin(), {tr("Datei %1").arg(name), {}, *std::move(equipment)});
  {
    const QSignalBlocker blocker(cboAusstattenQuelle);
    cboAusstattenQuelle->insertItem(0, Tamed(sources_.front().title));
    cboAusstattenQuelle->setCurrentIndex(0);
  }
  cboAusstattenQuelle_Click();
}

void EquipPlanPage::cmdAusstattenSichern_Click() {
  const auto path = services_.person.SaveFile("Bestand sichern", kFilter);
  if (!path) return;
  const auto problem = WriteFile(*path, EquipmentFile(Job().equipment));
  if (problem) {
    return services_.person.Message(
        "Die Datei \"" + *path + "\" kann nicht geschrieben werden: " + *problem,
        Icon::Exclamation);
  }
  const QString said = tr("Der Bestand ist gesichert: %1").arg(Text(*path));
  lblAusstattenGesichert->setText(said);
  lblAusstattenGesichert->show();
  Q_EMIT Saved(said);
}

void EquipPlanPage::cmdAusstattenLesen_Click() {
  const Undertakings::Alone alone(services_.person.Begun(), "Die Ziele werden gelesen.");
  const std::optional<int> before = services_.selected();
  for (std::size_t row = 0; row < targets_.size() && services_.exchange.Alive(); ++row) {
    if (!ctlAusstattenZiele->Ticked(static_cast<int>(row))) continue;
    readings_[row] = AskTarget(services_.exchange, services_.state, targets_[row].id.address);
    ShowReading(row);
  }
  if (before && services_.exchange.Alive()) services_.exchange.SendString(SelectAddress(*before));
  ShowPlan();
}

void EquipPlanPage::ShowReading(std::size_t row) {
  const TargetReading& reading = readings_.at(row);
  const QString text =
      reading.Complete() ? tr("%1, %2 Byte frei").arg(Text(reading.version)).arg(reading.freeBytes)
                         : Text(reading.problem);
  ctlAusstattenZiele->SetText(static_cast<int>(row), kReadColumn, text);
}

}  // namespace kelvo
