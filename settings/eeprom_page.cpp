#include "settings/eeprom_page.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/val.h"
#include "inventory_page/proven_bar.h"
#include "link/chronicle.h"
#include "terminal/eeprom.h"
#include "terminal/erase.h"
#include "terminal/version.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/read_mark.h"
#include "widgets/texts.h"
#include "widgets/whole_height.h"

namespace kelvo {
namespace {

// The Terminal stores what it is set to; there is nothing to check.
std::optional<WriteOrder> ConfigOrder() {
  return WriteOrder{{{ItemKind::Config, 0}, WriteConfig().Text(), {}}, {}};
}

QGroupBox* Group(const QString& title, const QString& explanation, QWidget* button) {
  auto* group = new QGroupBox(title);
  auto* column = new QVBoxLayout(group);
  auto* text = new QLabel(explanation);
  text->setWordWrap(true);
  column->addWidget(text);
  column->addLayout(ButtonRow({button}));
  return group;
}

}  // namespace

EepromPage::EepromPage(Services services, QWidget* parent)
    : QWidget(parent), services_(services), frmInfo(new InfoWindow(this)) {
  MakeLayout();
  Operator& person = services_.person;
  OnSend(cmdSetConfig, this, person, &EepromPage::cmdSetConfig_Click);
  OnSend(cmdClearConfig, this, person, &EepromPage::cmdClearConfig_Click);
  OnSend(cmdClearEEprom, this, person, &EepromPage::cmdClearEEprom_Click);
  OnSend(cmdGetFreeBytes, this, person, &EepromPage::cmdGetFreeBytes_Click);
}

void EepromPage::MakeLayout() {
  cmdSetConfig = MakeButton("cmdSetConfig", tr("Konfiguration &speichern"));
  cmdClearConfig = MakeDangerButton("cmdClearConfig", tr("Konfiguration &löschen"));
  cmdClearEEprom = MakeDangerButton("cmdClearEEprom", tr("Ganzes &EEPROM löschen …"));
  cmdGetFreeBytes = MakeButton("cmdGetFreeBytes", tr("&Freien Platz lesen"));
  lblFreeBytes = MakeValue("lblFreeBytes");

  auto* page = new QHBoxLayout(this);
  auto* column = new QVBoxLayout;
  AddGroups(column);
  page->addWidget(new WholeHeight(column), 2);
  if (services_.inventory != nullptr) page->addWidget(services_.inventory, 5);
}

void EepromPage::AddGroups(QVBoxLayout* page) {
  auto* space = new QGroupBox(tr("Speicherplatz"));
  QFormLayout* form = MakeForm(space);
  AddRow(form, tr("Freier Platz im EEPROM:"), lblFreeBytes, tr("Byte"));
  lblFreeBytesStand = new ReadMark("lblFreeBytesStand", tr("noch nicht gelesen"));
  form->addRow(ButtonRow({cmdGetFreeBytes}));
  form->addRow(lblFreeBytesStand);
  page->addWidget(space);
  auto* const config = Group(tr("Konfiguration"),
                             tr("Das Terminal speichert seine jetzigen Einstellungen im EEPROM "
                                "und beginnt nach jedem Einschalten mit ihnen."),
                             cmdSetConfig);
  if (services_.writeDesk != nullptr) {
    config->layout()->addWidget(
        new ProvenBar("Config", *services_.writeDesk, services_.person, &ConfigOrder));
  }
  page->addWidget(config);
  page->addStretch();
  page->addWidget(Group(tr("Konfiguration löschen"),
                        tr("Nach dem nächsten Einschalten gelten die Einstellungen des "
                           "Herstellers. Es wird nicht nachgefragt."),
                        cmdClearConfig));
  page->addWidget(Group(tr("EEPROM löschen"),
                        tr("Löscht Konfiguration, Makros, Tastaturtabellen und Bitmaps des "
                           "Terminals. Die Aufzeichnungen auf diesem PC bleiben erhalten."),
                        cmdClearEEprom));
}

void EepromPage::cmdSetConfig_Click() {
  // Two blanks after the slash; kept as it stands.
  StoreConfig(" /  cmdSetConfig");
}

// The information window is closed before a failure is reported.
bool EepromPage::StoreConfig(const std::string& suffix) {
  const Undertakings::Alone alone(services_.person.Begun(), "Die Konfiguration wird gespeichert.");
  const InfoWindowUse info(*frmInfo, tr("Konfiguration speichern"),
                           tr("Das Terminal speichert seine Konfiguration …"));
  const Reply reply = services_.exchange.SendString(WriteConfig());
  frmInfo->End();
  if (reply.Failed()) ReportEEpromError(services_.person, reply, suffix);
  return !reply.Failed();
}

void EepromPage::cmdClearConfig_Click() {
  SendToEEprom(services_.exchange, services_.person, DeleteConfig(), " / cmdClearConfig");
}

void EepromPage::cmdClearEEprom_Click() {
  if (services_.person.Ask("Sind Sie sicher ?", Icon::Exclamation) && !EraseAll()) return;
  ReadFreeBytes();
}

// Everything from the version query to the saved configuration; false when a failure has ended it.
bool EepromPage::EraseAll() {
  const Undertakings::Alone alone(services_.person.Begun(), kErasing);
  AskVersionToErase();
  eraseLeft_ = false;
  const InfoWindowUse info(*frmInfo, tr("EEprom löschen"), tr("Das EEPROM wird gelöscht …"),
                           [this] {
                             eraseLeft_ = true;
                             services_.exchange.EndWait();
                           });
  if (!CountsWhileErasing(services_.state.TerminalVersion,
                          services_.options.Number("EEPromelegantlöschenabVer"))) {
    if (!ErasePlain()) return false;
  } else if (!EraseWithProgress()) {
    return false;
  }
  return !services_.person.Ask("aktuelle Konfiguration gleich speichern ?", Icon::Question) ||
         StoreConfig(" / cmdClearEEprom");
}

// Without an answer the version is taken for an old one.
void EepromPage::AskVersionToErase() {
  const Reply version = QueryVersion(services_.exchange, services_.state);
  if (!version.Failed()) return;
  Q_EMIT Failed(tr("Version vor dem Löschen abfragen: %1, daher ohne Fortschritt gelöscht")
                    .arg(QString::fromStdString(FailureWords(version))));
}

bool EepromPage::ErasePlain() {
  frmInfo->ShowBusy();
  const Reply reply = kelvo::ErasePlain(services_.exchange);
  frmInfo->End();
  if (EraseLeft()) return false;
  if (reply.Failed()) ReportEEpromError(services_.person, reply, " / cmdClearEEprom");
  return !reply.Failed();
}

// Whether the operator has given up waiting, and what that means.
bool EepromPage::EraseLeft() {
  if (!eraseLeft_) return false;
  services_.person.Message(
      "Es wird nicht länger gewartet. Das Terminal löscht vielleicht noch.", Icon::Information, {},
      "Solange es löscht, antwortet es nicht. Ob es fertig ist, zeigt \"Freien Platz lesen\".");
  return true;
}

// False when the operator has not waited for the end. A missing acknowledge is said, no more.
bool EepromPage::EraseWithProgress() {
  const bool acknowledged = EraseCounting(services_.exchange, [this](int done, int blocks) {
    done == 0 ? frmInfo->ShowProgress(blocks) : frmInfo->SetProgress(done);
    return !eraseLeft_;
  });
  frmInfo->HideProgress();
  frmInfo->End();
  if (EraseLeft()) return false;
  if (!acknowledged) {
    services_.person.Message("kein ACK nach löschen / cmdClearEEprom", Icon::Exclamation);
  }
  return true;
}

void EepromPage::ReadFreeBytes() {
  GetEEpromBytes(services_.exchange, services_.state);
  ShowFreeBytes();
  lblFreeBytes->repaint();
}

void EepromPage::ShowFreeBytes() {
  const TerminalState& state = services_.state;
  if (!state.freeBytesAsked) {
    lblFreeBytes->clear();
    lblFreeBytesStand->setText(tr("noch nicht gelesen"));
    return;
  }
  lblFreeBytes->setText(QString::fromStdString(NumberText(state.freeBytes.value_or(0))));
  const QString elsewhere = QString::fromStdString(state.freeBytesElsewhere);
  const QString time = MinuteText(*state.freeBytesAsked);
  const QString said = !state.freeBytesLack.empty() ? QString::fromStdString(state.freeBytesLack)
                       : elsewhere.isEmpty()        ? tr("gelesen %1").arg(time)
                                                    : tr("zuletzt gelesen %1").arg(time);
  const bool changed = state.freeBytesChanged && state.freeBytesLack.empty();
  lblFreeBytesStand->setText((said + u' ' + elsewhere).trimmed() +
                             (changed ? tr(", seither geschrieben") : QString()));
  lblFreeBytesStand->setToolTip(elsewhere.isEmpty()
                                    ? QString()
                                    : tr("Das Terminal, das gefragt wurde, hört jetzt nicht zu."));
}

void EepromPage::cmdGetFreeBytes_Click() { ReadFreeBytes(); }

}  // namespace kelvo
