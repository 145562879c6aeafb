#include <QMenu>
#include <QTimer>

#include "base/guard.h"
#include "shell/frmhaupt.h"
#include "shell/port_dialog.h"
#include "shell/port_return.h"
#include "shell/simulator_desk.h"
#include "shell/status_display.h"
#include "shell/traffic_view.h"

// What the main window does with ports, the simulator and what crosses the line.

namespace kelvo {
namespace {

constexpr char kKeepSimulator[] = "SimulatorBehalten";
constexpr char kReopenLost[] = "WiederOeffnen";
constexpr char kYes[] = "ja";
constexpr char kNo[] = "nein";

}  // namespace

void frmhaupt::AddPortOptions(QMenu* options) {
  mnuOptionenWiederOeffnen = AddAction(options, "mnuOptionenWiederOeffnen",
                                       tr("&Verlorenen Anschluss selbst wieder öffnen"), {},
                                       &frmhaupt::mnuOptionenWiederOeffnen_Click);
  mnuOptionenWiederOeffnen->setCheckable(true);
  mnuOptionenWiederOeffnen->setChecked(memory_.State(kReopenLost) != kNo);
  options->addSeparator();
  AddAction(options, "mnuOptionenSimulator", tr("Si&mulator starten"), {},
            &frmhaupt::mnuOptionenSimulator_Click);
  mnuOptionenSimulatorBehalten = AddAction(options, "mnuOptionenSimulatorBehalten",
                                           tr("Simulator nach dem &Beenden laufen lassen"), {},
                                           &frmhaupt::mnuOptionenSimulatorBehalten_Click);
  mnuOptionenSimulatorBehalten->setCheckable(true);
  mnuOptionenSimulatorBehalten->setChecked(memory_.State(kKeepSimulator) == kYes);
}

void frmhaupt::ConnectPorts() {
  outside_.com1.SetReceiveHandler([this] {
    // What comes between two waits of an undertaking is for its next one.
    if (!outside_.person.Begun().RunsAlone().empty()) return;
    lineState_.HeardUnasked();
    Guarded(outside_.person, "com1", [this] { receive_.com1_OnComm(); });
  });
  portControl_.SetExplainer([this](std::int16_t port) {
    const bool one = port >= 1 && port <= PortDialog::kPortCount;
    return one ? DescribePort(port) : std::string();
  });
  portReturn_ = std::make_unique<PortReturn>(PortReturn::Services{
      outside_.tmrReturn, outside_.person.Begun(),
      [this] {
        return !exchange_.Busy() && outside_.machine.deviceReady(data_.DeviceOf(
                                        interfaces_->OpenPortNumber(), outside_.folders.data));
      },
      [this] { Guard("com1", &frmhaupt::com1_Returned); }});
  // An open port, or the wish for none, ends the looking for the lost one; one that cannot be
  // opened does not.
  connect(interfaces_, &InterfacePage::PortChanged, this, [this] {
    if (outside_.com1.IsOpen()) portReturn_->GiveUp();
  });
  connect(interfaces_, &InterfacePage::NoPortChosen, this, [this] { portReturn_->GiveUp(); });
}

bool frmhaupt::ReturnsByItself() const {
  return mnuOptionenWiederOeffnen->isChecked() && outside_.machine.deviceReady;
}

void frmhaupt::com1_Returned() {
  if (!ReturnsByItself() || outside_.com1.IsOpen() || !interfaces_->OpenAgain()) return;
  statusDisplay_->Forget();  // the loss, which weighs more
  chronicle_.Note(interfaces_->ChosenPort() + " ist wieder da und wieder offen.");
}

void frmhaupt::mnuOptionenWiederOeffnen_Click() {
  memory_.RememberState(kReopenLost, mnuOptionenWiederOeffnen->isChecked() ? kYes : kNo);
}

// "USB-Serial Controller, /dev/ttyUSB0: bereit"
std::string frmhaupt::DescribePort(int number) {
  const std::string device = data_.DeviceOf(number, outside_.folders.data);
  if (device.empty()) return "Kein Gerät eingetragen (Optionen / Anschlüsse …).";
  std::string name;
  const Machine& machine = outside_.machine;
  for (const MachinePort& port : machine.ports ? machine.ports() : std::vector<MachinePort>()) {
    if (port.device == device) name = port.description + ", ";
  }
  const std::string state = DescribeDevice(device);
  return name + device + (state.empty() ? "" : ": " + state);
}

void frmhaupt::mnuOptionenAnschluesse_Click() {
  portDialog_->Load();
  const Undertakings::Resting resting(outside_.person.Begun());
  portDialog_->exec();
  interfaces_->DescribePort();
}

void frmhaupt::mnuOptionenSimulator_Click() {
  if (simulator_->Start()) chronicle_.Note("Mit dem Simulator verbunden.");
}

void frmhaupt::mnuOptionenSimulatorBehalten_Click() {
  memory_.RememberState(kKeepSimulator, mnuOptionenSimulatorBehalten->isChecked() ? kYes : "");
}

bool frmhaupt::ConnectTo(const std::string& device) {
  for (int number = 1; number <= PortDialog::kPortCount; ++number) {
    if (data_.DeviceOf(number, outside_.folders.data) != device) continue;
    return interfaces_->Connect(number);
  }
  outside_.person.Message("Kein Anschluss führt zum Simulator.", Icon::Exclamation, {},
                          "Unter \"Optionen\" / \"Anschlüsse …\" bei einem der sechs Anschlüsse "
                          "\"simulator.tty\" eintragen.");
  return false;
}

void frmhaupt::mnuAnsichtDatenverkehr_Click() { ShowTraffic(TrafficAt::Now); }

void frmhaupt::ShowTraffic(TrafficAt where) {
  traffic_->Present();
  // A box that is just going would give the front to its own window.
  QTimer::singleShot(0, traffic_, [this] {
    if (traffic_->isVisible()) traffic_->Present();
  });
  if (where == TrafficAt::LastFailure) traffic_->ShowLastFailureOfLine();
}

}  // namespace kelvo
