#include "bus/search_page.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTableView>
#include <algorithm>
#include <cmath>
#include <exception>

#include "base/wire_text.h"
#include "bus/addresses.h"
#include "bus/stored_terminals.h"
#include "bus/terminal_list_model.h"
#include "bus/tick_list.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

// Above it are the addresses that transfers need: nobody's, and that of all, who would all answer.
constexpr int kUsualLimit = kClosingAddress - 1;

// Of several changes some may have been stored when the next one fails: the list shows them.
class StaleList {
 public:
  explicit StaleList(TerminalListModel& list) : list_(list) {}
  ~StaleList() {
    if (std::uncaught_exceptions() > failing_) list_.ReloadNow();
  }
  StaleList(const StaleList&) = delete;
  StaleList& operator=(const StaleList&) = delete;

 private:
  TerminalListModel& list_;
  int failing_ = std::uncaught_exceptions();
};

}  // namespace

SearchPage::SearchPage(Services services, QWidget* parent)
    : QWidget(parent),
      services_(std::move(services)),
      search_({services_.exchange, services_.state, services_.reopenPort}),
      quickSearch_({services_.exchange, services_.com1, services_.loop, services_.state,
                    services_.reopenPort}),
      model_(new TerminalListModel(services_.terminals, this)) {
  auto* page = new QVBoxLayout(this);
  page->addWidget(MakeSearch(), 3);
  page->addWidget(MakeStored(), 2);
  ConnectControls();
  SetSearching(false);
}

QWidget* SearchPage::MakeSearch() {
  auto* group = new QGroupBox(tr("Suche am Bus"));
  txtmaxDovu = Named(new QLineEdit(QString::number(kUsualLimit)), "txtmaxDovu");
  txtmaxDovu->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0")) * 8);
  txtmaxDovu->setToolTip(tr("Auf 255 hören alle Terminals, auf 254 soll keines hören."));
  cmdDovusuchen =
      MakeButton("cmdDovusuchen", tr("Anzeigen s&uchen"),
                 tr("Fragt jede Adresse ab 0. Jedes gefundene Terminal zeigt seine Adresse an. Auf "
                    "240 x 128 Punkten sieht man davon nur die Nummer."));
  cmdDovuSchnellsuche =
      MakeButton("cmdDovuSchnellsuche", tr("Schnellsuche"),
                 tr("Stellt dieselben Fragen, wartet aber nur so lange wie nötig; was zweifelhaft "
                    "ist, wird noch einmal in Ruhe gefragt."));
  cmdDovuAbbrechen = MakeButton("cmdDovuAbbrechen", tr("Abb&rechen"),
                                tr("Beendet die Suche nach der jetzigen Adresse (Esc)."));
  MakeProgress();
  MakeResultList();
  cmdDovuUebernehmen = MakeButton("cmdDovuUebernehmen", tr("übernehme&n"),
                                  tr("Speichert die angekreuzten Terminals, die noch nicht "
                                     "gespeichert sind."));
  cmdDovuExport = MakeButton("cmdDovuExport", tr("Als Te&xt speichern …"));

  auto* top = new QHBoxLayout;
  top->addWidget(LabelFor(txtmaxDovu, tr("bis Adress&e:")));
  top->addWidget(txtmaxDovu);
  top->addWidget(new QLabel(tr("0 … %1").arg(kLastBusAddress)));
  top->addWidget(cmdDovusuchen);
  top->addWidget(cmdDovuSchnellsuche);
  top->addWidget(cmdDovuAbbrechen);
  top->addWidget(ctlDovuFortschritt, 1);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(cmdDovuUebernehmen);
  bottom->addWidget(cmdDovuExport);
  bottom->addWidget(lblDovuStand, 1);
  auto* column = new QVBoxLayout(group);
  column->addLayout(top);
  column->addWidget(ctlDovuSuchListe, 1);
  column->addLayout(bottom);
  return group;
}

void SearchPage::MakeProgress() {
  ctlDovuFortschritt = Named(new QProgressBar, "ctlDovuFortschritt");
  ctlDovuFortschritt->setAccessibleName(tr("Fortschritt der Suche"));
  QSizePolicy policy = ctlDovuFortschritt->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  ctlDovuFortschritt->setSizePolicy(policy);
  lblDovuStand = Named(new QLabel, "lblDovuStand");
  lblDovuStand->setTextFormat(Qt::PlainText);
  lblDovuStand->setWordWrap(true);
}

void SearchPage::MakeResultList() {
  const QStringList titles{tr("Beschreibung"), tr("Testergebnis"), tr("Rückgabewert"),
                           tr("Checksummenfähig")};
  ctlDovuSuchListe = Named(new TickList(titles, {26, 22, 22}), "ctlDovuSuchListe");
  ctlDovuSuchListe->setAlternatingRowColors(true);
  ctlDovuSuchListe->setAccessibleName(tr("Ergebnis der Suche"));
}

QWidget* SearchPage::MakeStored() {
  auto* group = new QGroupBox(tr("gespeicherte Terminals"));
  ctlDovuListe = Named(new QTableView, "ctlDovuListe");
  ctlDovuListe->setModel(model_);
  ctlDovuListe->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlDovuListe->setSelectionMode(QAbstractItemView::SingleSelection);
  ctlDovuListe->setTabKeyNavigation(false);
  ctlDovuListe->verticalHeader()->hide();
  ctlDovuListe->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 8);
  ctlDovuListe->horizontalHeader()->setSectionResizeMode(TerminalListModel::Bezeichnung,
                                                         QHeaderView::Stretch);
  ctlDovuListe->setAccessibleName(tr("gespeicherte Terminals"));
  cmdDovuSenden = MakeButton("cmdDovuSenden", tr("An aktive Ter&minals senden …"),
                             tr("Sendet die Zeichnung an die gespeicherten Terminals."));
  cmdDovuAusstatten =
      MakeButton("cmdDovuAusstatten", tr("Terminal ausstatten …"),
                 tr("Schreibt in ein Ersatzgerät, was in einem anderen Terminal liegt."));
  cmdDovuDatenblatt =
      MakeButton("cmdDovuDatenblatt", tr("Datenblatt …"),
                 tr("Zeigt das Datenblatt des gewählten Terminals, zum Drucken und als PDF."));
  cmdDovuNeu = MakeButton("cmdDovuNeu", tr("neues &Terminal …"),
                          tr("Speichert ein Terminal, ohne danach zu suchen."));
  cmdClearDovuData = MakeButton("cmdClearDovuData", tr("alle &löschen"),
                                tr("Löscht alle gespeicherten Terminals, nach einer Rückfrage."));
  auto* column = new QVBoxLayout(group);
  column->addWidget(ctlDovuListe, 1);
  column->addLayout(ButtonRow(
      {cmdDovuSenden, cmdDovuAusstatten, cmdDovuDatenblatt, cmdDovuNeu, cmdClearDovuData}));
  return group;
}

void SearchPage::ConnectControls() {
  Operator& person = services_.person;
  OnSend(cmdDovusuchen, this, person, &SearchPage::cmdDovusuchen_Click);
  OnSend(cmdDovuSchnellsuche, this, person, &SearchPage::cmdDovuSchnellsuche_Click);
  OnClick(cmdDovuAbbrechen, this, person, &SearchPage::cmdDovuAbbrechen_Click, Speaks::ToStop);
  OnClick(cmdDovuUebernehmen, this, person, &SearchPage::cmdDovuUebernehmen_Click);
  OnClick(cmdDovuExport, this, person, &SearchPage::cmdDovuExport_Click);
  OnClick(cmdDovuAusstatten, this, person, &SearchPage::cmdDovuAusstatten_Click);
  OnClick(cmdDovuDatenblatt, this, person, &SearchPage::cmdDovuDatenblatt_Click);
  OnClick(cmdDovuNeu, this, person, &SearchPage::cmdDovuNeu_Click);
  OnClick(cmdClearDovuData, this, person, &SearchPage::cmdClearDovuData_Click);
  OnClick(cmdDovuSenden, this, person, &SearchPage::cmdDovuSenden_Click);
  connect(txtmaxDovu, &QLineEdit::editingFinished, this, &SearchPage::txtmaxDovu_LostFocus);
  connect(txtmaxDovu, &QLineEdit::returnPressed, cmdDovusuchen, &QPushButton::click);
  AddShortcut(cmdDovuAbbrechen, QKeySequence(Qt::Key_Escape));
  connect(model_, &TerminalListModel::Refused, this, [] { NoteRefusal(); });
  // Later, because a message would take the focus away from the cell that is being left.
  connect(
      model_, &TerminalListModel::Refused, this,
      [&person](const QString& reason) { person.Message(reason.toStdString(), Icon::Exclamation); },
      Qt::QueuedConnection);
  connect(model_, &TerminalListModel::dataChanged, this, &SearchPage::StoredChanged);
  connect(ctlDovuListe->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) { RowChosen(current.row()); });
}

// ---- the stored Terminals ----

void SearchPage::Refresh() {
  {
    const QScopedValueRollback<bool> selecting(selecting_, true);
    model_->Reload();
    SelectCurrent();
  }
  txtmaxDovu->selectAll();  // what is typed replaces it
  Q_EMIT StoredChanged();
}

void SearchPage::SelectCurrent() {
  const Recordset& terminals = services_.terminals;
  if (terminals.Bookmark() == 0) return;
  ctlDovuListe->setCurrentIndex(
      model_->index(static_cast<int>(terminals.Position()), TerminalListModel::Bezeichnung));
}

void SearchPage::RowChosen(int row) {
  if (selecting_ || row < 0) return;
  services_.terminals.MoveTo(static_cast<std::size_t>(row));
  TellAddress();
}

void SearchPage::TellAddress() {
  const Recordset& terminals = services_.terminals;
  if (terminals.Bookmark() == 0) return;
  if (const int address = CurrentAddress(terminals); address != kNoAddress) {
    Q_EMIT AddressChosen(address);
  }
}

void SearchPage::DeleteTerminal() {
  Recordset& terminals = services_.terminals;
  if (terminals.Bookmark() == 0) return;
  const std::string name = terminals.Text("Bezeichnung").value_or("");
  const std::int64_t bookmark = terminals.Bookmark();
  const Recordset::Row row = terminals.Current();
  terminals.Delete();
  terminals.MoveNext();
  if (terminals.Eof()) terminals.MoveLast();
  Refresh();
  TellAddress();
  services_.person.Done().Note("Löschen von „" + name + "“", [this, bookmark, row] {
    services_.terminals.Restore(bookmark, row);
    Refresh();
    TellAddress();
  });
}

void SearchPage::cmdDovuNeu_Click() {
  const auto typed = services_.person.Input("Adresse des neuen Terminals (0 … 255)",
                                            std::to_string(model_->FreeAddress()));
  if (!typed) return;
  const std::optional<int> address = model_->ReadAddress(Text(*typed));
  if (!address) return;
  const auto name = services_.person.Input("Bezeichnung des neuen Terminals", ResultName(*address));
  if (!name) return;
  // Nobody has asked it for its version. A checksum that it cannot compute shows at the first
  // transfer, but one that it is never asked for shows never.
  AddTerminal(*address, *name, true);
  Refresh();
  TellAddress();
}

void SearchPage::cmdClearDovuData_Click() {
  Recordset& terminals = services_.terminals;
  if (terminals.RecordCount() == 0) {
    return Q_EMIT Hint(tr("Nichts gelöscht: Es sind keine Terminals gespeichert."));
  }
  if (!services_.person.Ask("Alle gespeicherten Terminals löschen ?", Icon::Exclamation)) return;
  std::vector<std::pair<std::int64_t, Recordset::Row>> deleted;
  const StaleList stale(*model_);
  for (terminals.MoveFirst(); !terminals.Eof(); terminals.MoveNext()) {
    deleted.emplace_back(terminals.Bookmark(), terminals.Current());
    terminals.Delete();
  }
  Refresh();
  services_.person.Done().Note("Löschen aller Terminals", [this, deleted] {
    for (const auto& [bookmark, row] : deleted) services_.terminals.Restore(bookmark, row);
    Refresh();
  });
}

void SearchPage::cmdDovuSenden_Click() { Q_EMIT SendRequested(); }

void SearchPage::cmdDovuAusstatten_Click() { Q_EMIT EquipRequested(); }

void SearchPage::cmdDovuDatenblatt_Click() { Q_EMIT SheetRequested(); }

// ---- the results ----

void SearchPage::cmdDovuUebernehmen_Click() {
  std::vector<std::int64_t> added;
  int known = 0;
  const StaleList stale(*model_);
  for (int position = 1; position <= ctlDovuSuchListe->Rows(); ++position) {
    if (!ctlDovuSuchListe->Ticked(position - 1)) continue;
    if (TakeOver(position)) {
      added.push_back(services_.terminals.Bookmark());
    } else {
      ++known;
    }
  }
  if (added.empty() && known == 0) {
    return Q_EMIT Hint(results_.empty()
                           ? tr("Nichts übernommen: Es ist noch nichts gesucht worden.")
                           : tr("Nichts übernommen: Es ist kein gefundenes Terminal angekreuzt."));
  }
  Refresh();
  lblDovuStand->setText(
      tr("%1 übernommen, %2 waren schon gespeichert.").arg(added.size()).arg(known));
  if (added.empty()) return;
  services_.person.Done().Note("Übernehmen der Suchergebnisse", [this, added] {
    for (const std::int64_t bookmark : added) {
      if (services_.terminals.MoveToBookmark(bookmark)) services_.terminals.Delete();
    }
    Refresh();
  });
}

// Stores the result at a position (from 1) of the list; false when its address is stored already.
bool SearchPage::TakeOver(int position) {
  const std::int64_t address = position - 1;
  if (services_.terminals.FindFirst("Adresse", address)) return false;
  const SearchResult& result = results_[static_cast<std::size_t>(address)];
  AddTerminal(address, ResultName(result.address), result.checksum);
  return true;
}

void SearchPage::AddTerminal(std::int64_t address, const std::string& name, bool checksum) {
  Recordset& terminals = services_.terminals;
  terminals.AddNew();
  terminals.Set("Adresse", address);
  terminals.Set("Bezeichnung", name);
  terminals.Set("aktiv", std::int64_t{1});
  terminals.Set("Checksum", std::int64_t{checksum});
  terminals.Update();
  terminals.MoveLast();
}

void SearchPage::cmdDovuExport_Click() {
  const auto name = services_.person.SaveFile("Ergebnis der Suche speichern", "Text (txt) |*.txt");
  if (!name) return;
  const auto reason = WriteFile(*name, SearchReport(results_));
  if (!reason) return Hint(tr("Das Ergebnis der Suche ist gespeichert: %1").arg(Text(*name)));
  services_.person.Message("Die Datei \"" + *name + "\" kann nicht geschrieben werden: " + *reason,
                           Icon::Exclamation);
}

}  // namespace kelvo
