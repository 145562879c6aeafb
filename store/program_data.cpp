#include "store/program_data.h"

#include <algorithm>
#include <cctype>

namespace kelvo {
namespace {

bool IsWindowsName(const std::string& device) {
  return device.size() > 3 && (device.starts_with("COM") || device.starts_with("com")) &&
         std::all_of(device.begin() + 3, device.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

ProgramData::ProgramData(const std::string& databasePath, Opening opening)
    : database(databasePath, opening),
      Default(database, "Default"),
      Optionen(database, "Optionen"),
      ctlMakroData(database, "Makro"),
      ctlTastData(database, "select * from Makro where typ = 'MatrixTab'"),
      ctlATData(database, "select * from Makro where typ = 'ATTab'"),
      ctlComData(database, "Schnittstelle"),
      ctlDovuData(database, "select * from DOVU Order by Adresse"),
      Anschluss(database, "Anschluss") {}

std::string ProgramData::DeviceOf(int number, const std::string& dataFolder) {
  Anschluss.TryRefresh();  // asked while the line is served, where nothing may wait
  if (!Anschluss.FindFirst("ComNr", std::int64_t{number})) return {};
  return AbsoluteDevice(Anschluss.Text("Geraet").value_or(""), dataFolder);
}

std::string AbsoluteDevice(const std::string& device, const std::string& dataFolder) {
  if (device.empty() || device.front() == '/' || IsWindowsName(device)) return device;
  return dataFolder + "/" + device;
}

}  // namespace kelvo
