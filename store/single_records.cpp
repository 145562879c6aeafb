#include "store/single_records.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "store/display_size.h"

namespace kelvo {
namespace {

using Integer = std::int64_t;

constexpr double kLongestPause = 60'000;   // milliseconds
constexpr double kBrightest = 0x100'0000;  // makes all of a picture black
constexpr double kHighestVersion = 1'000;
constexpr double kMostRecords = 1'000'000;

// As in kelvo.sql, but for "FirstRun": only a database that is fresh asks for a welcome. Older
// databases have -1 for yes.
const std::vector<SingleField>& Options() {
  static const std::vector<SingleField> fields = {
      {"FensterMitZoomen", Integer{0}, -1, 1},
      {"sofortsenden", Integer{0}, -1, 1},
      {"rs485wait", Integer{20}, 1, kLongestPause},
      {"BMPSchwarzschwelle", Integer{8388608}, 0, kBrightest},
      {"FirstRun", Integer{0}, -1, 1},
      {"EEPromelegantlöschenabVer", 2.0, 0, kHighestVersion},
      {"ChecksumabVer", 2.0, 0, kHighestVersion},
      {"BMPinPixelabVer", 2.0, 0, kHighestVersion}};
  return fields;
}

const std::vector<SingleField>& Defaults() {
  static const std::vector<SingleField> fields = {
      {"displayx", Integer{240}, kSmallestDisplay, kLargestDisplayX},
      {"displayy", Integer{128}, kSmallestDisplay, kLargestDisplayY},
      {"schnittstelle", Integer{1}, 0, kMostRecords}};
  return fields;
}

// Without the C library, whose decimal separator follows the desktop's language.
std::optional<double> TextNumber(std::string_view text) {
  text.remove_prefix(std::min(text.size(), text.find_first_not_of(' ')));
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec == std::errc::invalid_argument || std::isnan(number)) return std::nullopt;
  if (read.ec == std::errc()) return number;
  // Too large, or too small to be told from 0.
  const std::string_view digits(text.data(), static_cast<std::size_t>(read.ptr - text.data()));
  const bool small =
      digits.find("e-") != std::string_view::npos || digits.find("E-") != std::string_view::npos;
  if (small) return 0;
  return text.front() == '-' ? std::numeric_limits<double>::lowest()
                             : std::numeric_limits<double>::max();
}

std::optional<double> Finite(double number) {
  if (std::isnan(number)) return std::nullopt;
  return std::clamp(number, std::numeric_limits<double>::lowest(),
                    std::numeric_limits<double>::max());
}

}  // namespace

const std::vector<SingleField>& SingleFields(const std::string& table) {
  static const std::vector<SingleField> none;
  if (table == "Optionen") return Options();
  return table == "Default" ? Defaults() : none;
}

const SingleField* FindSingleField(const std::string& table, const std::string& field) {
  const std::vector<SingleField>& fields = SingleFields(table);
  const auto found = std::find_if(fields.begin(), fields.end(), [&field](const SingleField& some) {
    return some.field == field;
  });
  return found == fields.end() ? nullptr : &*found;
}

std::map<std::string, Value> DeliveredRecord(const std::string& table) {
  std::map<std::string, Value> record;
  for (const SingleField& field : SingleFields(table)) record[field.field] = field.delivered;
  return record;
}

std::optional<double> NumberIn(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
  if (const auto* number = std::get_if<double>(&value)) return Finite(*number);
  if (const auto* text = std::get_if<std::string>(&value)) {
    const std::optional<double> number = TextNumber(*text);
    return number ? Finite(*number) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace kelvo
