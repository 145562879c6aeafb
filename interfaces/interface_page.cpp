#include "interfaces/interface_page.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "base/guard.h"
#include "base/val.h"
#include "base/wire_text.h"
#include "widgets/data_control.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

// What it means to go on without the Terminal.
std::string SwitchAloneHint(ReplyKind kind) {
  if (kind == ReplyKind::PortClosed) {
    return "Kein Anschluss ist offen; ans Terminal ging nichts. „Ja“ öffnet den gewählten "
           "Anschluss mit den gewählten Werten.";
  }
  const std::string costs =
      "„Ja“ startet das Terminal neu und stellt den PC um. Arbeitet das Terminal dann mit den "
      "alten Werten, verstehen sich beide nicht mehr, bis der PC zurückgestellt ist. „Nein“ "
      "lässt den PC, wie er ist.";
  return (kind == ReplyKind::Refused
              ? "Das Terminal hat geantwortet, aber nicht gespeichert (NAK). "
              : "Ob das Terminal die neuen Werte gespeichert hat, ist nicht bekannt. ") +
         costs;
}

}  // namespace

InterfacePage::InterfacePage(Services services, QWidget* parent)
    : QWidget(parent), services_(std::move(services)) {
  for (int list = 0; list < ComListCount; ++list) {
    cboCom[static_cast<std::size_t>(list)] = MakeList(static_cast<ComList>(list));
  }
  auto* groups = new QHBoxLayout;
  groups->addWidget(MakeFirst());
  groups->addWidget(MakeSecond(), 1);
  auto* page = new QVBoxLayout(this);
  page->addWidget(MakeRecordChoice());
  page->addLayout(groups, 1);
  ConnectButtons();
  MakeFinder();
  services_.comData.SetRepositionHandler([this] { Repositioned(); });
}

QComboBox* InterfacePage::MakeList(ComList list) {
  auto* box = Named(new QComboBox, ArrayName("cboCom", list));
  for (const ListEntry& entry : ComEntries(list)) box->addItem(Text(entry.text), entry.number);
  box->setCurrentIndex(-1);
  connect(box, &QComboBox::activated, this,
          [this, list] { Guarded(services_.person, "cboCom", [&] { cboCom_Click(list); }); });
  return box;
}

void InterfacePage::ConnectButtons() {
  Operator& person = services_.person;
  OnClick(cmdVerbinden, this, person, &InterfacePage::cmdVerbinden_Click);
  OnClick(cmdVerbindungSuchen, this, person, &InterfacePage::cmdVerbindungSuchen_Click);
  OnClick(cmdSetCom1, this, person, &InterfacePage::cmdSetCom1_Click, Speaks::AlsoClosed);
  OnSend(cmdSetCom2, this, person, &InterfacePage::cmdSetCom2_Click);
  OnClick(cmdDefaultCom1, this, person, &InterfacePage::cmdDefaultCom1_Click);
  OnClick(cmdDefaultCom2, this, person, &InterfacePage::cmdDefaultCom2_Click);
  OnSend(cmdSendCom2, this, person, &InterfacePage::cmdSendCom2_Click);
  OnClick(cmdClearReceiveCom2, this, person, &InterfacePage::cmdClearReceiveCom2_Click);
  connect(txtSendCom2, &QLineEdit::returnPressed, cmdSendCom2, &QPushButton::click);
  connect(txtSendCom2, &WireField::Refused, this, [this] { services_.person.Beep(); });
}

void InterfacePage::SelectStoredRecord() {
  const double wanted = services_.defaults.Number("schnittstelle");
  Recordset& records = services_.comData;
  records.MoveFirst();
  while (!records.Eof() && records.Number("satznr") != wanted) records.MoveNext();
  ctlComData->Update();
}

void InterfacePage::Repositioned() {
  if (!services_.portControl.FormLoading && !refreshing_) StoreRecordInUse();
  ShowRecord();
}

void InterfacePage::StoreRecordInUse() {
  if (services_.comData.Eof()) return;
  services_.defaults.Refresh();  // another field may have been stored since
  services_.defaults.Edit();
  services_.defaults.Set("schnittstelle",
                         std::int64_t{RoundToEven(services_.comData.Number("satznr"))});
  services_.defaults.Update();
}

void InterfacePage::ShowRecord() {
  Recordset& records = services_.comData;
  ctlComData->SetCaption(Text(records.Text("satznr").value_or("")));
  ctlComData->Update();
  for (int i = 0; i < ComListCount; ++i) {
    const auto list = static_cast<ComList>(i);
    // A port that could not be opened, or was lost, stays "(keine)" until another is chosen.
    if (list == ComPortNr && refreshing_) continue;
    const std::string text = records.Text(std::string(ComField(list))).value_or("");
    cboCom[list]->setCurrentIndex(ComPosition(list, text));
  }
  DescribePort();
}

void InterfacePage::Refresh() {
  const bool none = services_.comData.Eof();
  refreshing_ = true;
  Guarded(services_.person, "ctlComData", [&] { services_.comData.Refresh(); });
  refreshing_ = false;
  // The stored number belonged to no record: from the next start on it is the one shown now.
  if (none) Guarded(services_.person, "ctlComData", [&] { StoreRecordInUse(); });
}

void InterfacePage::ShowNoPort() {
  cboCom[ComPortNr]->setCurrentIndex(kNoPortPosition);
  DescribePort();
  Q_EMIT PortChanged();
}

void InterfacePage::DescribePort() {
  const int position = cboCom[ComPortNr]->currentIndex();
  const bool real = position >= 0 && position != kNoPortPosition && services_.describePort;
  const QString device = real ? Text(services_.describePort(position + 1)) : QString();
  const QString marked = MarkedText();
  const bool both = !device.isEmpty() && !marked.isEmpty();
  lblAnschluss->setText(device + (both ? QStringLiteral("\n") : QString()) + marked);
  ShowOpen();
}

// What of the first interface is chosen, but does not hold yet.
QString InterfacePage::MarkedText() const {
  if (!services_.com1.IsOpen()) return {};
  const PortSettings marked = Settings();
  if (cboCom[ComPortNr]->currentIndex() == openPosition_ && marked.text == openSettings_.text &&
      marked.handshaking == openSettings_.handshaking) {
    return {};
  }
  return tr("Geöffnet ist noch: %1. „Terminal und PC umstellen“ wechselt beide, „Trennen“ und "
            "„Verbinden“ "
            "nur den PC.")
      .arg(PortText());
}

void InterfacePage::ShowOpen() {
  const bool open = services_.com1.IsOpen();
  cmdVerbinden->setText(open ? tr("Trennen") : tr("Verbinden"));
  cmdVerbinden->setToolTip(open ? tr("Schließt den Anschluss; gesendet wird nichts.")
                                : tr("Öffnet den gewählten Anschluss; gesendet wird nichts."));
}

std::string InterfacePage::ChosenPort() const {
  return cboCom[ComPortNr]->itemText(openPosition_).toStdString();
}

int InterfacePage::BaudRate() const {
  return services_.com1.IsOpen() ? RoundToEven(Val(openSettings_.text)) : 0;
}

QString InterfacePage::PortText() const {
  if (!services_.com1.IsOpen()) return tr("nicht verbunden");
  return Text(ChosenPort() + ": " + openSettings_.text);
}

void InterfacePage::Received(const std::string& characters) {
  txtReceiveCom2->AppendWire(characters);
}

void InterfacePage::StoreChoice(ComList list) {
  Recordset& records = services_.comData;
  if (records.Eof()) return;
  try {
    records.Edit();
    records.Set(std::string(ComField(list)), cboCom[list]->currentText().toStdString());
    records.Update();
  } catch (const StoreConflict&) {
    Refresh();  // what is stored now is shown, and can be changed
    throw;
  }
}

// While a port is open a choice only marks.
void InterfacePage::cboCom_Click(ComList list) {
  // A choice that cannot be stored still holds for this run.
  Guarded(services_.person, "cboCom", [&] { StoreChoice(list); });
  DescribePort();
  if (list != ComPortNr || services_.com1.IsOpen()) return;
  if (cboCom[ComPortNr]->currentIndex() == kNoPortPosition) {
    Q_EMIT NoPortChosen();
    Q_EMIT PortChanged();
  } else {
    OpenChosenPort();
  }
}

void InterfacePage::cmdVerbinden_Click() {
  if (!services_.com1.IsOpen()) {
    const int position = cboCom[ComPortNr]->currentIndex();
    const bool none = position < 0 || position == kNoPortPosition;
    if (none) return services_.person.Message("zuerst Anschluß wählen");
    OpenChosenPort();
    return;
  }
  services_.com1.Close();
  DescribePort();
  Q_EMIT PortChanged();
}

ComNumbers InterfacePage::Numbers() const {
  ComNumbers numbers{};
  for (std::size_t i = 0; i < ComListCount; ++i) {
    numbers[i] = cboCom[i]->currentIndex() < 0 ? -1 : cboCom[i]->currentData().toInt();
  }
  return numbers;
}

// A record may hold a text that its list does not offer; nothing is sent then.
bool InterfacePage::AllChosen(ComList first, ComList last) {
  for (int list = first; list <= last; ++list) {
    if (cboCom[static_cast<std::size_t>(list)]->currentIndex() >= 0) continue;
    services_.person.Message("Bitte zuerst in jeder Liste einen Wert wählen.", Icon::Exclamation);
    cboCom[static_cast<std::size_t>(list)]->setFocus();
    return false;
  }
  return true;
}

PortSettings InterfacePage::Settings() const {
  const auto text = [this](ComList list) { return cboCom[list]->currentText().toStdString(); };
  return MakePortSettings(text(ComBaud1), text(ComParity1), text(ComBits1), text(ComStopBit1),
                          cboCom[ComShake1]->currentIndex());
}

bool InterfacePage::OpenChosenPort() {
  return OpenPort(cboCom[ComPortNr]->currentIndex(), Settings());
}

bool InterfacePage::Connect(int number) {
  if (services_.com1.IsOpen() && OpenPortNumber() == number) return true;
  const std::string name(ComEntries(ComPortNr)[static_cast<std::size_t>(number - 1)].text);
  services_.comData.FindFirst("ComNr", name);
  cboCom[ComPortNr]->setCurrentIndex(number - 1);
  return OpenChosenPort();
}

// A device that has gone unnoticed is lost, and comes back by itself: it is no port that is
// missing.
bool InterfacePage::ReopenPort() {
  if (services_.com1.IsOpen() && !services_.com1.CheckDevice()) return false;
  const PortSettings settings = openSettings_;
  return OpenPort(openPosition_, settings);
}

bool InterfacePage::OpenAgain() {
  cboCom[ComPortNr]->setCurrentIndex(openPosition_);
  return ReopenPort();
}

bool InterfacePage::OpenPort(int position, const PortSettings& settings) {
  const std::int16_t error = services_.portControl.OpenCom(static_cast<std::int16_t>(position + 1));
  if (error == PortOk) {
    openPosition_ = position;
    openSettings_ = settings;
    services_.portControl.SetUpPort(settings);
  }
  DescribePort();
  Q_EMIT PortChanged();
  return error == PortOk;
}

void InterfacePage::cmdSetCom1_Click() {
  const int position = cboCom[ComPortNr]->currentIndex();
  if (position < 0 || position == kNoPortPosition) {
    return services_.person.Message("zuerst Anschluß wählen");
  }
  if (!AllChosen(ComBaud1, ComPuffer1)) return;
  const PortSettings settings = Settings();
  if (!TerminalSwitched(Numbers())) return;
  services_.exchange.SendString(Restart());
  services_.exchange.WaitUntilSent();
  if (services_.com1.IsOpen()) services_.com1.Close();
  if (OpenPort(position, settings)) {
    services_.person.Message("PC-Schnittstelle erfolgreich umgestellt");
  }
}

// Sends the new settings and has the Terminal store them; false when the operator gives up.
bool InterfacePage::TerminalSwitched(const ComNumbers& numbers) {
  Exchange& exchange = services_.exchange;
  exchange.SendString(SetInterface1(InterfaceNumbersFrom(numbers, ComBaud1)));
  exchange.SendString(SetBuffer1(numbers[ComPuffer1]));
  const Reply reply = exchange.SendString(WriteConfig());
  if (!reply.Failed()) {
    services_.person.Message("Terminalschnittstelle erfolgreich umgestellt");
    return true;
  }
  if (reply.kind == ReplyKind::Refused) services_.person.Message("Fehler beim EEPROM");
  // No error text is spelled "Timeout", so the first question is always the one; deliberately so.
  return services_.person.Ask(reply.text != "Timeout"
                                  ? "keine Verbindung, PC-Schnittstelle trotzdem ändern ?"
                                  : "TimeOut beim Übertragen, PC-Schnittstelle trotzdem ändern ?",
                              Icon::Question, {}, Proposal::ByIcon, SwitchAloneHint(reply.kind));
}

void InterfacePage::cmdSetCom2_Click() {
  if (!AllChosen(ComBaud2, ComRecCom2)) return;
  const ComNumbers numbers = Numbers();
  Exchange& exchange = services_.exchange;
  exchange.SendString(SetInterface2(InterfaceNumbersFrom(numbers, ComBaud2)));
  exchange.SendString(SetBuffer2(numbers[ComPuffer2]));
  exchange.SendString(SetReceiveMode2(numbers[ComRecCom2]));
  const Reply reply = exchange.SendString(WriteConfig());
  if (!reply.Failed()) return;
  services_.person.Message(reply.kind == ReplyKind::Refused ? "Fehler beim EEPROM"
                                                            : "unerwartetes Zeichen /  SetCom2");
}

void InterfacePage::ApplyDefaults(ComDefaults defaults) {
  for (const auto& [list, text] : defaults) {
    cboCom[list]->setCurrentIndex(ComPosition(list, text));
  }
  DescribePort();
  for (const auto& [list, text] : defaults) StoreChoice(list);
}

void InterfacePage::cmdDefaultCom1_Click() { ApplyDefaults(DefaultsCom1()); }

void InterfacePage::cmdDefaultCom2_Click() { ApplyDefaults(DefaultsCom2()); }

void InterfacePage::cmdSendCom2_Click() {
  services_.exchange.SendString(SendToInterface2(txtSendCom2->Wire()));
}

void InterfacePage::cmdClearReceiveCom2_Click() { txtReceiveCom2->clear(); }

}  // namespace kelvo
