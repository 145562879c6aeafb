#include "store/single_records.h"

namespace kelvo {
namespace {

using Fields = std::map<std::string, Value>;
using Integer = std::int64_t;

// As in kelvo.sql, but for "FirstRun": only a database that is fresh asks for a welcome.
const std::map<std::string, Fields>& Records() {
  static const std::map<std::string, Fields> records = {
      {"Optionen",
       {{"FensterMitZoomen", Integer{0}},
        {"sofortsenden", Integer{0}},
        {"rs485wait", Integer{20}},
        {"BMPSchwarzschwelle", Integer{8388608}},
        {"FirstRun", Integer{0}},
        {"EEPromelegantlöschenabVer", 2.0},
        {"ChecksumabVer", 2.0},
        {"BMPinPixelabVer", 2.0}}},
      {"Default",
       {{"displayx", Integer{240}}, {"displayy", Integer{128}}, {"schnittstelle", Integer{1}}}}};
  return records;
}

}  // namespace

const std::map<std::string, Value>& DeliveredRecord(const std::string& table) {
  static const Fields none;
  const auto found = Records().find(table);
  return found == Records().end() ? none : found->second;
}

}  // namespace kelvo
