#include "inventory_page/inventory_view.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QShortcut>
#include <QTableView>

#include "inventory/journal_text.h"
#include "link/addresses.h"
#include "widgets/column_fit.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/tame_text.h"
#include "widgets/texts.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

constexpr int kLeastLines = 8;  // of the table and the warning

QLabel* MakeLine(const char* name) {
  auto* const label = Named(new QLabel, name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

QString DisagreementText(const Room::Disagreement& disagreement) {
  const auto& [before, read, least, most] = disagreement;
  const QString expected = least == most ? QString::number(least)
                           : least == 0  ? InventoryView::tr("höchstens %1").arg(most)
                                         : InventoryView::tr("%1 bis %2").arg(least).arg(most);
  return InventoryView::tr(
             "Achtung: Am %1 meldete das Terminal %2 Byte frei; nach dem, was von "
             "hier geschrieben wurde, müssten es %3 sein. Getauscht, oder von anderer "
             "Stelle beschrieben? Was davor geschrieben wurde, gilt als unbekannt.")
      .arg(MomentText(read.time))
      .arg(read.bytes)
      .arg(expected);
}

QString Entries(std::size_t count) {
  return count == 1 ? InventoryView::tr("1 Eintrag") : InventoryView::tr("%1 Einträge").arg(count);
}

// What was written since the Terminal was erased, or ever.
QString WrittenText(const Inventory& inventory) {
  const std::size_t count = inventory.Items().size();
  const std::size_t doubts = inventory.Doubtful().size();
  const QString uncertain = InventoryView::tr("%1, ungewiss").arg(Entries(doubts));
  if (count == 0 && doubts > 0) return uncertain + u'.';
  std::size_t characters = 0;
  for (const auto& [key, held] : inventory.Items()) characters += ItemBytes(held.item);
  if (count > 0) {
    const QString together =
        characters > 0 ? InventoryView::tr(", zusammen %1 Zeichen").arg(characters) : QString();
    return InventoryView::tr("%1 von hier geschrieben%2%3.")
        .arg(Entries(count), together, doubts > 0 ? u';' + (u' ' + uncertain) : QString());
  }
  if (inventory.WrittenSince()) {
    return InventoryView::tr("Was von hier geschrieben wurde, liegt dort nicht mehr.");
  }
  return inventory.Erased()
             ? InventoryView::tr("Seit dem Löschen (%1) wurde von hier nichts geschrieben")
                   .arg(MomentText(*inventory.Erased()))
             : InventoryView::tr("Von hier wurde noch nichts in dieses Terminal geschrieben.");
}

// What else lies there, as the end of those words.
QString ElseText(const Inventory& inventory) {
  const bool none = inventory.Items().empty() && inventory.Doubtful().empty();
  const bool goesOn = none && inventory.Erased() && !inventory.WrittenSince();
  if (inventory.KnownEmptyBefore()) {
    return goesOn ? InventoryView::tr("; sonst liegt dort nichts.")
                  : InventoryView::tr(" Sonst liegt dort nichts: Es wurde von hier gelöscht.");
  }
  return goesOn ? InventoryView::tr("; was dort liegt, weiß kelvo nicht.")
                : InventoryView::tr(" Was vorher dort lag, weiß kelvo nicht.");
}

}  // namespace

InventoryView::InventoryView(Services services, QWidget* parent)
    : QWidget(parent), services_(std::move(services)) {
  Named(this, "ctlBestandSeite");
  lblBestand = MakeLine("lblBestand");
  lblBestandWarnung = MakeLine("lblBestandWarnung");
  lblBestand->setAccessibleName(tr("Stand"));
  lblBestandWarnung->setAccessibleName(tr("Warnung"));
  QFont bold = font();
  bold.setBold(true);
  lblBestandWarnung->setFont(bold);
  MakeTable();
  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(0, 0, 0, 0);
  page->addWidget(MakeChoice());
  page->addWidget(MakeRoomOfTable(), 1);
  page->addWidget(lblBestand);
  cmdBestandText = MakeButton("cmdBestandText", tr("Gan&zer Text …"),
                              tr("Zeigt, was geschrieben wurde, Zeichen für Zeichen (Enter)."));
  cmdBestandSatz = MakeButton("cmdBestandSatz", tr("Zum Satz"),
                              tr("Zeigt den Satz der Datenbank auf seiner Seite."));
  cmdBestandKopieren = MakeButton("cmdBestandKopieren", tr("Liste &kopieren"),
                                  tr("Kopiert die gewählten Zeilen, sonst alle (Strg+C)."));
  cmdBestandAusstatten =
      MakeButton("cmdBestandAusstatten", tr("Terminal ausstatten …"),
                 tr("Schreibt in ein Ersatzgerät, was in einem Terminal liegt."));
  cmdBestandVergleichen =
      MakeButton("cmdBestandVergleichen", tr("Vergleichen …"),
                 tr("Zeigt nebeneinander, was gelesen, geschrieben und gespeichert ist."));
  page->addLayout(ButtonRow({cmdBestandText, cmdBestandSatz, cmdBestandKopieren,
                             cmdBestandVergleichen, cmdBestandAusstatten}));
  ConnectClick(cmdBestandVergleichen, services_.person, Speaks::No,
               [this] { Q_EMIT CompareRequested(); });
  OnClick(cmdBestandText, this, services_.person, &InventoryView::cmdBestandText_Click);
  OnClick(cmdBestandSatz, this, services_.person, &InventoryView::cmdBestandSatz_Click);
  OnClick(cmdBestandAusstatten, this, services_.person, &InventoryView::cmdBestandAusstatten_Click);
  OnClick(cmdBestandKopieren, this, services_.person, &InventoryView::cmdBestandKopieren_Click);
  auto* const keys = new QShortcut(QKeySequence::Copy, ctlBestand, nullptr, nullptr,
                                   Qt::WidgetWithChildrenShortcut);
  connect(keys, &QShortcut::activated, cmdBestandKopieren, &QPushButton::click);
  EnableButtons();
}

QWidget* InventoryView::MakeChoice() {
  auto* const bar = new QWidget;
  auto* const row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  cboBestandTerminal = Named(new QComboBox, "cboBestandTerminal");
  cboBestandTerminal->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cboBestandTerminal->setMinimumContentsLength(24);
  row->addWidget(LabelFor(cboBestandTerminal, tr("Bestand von:")));
  row->addWidget(cboBestandTerminal, 1);
  connect(cboBestandTerminal, &QComboBox::activated, this, &InventoryView::ShowNow);
  return bar;
}

// A warning takes its place from the table, so that no button below moves.
QWidget* InventoryView::MakeRoomOfTable() {
  auto* const room = new QWidget;
  auto* const column = new QVBoxLayout(room);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(lblBestandWarnung);
  column->addWidget(ctlBestand, 1);
  room->setMinimumHeight(fontMetrics().lineSpacing() * kLeastLines);
  return room;
}

void InventoryView::MakeTable() {
  sorted_.setSourceModel(&model_);
  sorted_.setSortRole(InventoryModel::kSortRole);
  ctlBestand = Named(new QTableView, "ctlBestand");
  ctlBestand->setModel(&sorted_);
  ctlBestand->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlBestand->setWordWrap(false);
  ctlBestand->setTabKeyNavigation(false);
  ctlBestand->setSortingEnabled(true);
  ctlBestand->setAccessibleName(tr("Bestand des Terminals"));
  ctlBestand->verticalHeader()->hide();
  ctlBestand->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * 3 / 2);
  columns_ = new ColumnFit(ctlBestand, ctlBestand->horizontalHeader(),
                           {{InventoryModel::Database, tr("wie zuletzt ge…")},
                            {InventoryModel::Rests, tr("ungewiss: Löschen…")},
                            {InventoryModel::Name, tr("Display löschen")}});
  ctlBestand->sortByColumn(InventoryModel::Kind, Qt::AscendingOrder);
  connect(ctlBestand, &QAbstractItemView::activated, this, &InventoryView::OpenCurrent);
  connect(ctlBestand->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &InventoryView::EnableButtons);
}

void InventoryView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  ShowNow();
}

void InventoryView::Refresh() {
  if (isVisible()) ShowNow();
}

TerminalId InventoryView::Shown() const {
  const int chosen = cboBestandTerminal->currentIndex();
  if (chosen <= 0) return services_.listener();
  return terminals_[static_cast<std::size_t>(chosen - 1)];
}

bool InventoryView::Listens(const TerminalId& terminal) const {
  return services_.hearing() == Hearing::Listens && terminal == services_.listener();
}

QString InventoryView::ListenerText() const {
  switch (services_.hearing()) {
    case Hearing::Disconnected:
      return tr("niemand, getrennt");
    case Hearing::Nobody:
      return tr("keines gewählt");
    case Hearing::Silent:
      return tr("%1, antwortet nicht").arg(TerminalText(services_.listener()));
    case Hearing::Unknown:
      return tr("Terminal nicht bekannt");
    case Hearing::Listens:
      break;
  }
  return TerminalText(services_.listener());
}

// Who ends a transfer selects an address that no Terminal has, and whom a search has asked last the
// operator does not mean.
bool InventoryView::NamesNobody() const {
  const Hearing hearing = services_.hearing();
  const int last = services_.listener().address;
  return hearing == Hearing::Nobody || hearing == Hearing::Unknown || last == kUnknownAddress ||
         last == kClosingAddress;
}

// What stands there while the one that was selected last does not listen.
QString InventoryView::AbsenceText() const {
  if (cboBestandTerminal->currentIndex() > 0 || services_.hearing() == Hearing::Listens) return {};
  const TerminalId last = services_.listener();
  if (NamesNobody()) {
    const QString who = services_.hearing() == Hearing::Unknown
                            ? tr("Wer zuhört, ist nicht bekannt")
                            : tr("Niemand hört zu");
    return tr("%1; was geschrieben wurde, steht bei den Terminals der Auswahl.").arg(who);
  }
  if (services_.hearing() == Hearing::Silent) {
    return tr("%1 antwortet nicht; hier steht, was zuletzt dorthin geschrieben wurde.")
        .arg(TerminalText(last));
  }
  return tr("Niemand hört zu; hier steht, was zuletzt für %1 geschrieben wurde.")
      .arg(TerminalText(last));
}

QString InventoryView::TerminalText(const TerminalId& terminal) const {
  const QString device = QFileInfo(Text(terminal.device)).fileName();
  const QString at = device.isEmpty() ? tr("kein Anschluss") : device;
  if (terminal.address == kUnknownAddress) return tr("ohne gewählte Adresse, %1").arg(at);
  if (terminal.address == kAllAddresses) return tr("alle an %1").arg(at);
  const std::string name = services_.nameOf(terminal.address);
  return tr("%1%2, %3")
      .arg(terminal.address)
      .arg(name.empty() ? QString() : " – " + Text(name))
      .arg(at);
}

void InventoryView::ListTerminals() {
  const bool chosen = cboBestandTerminal->currentIndex() > 0;
  const TerminalId before = Shown();
  terminals_ = services_.journal.Terminals();
  cboBestandTerminal->clear();
  cboBestandTerminal->addItem(Tamed(tr("wer zuhört: %1").arg(ListenerText())));
  for (const TerminalId& terminal : terminals_) {
    cboBestandTerminal->addItem(Tamed(TerminalText(terminal)));
    if (chosen && terminal == before) {
      cboBestandTerminal->setCurrentIndex(cboBestandTerminal->count() - 1);
    }
  }
}

void InventoryView::ShowNow() {
  services_.journal.Refresh();
  ListTerminals();
  const InventoryModel::Row* const row = Current();
  const std::optional<ItemKey> current = row == nullptr ? std::nullopt : std::optional(row->key);
  const TerminalId shown = Shown();
  const bool nobody = NamesNobody() && !AbsenceText().isEmpty();
  const Inventory inventory = nobody ? Inventory() : services_.journal.Of(shown);
  model_.Show(inventory, services_.records(), Listens(shown));
  columns_->Fit();
  const int again = current ? model_.RowOf(*current) : -1;
  if (again >= 0) ctlBestand->selectRow(sorted_.mapFromSource(model_.index(again, 0)).row());
  ShowState(inventory);
  if (nobody) lblBestand->setText(AbsenceText());
  EnableButtons();
}

void InventoryView::ShowState(const Inventory& inventory) {
  const QString absence = AbsenceText();
  QString text = (absence.isEmpty() ? QString() : absence + u' ') + WrittenText(inventory) +
                 ElseText(inventory);
  const bool shownBeside = Listens(Shown()) && services_.roomShown();
  const auto& read = inventory.FreeBytes().LastReading();
  if (read && !shownBeside) {
    text += tr(" Frei waren %1 Byte, gelesen %2.").arg(read->bytes).arg(MomentText(read->time));
  }
  if (const auto lines = services_.journal.Unreadable()) {
    text += tr(" %1 Zeilen der Aufzeichnung sind nicht lesbar.").arg(lines);
  }
  lblBestand->setText(text);
  const auto& disagreement = inventory.FreeBytes().LastDisagreement();
  lblBestandWarnung->setVisible(disagreement.has_value());
  if (disagreement) lblBestandWarnung->setText(DisagreementText(*disagreement));
}

const InventoryModel::Row* InventoryView::Current() const {
  const QModelIndex index = sorted_.mapToSource(ctlBestand->currentIndex());
  return index.isValid() ? &model_.At(index.row()) : nullptr;
}

void InventoryView::EnableButtons() {
  const InventoryModel::Row* const row = Current();
  cmdBestandText->setEnabled(row != nullptr && row->held.has_value());
  cmdBestandSatz->setEnabled(row != nullptr && row->against.record != 0);
  cmdBestandKopieren->setEnabled(model_.rowCount() > 0);
}

void InventoryView::OpenCurrent() {
  if (cmdBestandText->isEnabled()) cmdBestandText->click();
}

void InventoryView::cmdBestandText_Click() {
  const InventoryModel::Row* const row = Current();
  if (row == nullptr || !row->held) return;
  const Held held = *row->held;
  QDialog dialog(this);
  dialog.setObjectName(QStringLiteral("frmBestandText"));
  dialog.setWindowTitle(
      tr("%1, geschrieben %2").arg(Text(ItemText(held.item.key))).arg(MomentText(held.written)));
  auto* const column = new QVBoxLayout(&dialog);
  auto* const text = Named(new QPlainTextEdit, "txtBestandText");
  text->setReadOnly(true);
  text->setFont(WireFont());
  text->setAccessibleName(tr("Was geschrieben wurde"));
  const bool macro = held.item.key.kind == ItemKind::Macro;
  text->setPlainText(GlyphText(macro ? std::string(ItemContent(held.item)) : held.item.command));
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  buttons->button(QDialogButtonBox::Close)->setText(tr("Schließen"));
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  column->addWidget(text);
  column->addWidget(buttons);
  dialog.resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 18);
  dialog.exec();
}

void InventoryView::cmdBestandSatz_Click() {
  const InventoryModel::Row* const row = Current();
  if (row == nullptr || row->against.record == 0) return;
  Q_EMIT RecordWanted(row->key.kind, row->against.record);
}

void InventoryView::cmdBestandAusstatten_Click() { Q_EMIT EquipRequested(); }

void InventoryView::cmdBestandKopieren_Click() {
  QModelIndexList rows = ctlBestand->selectionModel()->selectedRows();
  if (rows.isEmpty()) {
    for (int row = 0; row < sorted_.rowCount(); ++row) rows << sorted_.index(row, 0);
  }
  QStringList lines;
  for (const QModelIndex& index : rows) {
    const int row = sorted_.mapToSource(index).row();
    QStringList cells;
    for (int column = 0; column < InventoryModel::ColumnCount; ++column) {
      cells << model_.Cell(row, column);
    }
    lines << cells.join('\t');
  }
  QApplication::clipboard()->setText(lines.join('\n') + '\n');
}

}  // namespace kelvo
