#include "shell/simulator_desk.h"

#include "base/guard.h"

namespace kelvo {
namespace {

constexpr char kSimulatedPort[] = "/simulator.tty";
// Generous: a cold start from a slow disc.
constexpr std::chrono::seconds kLongestStart{15};
constexpr std::chrono::milliseconds kLook{50};

// It says where its port is as soon as that is there.
bool HasPort(const SideProgram& simulator) {
  return simulator.Said().find('\n') != std::string::npos;
}

}  // namespace

bool SimulatorDesk::Start() {
  if (starting_ || !outside_.person.MayBegin()) return false;
  const std::string device = outside_.folders.data + kSimulatedPort;
  bool connected = false;
  starting_ = true;
  Guarded(outside_.person, "Simulator", [&] { connected = Launch(device) && connect_(device); });
  starting_ = false;
  return connected;
}

bool SimulatorDesk::Launch(const std::string& device) {
  const Machine& machine = outside_.machine;
  if (machine.simulator == nullptr) return Refuse("Die Datei fehlt.");
  SideProgram& simulator = *machine.simulator;
  if (simulator.Running()) return true;
  if (machine.deviceReady && machine.deviceReady(device)) return true;  // somebody else's
  if (const std::string reason = simulator.Start(); !reason.empty()) return Refuse(reason);
  AwaitPort(simulator);
  if (HasPort(simulator)) return true;
  if (outside_.loop.Closing()) return false;
  const std::string complaint = simulator.Complained();
  return Refuse(complaint.empty() ? "Er hat sich nicht gemeldet." : complaint);
}

void SimulatorDesk::AwaitPort(const SideProgram& simulator) {
  const auto start = outside_.loop.Now();
  while (!HasPort(simulator) && simulator.Running() && !outside_.loop.Closing() &&
         outside_.loop.Now() - start < kLongestStart) {
    outside_.loop.WaitForEvent(kLook);
  }
}

bool SimulatorDesk::Refuse(const std::string& reason) {
  outside_.person.Message("Der Simulator ließ sich nicht starten.", Icon::Exclamation, {},
                          "Gesucht wird das Programm \"kelvo-simulator\" im Ordner \"" +
                              outside_.folders.program + "\". " + reason);
  return false;
}

void SimulatorDesk::End() {
  if (outside_.machine.simulator != nullptr) outside_.machine.simulator->End();
}

}  // namespace kelvo
