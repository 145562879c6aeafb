#include "settings/eeprom_page.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/val.h"
#include "link/control_characters.h"
#include "settings/status.h"
#include "terminal/eeprom.h"
#include "widgets/form.h"
#include "widgets/handlers.h"

namespace kelvo {
namespace {

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
  OnClick(cmdSetConfig, this, person, &EepromPage::cmdSetConfig_Click);
  OnClick(cmdClearConfig, this, person, &EepromPage::cmdClearConfig_Click);
  OnClick(cmdClearEEprom, this, person, &EepromPage::cmdClearEEprom_Click);
  OnClick(cmdGetFreeBytes, this, person, &EepromPage::cmdGetFreeBytes_Click);
}

void EepromPage::MakeLayout() {
  cmdSetConfig = MakeButton("cmdSetConfig", tr("Konfiguration &speichern"));
  cmdClearConfig = MakeButton("cmdClearConfig", tr("Konfiguration &löschen"));
  cmdClearEEprom = MakeButton("cmdClearEEprom", tr("Ganzes &EEPROM löschen …"));
  cmdGetFreeBytes = MakeButton("cmdGetFreeBytes", tr("&Freien Platz lesen"));
  lblFreeBytes = MakeValue("lblFreeBytes");

  auto* page = new QVBoxLayout(this);
  auto* space = new QGroupBox(tr("Speicherplatz"));
  QFormLayout* form = MakeForm(space);
  AddRow(form, tr("Freier Platz im EEPROM:"), lblFreeBytes, tr("Bytes"));
  form->addRow(ButtonRow({cmdGetFreeBytes}));
  page->addWidget(space);
  page->addWidget(Group(tr("Konfiguration"),
                        tr("Das Terminal speichert seine jetzigen Einstellungen im EEPROM und "
                           "beginnt nach jedem Einschalten mit ihnen."),
                        cmdSetConfig));
  page->addWidget(Group(tr("Konfiguration löschen"),
                        tr("Nach dem nächsten Einschalten gelten die Einstellungen des "
                           "Herstellers. Es wird nicht nachgefragt."),
                        cmdClearConfig));
  page->addWidget(Group(tr("EEPROM löschen"),
                        tr("Löscht Konfiguration, Makros, Tastaturtabellen und Bitmaps des "
                           "Terminals. Die Aufzeichnungen auf diesem PC bleiben erhalten."),
                        cmdClearEEprom));
  page->addStretch();
}

void EepromPage::cmdSetConfig_Click() {
  const InfoWindowUse info(*frmInfo, tr("Konfiguration speichern"),
                           tr("Das Terminal speichert seine Konfiguration …"));
  services_.exchange.CommandBuffer = std::string(CmdPrefix) + "EWC";
  services_.exchange.SendCommand(Acknowledge::Wait);
  frmInfo->End();
  if (services_.exchange.LastStatus == 0) return;
  // Two blanks after the slash; kept as it stands.
  ReportEEpromError(services_.person, services_.exchange.CommandBuffer, " /  cmdSetConfig");
}

void EepromPage::cmdClearConfig_Click() {
  SendToEEprom(services_.exchange, services_.person, std::string(CmdPrefix) + "EDC",
               " / cmdClearConfig");
}

void EepromPage::cmdClearEEprom_Click() {
  if (services_.person.Ask("Sind Sie sicher ?", Icon::Exclamation) && !EraseAll()) return;
  ShowFreeBytes();
}

// Everything from the version query to the saved configuration; false when a failure has ended it.
bool EepromPage::EraseAll() {
  services_.exchange.CommandBuffer = "?V";
  services_.exchange.QueryCommand();
  NoteVersion(services_.state, services_.exchange.CommandBuffer);
  const InfoWindowUse info(*frmInfo, tr("EEprom löschen"), tr("Das EEPROM wird gelöscht …"));
  const double firstWithProgress = services_.options.Number("EEPromelegantlöschenabVer");
  if (firstWithProgress > services_.state.TerminalVersion) {
    if (!ErasePlain()) return false;
  } else {
    EraseWithProgress();
  }
  return OfferToStore();
}

bool EepromPage::ErasePlain() {
  Exchange& exchange = services_.exchange;
  exchange.SetReplyTimeout(std::chrono::milliseconds(30000));
  exchange.CommandBuffer = std::string(CmdPrefix) + "EE";
  exchange.SendCommand(Acknowledge::Wait);
  exchange.SetReplyTimeout(std::chrono::milliseconds(1000));
  frmInfo->End();
  if (exchange.LastStatus == 0) return true;
  ReportEEpromError(services_.person, exchange.CommandBuffer, " / cmdClearEEprom");
  return false;
}

// The Terminal counts down the blocks still to erase, then acknowledges.
void EepromPage::EraseWithProgress() {
  Exchange& exchange = services_.exchange;
  const std::string_view countEnd(&CarriageReturn, 1);
  exchange.CommandBuffer = std::string(CmdPrefix) + "Ee";
  exchange.SendCommand(Acknowledge::None);
  std::string count;
  exchange.WaitAnswer(count, countEnd);
  const int blocks = EraseBlocks(count);
  frmInfo->ShowProgress(blocks);
  while (Val(count) > 0) {
    exchange.WaitAnswer(count, countEnd);
    frmInfo->SetProgress(RoundToEven(blocks - Val(count)));
  }
  exchange.WaitAnswer(exchange.CommandBuffer, {});
  frmInfo->HideProgress();
  frmInfo->End();
  if (exchange.CommandBuffer.find(Ack) != std::string::npos) return;
  services_.person.Message("kein ACK nach löschen / cmdClearEEprom", Icon::Exclamation);
}

bool EepromPage::OfferToStore() {
  if (!services_.person.Ask("aktuelle Konfiguration gleich speichern ?", Icon::Question)) {
    return true;
  }
  frmInfo->Begin(tr("Konfiguration speichern"), tr("Das Terminal speichert seine Konfiguration …"));
  services_.exchange.CommandBuffer = std::string(CmdPrefix) + "EWC";
  services_.exchange.SendCommand(Acknowledge::Wait);
  frmInfo->End();
  if (services_.exchange.LastStatus == 0) return true;
  ReportEEpromError(services_.person, services_.exchange.CommandBuffer, " / cmdClearEEprom");
  return false;
}

void EepromPage::ShowFreeBytes() {
  const double bytes = GetEEpromBytes(services_.exchange, services_.state);
  lblFreeBytes->setText(QString::fromStdString(NumberText(bytes)));
  lblFreeBytes->repaint();
}

void EepromPage::cmdGetFreeBytes_Click() { ShowFreeBytes(); }

}  // namespace kelvo
