#include "adapters/machine_ports.h"

#include <QSerialPortInfo>
#include <algorithm>

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
  if (device.front() != '/') return {};
  switch (StateOfDevice(device)) {
    case DeviceState::Missing:
      return "nicht vorhanden";
    case DeviceState::NoPermission:
      return NoPermission(device);
    case DeviceState::NotSerial:
      return "kein serieller Anschluss";
    case DeviceState::Ready:
      break;
  }
  return IsDeviceInUse(device) ? "belegt, ein Programm benutzt es" : "bereit";
}

bool IsDeviceReady(const std::string& device) {
  if (device.empty()) return false;
  const std::string path = DevicePath(device);
  return StateOfDevice(path) == DeviceState::Ready && !IsDeviceInUse(path);
}

}  // namespace kelvo
