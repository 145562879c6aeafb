#include "shell/live_world.h"

#include <stdexcept>

#include "adapters/machine_ports.h"
#include "shell/frmhaupt.h"
#include "store/data_folder.h"

namespace kelvo {

std::unique_ptr<frmhaupt> LiveWorld::MakeMainWindow(Folders folders) {
  try {
    TakeDeliveredDatabase(folders.program, folders.data);
  } catch (const std::runtime_error& error) {
    folders.lack = error.what();
  }
  const auto setDevices = [this](QtSerialPort::DeviceOf deviceOf) {
    com1.SetDevices(std::move(deviceOf));
  };
  simulator = std::make_unique<SideProcess>(folders.program + "/kelvo-simulator");
  auto window = std::make_unique<frmhaupt>(OutsideOf(*this, person, folders,
                                                     {.ports = MachinePorts,
                                                      .describeDevice = DescribeDevice,
                                                      .deviceReady = IsDeviceReady,
                                                      .setDevices = setDevices,
                                                      .simulator = simulator.get()}));
  person.SetWindow(window.get());
  person.SetFolder(window->Memory().Folder());
  person.SetOwnFolders({folders.data, folders.program});
  QObject::connect(window.get(), &frmhaupt::Unloaded, window.get(), [this, main = window.get()] {
    main->Memory().NoteFolder(person.Folder());
    loop.Close();
  });
  return window;
}

}  // namespace kelvo
