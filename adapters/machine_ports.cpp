#include "adapters/machine_ports.h"

#include <QSerialPortInfo>
#include <algorithm>

#include "adapters/device_lock.h"
#include "adapters/port_device.h"

namespace kelvo {
namespace {

std::string Description(const QSerialPortInfo& port) {
  QStringList parts;
  for (const QString& part : {port.description(), port.manufacturer(), port.serialNumber()}) {
    if (!part.isEmpty() && !parts.contains(part)) parts += part;
  }
  return parts.isEmpty() ? std::string("serielle Schnittstelle") : parts.join(u", ").toStdString();
}

std::string NoPermission(const std::string& device) {
  const std::string group = GroupOfDevice(device);
  if (group.empty()) return "keine Berechtigung; nur der Systemverwalter darf das Gerät benutzen";
  return "keine Berechtigung; die Gruppe \"" + group +
         "\" darf das Gerät benutzen (sudo adduser BENUTZER " + group + ", dann neu anmelden)";
}

std::string InUse(const std::string& device) {
  const pid_t user = UserOfDevice(device);
  if (user == 0) return "bereit";
  const DeviceLock lock;
  const std::string text = "belegt, " + ProcessText(user) + " benutzt es";
  if (IsPseudoTerminal(device) || lock.HolderOf(device) != user) return text;
  return text + " (Sperre " + lock.FileOf(device) + ")";
}

}  // namespace

std::vector<MachinePort> MachinePorts() {
  std::vector<MachinePort> ports;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    ports.push_back({port.systemLocation().toStdString(), Description(port)});
  }
  std::sort(ports.begin(), ports.end(),
            [](const MachinePort& a, const MachinePort& b) { return a.device < b.device; });
  return ports;
}

std::string DescribeDevice(const std::string& device) {
  if (device.empty()) return "kein Gerät eingetragen";
  switch (StateOfDevice(DevicePath(device))) {
    case DeviceState::Missing:
      return "nicht vorhanden";
    case DeviceState::NoPermission:
      return NoPermission(device);
    case DeviceState::NotSerial:
      return "kein serieller Anschluss";
    case DeviceState::Ready:
      break;
  }
  return InUse(device);
}

bool IsDeviceReady(const std::string& device) {
  if (device.empty()) return false;
  const std::string path = DevicePath(device);
  return StateOfDevice(path) == DeviceState::Ready && UserOfDevice(path) == 0;
}

}  // namespace kelvo
