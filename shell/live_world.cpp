#include "shell/live_world.h"

#include "adapters/machine_ports.h"
#include "shell/frmhaupt.h"
#include "store/data_folder.h"

namespace kelvo {

std::unique_ptr<frmhaupt> LiveWorld::MakeMainWindow(Folders folders) {
  TakeDeliveredDatabase(folders.program, folders.data);
  const auto setDevices = [this](QtSerialPort::DeviceOf deviceOf) {
    com1.SetDevices(std::move(deviceOf));
  };
  auto window = std::make_unique<frmhaupt>(OutsideOf(
      *this, person, std::move(folders),
      {.ports = MachinePorts, .describeDevice = DescribeDevice, .setDevices = setDevices}));
  person.SetWindow(window.get());
  QObject::connect(window.get(), &frmhaupt::Unloaded, window.get(), [this] { loop.Close(); });
  return window;
}

}  // namespace kelvo
