#include "project/project.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "link/addresses.h"
#include "project/identity.h"
#include "store/display_size.h"

namespace kelvo {
namespace {

using enum FieldForm;
using Identity = KindRow::Identity;

constexpr NumberRange kNumbers{-1, 255};  // in the Terminal; -1 has none
constexpr NumberRange kYesNo{-1, 1};      // older databases have -1 for yes
constexpr NumberRange kLines{0, 1'000'000};
constexpr NumberRange kPause{0, 60'000};        // milliseconds
constexpr NumberRange kColours{0, 0x100'0000};  // the last one makes all of a picture black
constexpr NumberRange kVersions{0, 1'000};

constexpr NumberRange kMacroLengths{0, 1023};

constexpr ProjectField kMacroFields[] = {{"nr_im_display", "Nummer", Whole, false, kNumbers},
                                         {"Bezeichnung", "Bezeichnung", Text, true},
                                         {"ausgang", "Ausgang", Text},
                                         {"eingang", "Eingang", Text},
                                         {"wert", "Inhalt", Commands, false, kMacroLengths}};
constexpr ProjectField kContentFields[] = {{"nr_im_display", "Nummer", Whole, false, kNumbers},
                                           {"Bezeichnung", "Bezeichnung", Text, true},
                                           {"ausgang", "Ausgang", Text},
                                           {"eingang", "Eingang", Text},
                                           {"wert", "Inhalt", Commands}};
constexpr ProjectField kOtherFields[] = {{"nr_im_display", "Nummer", Whole, false, kNumbers},
                                         {"Bezeichnung", "Bezeichnung", Text, true},
                                         {"typ", "Art", Text},
                                         {"ausgang", "Ausgang", Text},
                                         {"eingang", "Eingang", Text},
                                         {"wert", "Inhalt", Commands}};
constexpr ProjectField kTerminalFields[] = {{"Adresse", "Adresse", Whole, true, {0, kAllAddresses}},
                                            {"Bezeichnung", "Bezeichnung", Text},
                                            {"Checksum", "Prüfsumme", YesNo, false, kYesNo},
                                            {"aktiv", "aktiv", YesNo, false, kYesNo}};
constexpr ProjectField kLineFields[] = {{"satznr", "Satz", Whole, true, kLines},
                                        {"ComNr", "Anschluss", Text},
                                        {"Baud1", "Baud1", Text},
                                        {"Bits1", "Bits1", Text},
                                        {"StopBit1", "StopBit1", Text},
                                        {"Parity1", "Parity1", Text},
                                        {"Shake1", "Shake1", Text},
                                        {"Puffer1", "Puffer1", Text},
                                        {"RecCom2", "RecCom2", Text},
                                        {"Baud2", "Baud2", Text},
                                        {"Bits2", "Bits2", Text},
                                        {"Stopbit2", "StopBit2", Text},
                                        {"Shake2", "Shake2", Text},
                                        {"Parity2", "Parity2", Text},
                                        {"Puffer2", "Puffer2", Text}};
constexpr ProjectField kPortFields[] = {{"ComNr", "Com", Whole, true, {1, 6}},
                                        {"Geraet", "Gerät", Text}};
constexpr ProjectField kOptionFields[] = {
    {"FensterMitZoomen", "FensterMitZoomen", YesNo, true, kYesNo},
    {"sofortsenden", "sofortsenden", YesNo, true, kYesNo},
    {"rs485wait", "rs485wait", Whole, true, kPause},
    {"BMPSchwarzschwelle", "BMPSchwarzschwelle", Whole, true, kColours},
    {"EEPromelegantlöschenabVer", "EEPromelegantlöschenabVer", Real, true, kVersions},
    {"ChecksumabVer", "ChecksumabVer", Real, true, kVersions},
    {"BMPinPixelabVer", "BMPinPixelabVer", Real, true, kVersions}};
constexpr ProjectField kDisplayFields[] = {
    {"displayx", "Breite", Whole, true, {kSmallestDisplay, kLargestDisplayX}},
    {"displayy", "Höhe", Whole, true, {kSmallestDisplay, kLargestDisplayY}}};

constexpr KindRow Content(ProjectKind kind, const char* member, const char* noun, const char* typ) {
  return {kind, Identity::Name, member, noun, "Makro", typ, kContentFields, 0, 1};
}

constexpr KindRow kKinds[] = {
    {ProjectKind::Macro, Identity::Name, "Makros", "Makro", "Makro", "Makro", kMacroFields, 0, 1},
    Content(ProjectKind::MatrixTable, "Matrix-Tabellen", "Matrix-Tabelle", "MatrixTab"),
    Content(ProjectKind::AtTable, "AT-Tabellen", "AT-Tabelle", "ATTab"),
    Content(ProjectKind::Picture, "Grafiken", "Grafik", "Grafik"),
    Content(ProjectKind::Symbol, "Symbole", "Symbol", "Symbol"),
    {ProjectKind::Other, Identity::Name, "Andere Sätze", "Satz", "Makro", "", kOtherFields, 0, 1},
    {ProjectKind::Terminal, Identity::Number, "Terminals", "Terminal", "DOVU", "", kTerminalFields,
     0, 1},
    {ProjectKind::Line,
     Identity::Number,
     "Schnittstellen",
     "Schnittstelle",
     "Schnittstelle",
     "",
     kLineFields,
     0,
     {}},
    {ProjectKind::Port, Identity::Number, "Anschlüsse", "Com", "Anschluss", "", kPortFields, 0, {}},
    {ProjectKind::Options,
     Identity::Single,
     "Optionen",
     "Optionen",
     "Optionen",
     "",
     kOptionFields,
     {},
     {}},
    {ProjectKind::Display,
     Identity::Single,
     "Display",
     "Display",
     "Default",
     "",
     kDisplayFields,
     {},
     {}},
    {ProjectKind::Drawing, Identity::Name, "Zeichnungsdateien", "Zeichnung", "", "", {}, {}, {}},
    {ProjectKind::Inventory, Identity::Name, "Bestände", "Bestand", "", "", {}, {}, {}}};
static_assert(std::size(kKinds) == kProjectKinds);

// Records without a number stand first, as those do that have something else there.
auto OrderOf(const ProjectRecord& record) {
  return std::tuple(record.kind, NumberOf(record), NameOf(record));
}

template <typename Number>
bool IsWithin(const NumberRange& range, Number number) {
  return number >= static_cast<Number>(range.least) && number <= static_cast<Number>(range.most);
}

// What tells a record apart is always there.
bool TextFits(const ProjectField& field, const std::string& text) {
  if (field.form == Text) {
    return !field.always ||
           (!WithoutOuterBlanks(text).empty() && text.find_first_of("\r\n") == std::string::npos);
  }
  const auto most = static_cast<std::size_t>(field.range.most);
  return most == 0 || Characters(text) <= most;
}

}  // namespace

std::size_t Characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

bool Fits(const ProjectField& field, const Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return true;
  if (field.form == Text || field.form == Commands) {
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr && TextFits(field, *text);
  }
  const auto* const whole = std::get_if<std::int64_t>(&value);
  if (whole != nullptr) return IsWithin(field.range, *whole);
  const auto* const real = std::get_if<double>(&value);
  return real != nullptr && field.form == Real && IsWithin(field.range, *real);
}

bool StandsBefore(const ProjectRecord& one, const ProjectRecord& other) {
  const auto a = OrderOf(one);
  const auto b = OrderOf(other);
  return a != b ? a < b : one.values < other.values;
}

std::span<const KindRow> ProjectKindTable() { return kKinds; }

const KindRow& RowOf(ProjectKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::string NameOf(const ProjectRecord& record) {
  const auto field = RowOf(record.kind).name;
  const auto* const name = field ? std::get_if<std::string>(&record.values[*field]) : nullptr;
  return name != nullptr ? *name : std::string();
}

std::optional<std::int64_t> NumberOf(const ProjectRecord& record) {
  const auto field = RowOf(record.kind).number;
  const auto* const number = field ? std::get_if<std::int64_t>(&record.values[*field]) : nullptr;
  return number != nullptr ? std::optional(*number) : std::nullopt;
}

std::string RecordText(const ProjectRecord& record) {
  std::string text = RowOf(record.kind).noun;
  const auto number = NumberOf(record);
  if (number && *number >= 0) text += " " + std::to_string(*number);
  const std::string name = NameOf(record);
  return name.empty() ? text : text + " „" + name + "“";
}

void SortProject(Project& project) {
  std::sort(project.records.begin(), project.records.end(), StandsBefore);
  std::stable_sort(project.drawings.begin(), project.drawings.end(),
                   [](const auto& a, const auto& b) { return a.name < b.name; });
}

}  // namespace kelvo
