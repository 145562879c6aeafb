#include <QMenu>
#include <QStatusBar>

#include "shell/frmhaupt.h"
#include "shell/port_dialog.h"
#include "shell/simulator_desk.h"
#include "shell/traffic_view.h"

// What the main window does with ports, the simulator and what crosses the line.

namespace kelvo {
namespace {

constexpr char kKeepSimulator[] = "SimulatorBehalten";
constexpr char kYes[] = "ja";
constexpr int kHintMilliseconds = 8000;

}  // namespace

void frmhaupt::AddPortOptions(QMenu* options) {
  AddAction(options, "mnuOptionenSimulator", tr("Si&mulator starten"), {},
            &frmhaupt::mnuOptionenSimulator_Click);
  mnuOptionenSimulatorBehalten = AddAction(options, "mnuOptionenSimulatorBehalten",
                                           tr("Simulator nach dem &Beenden laufen lassen"), {},
                                           &frmhaupt::mnuOptionenSimulatorBehalten_Click);
  mnuOptionenSimulatorBehalten->setCheckable(true);
  mnuOptionenSimulatorBehalten->setChecked(memory_.State(kKeepSimulator) == kYes);
}

void frmhaupt::mnuOptionenAnschluesse_Click() {
  portDialog_->Load();
  portDialog_->exec();
  interfaces_->DescribePort();
}

void frmhaupt::mnuOptionenSimulator_Click() {
  if (simulator_->Start()) {
    statusBar()->showMessage(tr("Mit dem Simulator verbunden."), kHintMilliseconds);
  }
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
  traffic_->show();
  traffic_->raise();
  traffic_->activateWindow();
  if (where == TrafficAt::LastFailure) traffic_->ShowLastFailure();
}

}  // namespace kelvo
