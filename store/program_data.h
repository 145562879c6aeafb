#pragma once

#include <string>

#include "store/database.h"
#include "store/recordset.h"

namespace kelvo {

/// The open database and the record sets that are held for the whole run. Opening throws
/// StoreError.
struct ProgramData {
  explicit ProgramData(const std::string& databasePath, Opening opening = Opening::ToWrite);

  /// The device of "Com `number`" as an absolute path or a system name; empty if there is none. A
  /// relative path counts from the data folder.
  std::string DeviceOf(int number, const std::string& dataFolder);

  Database database;
  Recordset Default;
  Recordset Optionen;
  Recordset ctlMakroData;
  Recordset ctlTastData;
  Recordset ctlATData;
  Recordset ctlComData;
  Recordset ctlDovuData;
  Recordset Anschluss;
};

/// A device name made absolute: "/dev/ttyS0" and "COM3" stay, anything else lies in the folder.
std::string AbsoluteDevice(const std::string& device, const std::string& dataFolder);

}  // namespace kelvo
