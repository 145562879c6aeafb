#include "inventory_page/proven_bar.h"

#include <QLabel>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>
#include <algorithm>

#include "inventory_page/write_desk.h"
#include "link/addresses.h"
#include "widgets/form.h"
#include "widgets/handlers.h"

namespace kelvo {

ProvenBar::ProvenBar(const char* what, WriteDesk& desk, Operator& person, Order order)
    : desk_(desk), order_(std::move(order)) {
  const std::string name = what;
  one_ = MakeButton(("cmdSet" + name + "Geprueft").c_str(), tr("Geprüft schreiben"),
                    tr("Schreibt in das gewählte Terminal: fragt vorher seine Adresse und nachher "
                       "seine Prüfsumme ab."));
  many_ = MakeButton(("cmdSet" + name + "Aktive").c_str(), tr("An aktive Terminals …"),
                     tr("Schreibt dasselbe geprüft in mehrere Terminals der Liste."));
  result_ = Named(new QLabel, ("lbl" + name + "Geprueft").c_str());
  result_->setAccessibleName(tr("Ergebnis des geprüften Schreibens"));
  FixRoom(result_, 2);
  result_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(ButtonRow({one_, many_}));
  column->addWidget(result_);
  OnSend(one_, this, person, &ProvenBar::Write);
  connect(&desk_, &WriteDesk::Changed, this, &ProvenBar::ClearOutdated);
  OnClick(many_, this, person, &ProvenBar::WriteToMany);
}

void ProvenBar::Write() {
  if (!desk_.HasTarget()) return;
  const std::optional<WriteOrder> order = order_();
  if (!order) return;
  // Where this one does not begin, nothing may look as if it had been proven.
  told_.reset();
  result_->clear();
  const std::optional<std::string> result = desk_.Write(*order);
  if (!result) return;
  told_ = {desk_.Selected(), order->item.key, desk_.Journal().Entries().size()};
  result_->setText(tr("%1 %2").arg(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")),
                                   QString::fromStdString(*result)));
}

bool ProvenBar::Outdated() const {
  if (told_->address != desk_.Selected()) return true;
  const auto& entries = desk_.Journal().Entries();
  const auto since = entries.begin() + static_cast<std::ptrdiff_t>(told_->entries);
  return std::any_of(since, entries.end(), [this](const JournalEntry& entry) {
    if (entry.event == Event::FreeBytes) return false;
    const int address = entry.terminal.address;
    const bool here = address == told_->address || address == kAllAddresses;
    return here && (entry.change.kind == ItemChange::Kind::Erased ||
                    SamePlace(entry.change.key, told_->key));
  });
}

// What was told holds no longer; its room stays.
void ProvenBar::ClearOutdated() {
  if (!told_ || !Outdated()) return;
  told_.reset();
  result_->clear();
}

void ProvenBar::WriteToMany() {
  if (const std::optional<WriteOrder> order = order_()) desk_.WriteToMany(*order);
}

}  // namespace kelvo
