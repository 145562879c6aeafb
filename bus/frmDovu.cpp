#include "bus/frmDovu.h"

#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "bus/stored_terminals.h"
#include "bus/terminal_search.h"
#include "bus/tick_list.h"
#include "widgets/texts.h"

namespace kelvo {
frmDovu::frmDovu(Services services, QWidget* parent)
    : TerminalsDialog({"frmDovu", "ctlDovuAktivliste", "lblMomentbitte", "lblErgebnis", "cmdSenden",
                       "cmdDovuAlleAktiv", "cmdDovuKeinsAktiv", "cmdDovuAnhalten", "cmdAbbruch"},
                      {{tr("Terminal"), tr("Adresse"), tr("Checksumme"), tr("Zustand")},
                       {34, 12, 15},
                       tr("&Senden"),
                       tr("Sind alle angekreuzt, geht die Zeichnung einmal an alle zugleich, "
                          "sonst an eines nach dem anderen."),
                       tr("&Alle"),
                       tr("Hört nach dem Stück auf, das gerade gesendet wird."),
                       tr("Die Übertragung hört nach dem Stück auf, das gerade gesendet wird …"),
                       "Die Übertragung läuft."},
                      services.person, parent),
      services_(std::move(services)),
      transfer_(services_.exchange, services_.loop) {
  setWindowTitle(tr("Zeichnung an aktive Terminals senden"));
}

void frmDovu::Open() {
  if (!Running()) FillList();
  Present();
}

void frmDovu::FillList() {
  entries_.clear();
  StartAnew();
  List()->clear();
  for (const StoredTerminal& stored : StoredTerminals(services_.terminals)) {
    entries_.push_back(
        {.address = stored.address, .checksum = stored.checksum, .ticked = stored.active});
    List()->Add({Text(stored.name), QString::number(stored.address),
                 Text(YesNoText(stored.checksum)), QString()},
                stored.active);
  }
  StartButton()->setEnabled(!entries_.empty());
  ResultLabel()->setText(entries_.empty() ? tr("Es sind keine Terminals gespeichert.") : QString());
}

void frmDovu::ShowEntry(std::size_t index) {
  const TransferEntry& entry = entries_[index];
  ShowState(static_cast<int>(index), entry.ticked, TransferStateText(entry),
            entry.state == TransferState::Good ? GoodColour()
            : entry.Failed()                   ? FailedColour()
                                               : QColor());
}

void frmDovu::Run() {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    entries_[i].ticked = List()->Ticked(static_cast<int>(i));
  }
  // Where it cannot be translated that has been said, and nothing goes out: a transfer of nothing
  // would clear the displays.
  const std::optional<std::string> drawing = services_.drawing();
  if (!drawing) return;
  SendRS485(*drawing);
  ShowSummary();
}

void frmDovu::SendRS485(const std::string& drawing) {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    // What a run before this one has shown stays, but for those that take part again.
    if (entries_[i].ticked) entries_[i].state = TransferState::None;
    ShowEntry(i);
  }
  ResultLabel()->clear();
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
  List()->ScrollTo(static_cast<int>(index));
}

void frmDovu::ShowSummary() {
  const QString state = services_.exchange.Alive()
                            ? tr("Keines ist mehr gewählt; „Terminal wählen“ wählt wieder eines.")
                            : tr("Die Verbindung ging verloren.");
  ShowOutcome(Text(TransferSummary(entries_)) + u' ' + state);
  const auto failed = std::find_if(entries_.begin(), entries_.end(),
                                   [](const TransferEntry& entry) { return entry.Failed(); });
  Q_EMIT Finished(tr("Übertragung: %1").arg(Text(TransferSummary(entries_))),
                  failed != entries_.end() || !services_.exchange.Alive());
  if (failed != entries_.end()) {
    List()->ScrollTo(static_cast<int>(failed - entries_.begin()));
  }
}

}  // namespace kelvo
