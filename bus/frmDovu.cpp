#include "bus/frmDovu.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "base/val.h"
#include "bus/terminal_search.h"
#include "bus/tick_list.h"
#include "widgets/form.h"
#include "widgets/handlers.h"

namespace kelvo {
namespace {

constexpr int kStateColumn = 3;

// Colours 2 and 12 of the 16-colour palette.
constexpr QColor green(0, 128, 0);
constexpr QColor lightRed(255, 0, 0);

QString Text(const std::string& text) { return QString::fromStdString(text); }

bool IsYes(const std::string& field) { return Val(field) != 0; }

}  // namespace

frmDovu::frmDovu(Services services, QWidget* parent)
    : QDialog(parent),
      services_(std::move(services)),
      transfer_(services_.exchange, services_.loop) {
  Named(this, "frmDovu");
  setWindowTitle(tr("Zeichnung an aktive Terminals senden"));
  MakeList();
  lblMomentbitte = Named(new QLabel(tr("Moment bitte …")), "lblMomentbitte");
  lblErgebnis = Named(new QLabel, "lblErgebnis");
  lblErgebnis->setWordWrap(true);
  cmdSenden = MakeButton("cmdSenden", tr("&Senden"),
                         tr("Sind alle angekreuzt, geht die Zeichnung einmal an alle zugleich, "
                            "sonst an eines nach dem anderen."));
  cmdDovuAlleAktiv = MakeButton("cmdDovuAlleAktiv", tr("&Alle"), tr("Kreuzt alle an."));
  cmdDovuKeinsAktiv = MakeButton("cmdDovuKeinsAktiv", tr("&Keins"), tr("Kreuzt keines an."));
  cmdAbbruch = MakeButton("cmdAbbruch", {});
  cmdSenden->setDefault(true);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdDovuAlleAktiv);
  buttons->addWidget(cmdDovuKeinsAktiv);
  buttons->addWidget(lblMomentbitte);
  buttons->addStretch();
  buttons->addWidget(cmdSenden);
  buttons->addWidget(cmdAbbruch);
  auto* column = new QVBoxLayout(this);
  column->addWidget(ctlDovuAktivliste, 1);
  column->addWidget(lblErgebnis);
  column->addLayout(buttons);
  resize(fontMetrics().averageCharWidth() * 116, fontMetrics().lineSpacing() * 24);
  ConnectButtons();
  SetSending(false);
}

void frmDovu::MakeList() {
  const QStringList titles{tr("Terminal"), tr("Adresse"), tr("Checksumme"), tr("Zustand")};
  ctlDovuAktivliste = Named(new TickList(titles, {34, 12, 15}), "ctlDovuAktivliste");
  ctlDovuAktivliste->setAccessibleName(tr("Terminals"));
}

void frmDovu::ConnectButtons() {
  Operator& person = services_.person;
  OnClick(cmdSenden, this, person, &frmDovu::cmdSenden_Click);
  OnClick(cmdDovuAlleAktiv, this, person, &frmDovu::cmdDovuAlleAktiv_Click);
  OnClick(cmdDovuKeinsAktiv, this, person, &frmDovu::cmdDovuKeinsAktiv_Click);
  OnClick(cmdAbbruch, this, person, &frmDovu::cmdAbbruch_Click, Speaks::ToStop);
}

void frmDovu::Open() {
  if (!sending_) FillList();
  // Window modal and not a wait of its own: the transfer runs in the handler of cmdSenden.
  open();
}

void frmDovu::FillList() {
  const Recordset& terminals = services_.terminals;
  const auto names = terminals.Column("Bezeichnung");
  const auto addresses = terminals.Column("Adresse");
  const auto checksums = terminals.Column("Checksum");
  const auto active = terminals.Column("aktiv");
  entries_.clear();
  ctlDovuAktivliste->clear();
  for (std::size_t i = 0; i < names.size(); ++i) {
    TransferEntry entry;
    entry.address = RoundToEven(Val(addresses[i]));
    entry.checksum = IsYes(checksums[i]);
    entry.ticked = IsYes(active[i]);
    entries_.push_back(entry);
    ctlDovuAktivliste->Add({Text(names[i]), QString::number(entry.address),
                            Text(YesNoText(entry.checksum)), QString()},
                           entry.ticked);
  }
  cmdSenden->setEnabled(!entries_.empty());
  lblErgebnis->setText(entries_.empty() ? tr("Es sind keine Terminals gespeichert.") : QString());
}

void frmDovu::ShowEntry(std::size_t index) {
  const TransferEntry& entry = entries_[index];
  const int row = static_cast<int>(index);
  ctlDovuAktivliste->Tick(row, entry.ticked);
  ctlDovuAktivliste->topLevelItem(row)->setText(kStateColumn, Text(TransferStateText(entry)));
  ctlDovuAktivliste->Colour(row, entry.state == TransferState::Good ? green
                                 : entry.Failed()                   ? lightRed
                                                                    : QColor());
}

void frmDovu::TakeTicks() {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    entries_[i].ticked = ctlDovuAktivliste->Ticked(static_cast<int>(i));
  }
}

void frmDovu::TickAll(bool ticked) { ctlDovuAktivliste->TickAll(ticked); }

void frmDovu::SetSending(bool sending) {
  sending_ = sending;
  lblMomentbitte->setVisible(sending);
  // The ticks are the transfer's while it runs; the list can still be looked through.
  ctlDovuAktivliste->setSelectionMode(sending ? QAbstractItemView::NoSelection
                                              : QAbstractItemView::SingleSelection);
  ctlDovuAktivliste->SetTickable(!sending);
  for (QPushButton* button : {cmdSenden, cmdDovuAlleAktiv, cmdDovuKeinsAktiv}) {
    button->setEnabled(!sending);
  }
  cmdAbbruch->setText(sending ? tr("A&bbrechen") : tr("S&chließen"));
  cmdAbbruch->setToolTip(sending ? tr("Hört nach dem Stück auf, das gerade gesendet wird.")
                                 : QString());
  cmdAbbruch->setEnabled(true);
}

void frmDovu::cmdSenden_Click() {
  if (sending_) return;
  if (!services_.exchange.Alive()) reject();
  if (!services_.person.MayTalk()) return;
  const Undertakings::Alone alone(services_.person.Begun(), "Die Übertragung läuft.");
  TakeTicks();
  SetSending(true);
  // Where it cannot be translated that has been said, and nothing goes out: a transfer of nothing
  // would clear the displays.
  const std::optional<std::string> drawing = services_.drawing();
  if (drawing) SendRS485(*drawing);
  SetSending(false);
  if (drawing) ShowSummary();
  if (closing_) reject();
}

void frmDovu::SendRS485(const std::string& drawing) {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    // What a run before this one has shown stays, but for those that take part again.
    if (entries_[i].ticked) entries_[i].state = TransferState::None;
    ShowEntry(i);
  }
  lblErgebnis->clear();
  transfer_.SendRS485(entries_, drawing, [this](std::size_t index) {
    ShowEntry(index);
    Follow(index);
  });
}

// Keeps in sight which Terminal it is the turn of; in a broadcast the first stands for all.
void frmDovu::Follow(std::size_t index) {
  const auto sending = [this](std::size_t i) {
    return entries_[i].state == TransferState::Sending;
  };
  if (entries_[index].state != TransferState::Checking && !sending(index)) return;
  if (index > 0 && sending(index - 1)) return;
  ctlDovuAktivliste->ScrollTo(static_cast<int>(index));
}

void frmDovu::ShowSummary() {
  const QString state = services_.exchange.Alive()
                            ? tr("Keines ist mehr gewählt; \"Terminal wählen\" wählt wieder eines.")
                            : tr("Die Verbindung ging verloren.");
  lblErgebnis->setText(Text(TransferSummary(entries_)) + u' ' + state);
  const auto failed = std::find_if(entries_.begin(), entries_.end(),
                                   [](const TransferEntry& entry) { return entry.Failed(); });
  Q_EMIT Finished(tr("Übertragung: %1").arg(Text(TransferSummary(entries_))),
                  failed != entries_.end() || !services_.exchange.Alive());
  if (failed != entries_.end()) {
    ctlDovuAktivliste->ScrollTo(static_cast<int>(failed - entries_.begin()));
  }
}

void frmDovu::cmdAbbruch_Click() {
  if (!sending_) return reject();
  transfer_.Stop();
  cmdAbbruch->setEnabled(false);
  lblErgebnis->setText(tr("Die Übertragung hört nach dem Stück auf, das gerade gesendet wird …"));
}

// Escape or the window's frame: a transfer under way is stopped first.
void frmDovu::reject() {
  closing_ = sending_;
  if (sending_) return cmdAbbruch_Click();
  QDialog::reject();
}

}  // namespace kelvo
