#include "cli/bench.h"

#include <filesystem>

#include "base/val.h"
#include "bus/stored_terminals.h"
#include "store/data_folder.h"
#include "store/display_size.h"
#include "store/single_records.h"

namespace kelvo::cli {
namespace {

constexpr char kFontFolder[] = "/fonts";

// Where there is no database, what the delivered one holds.
std::int64_t Delivered(const char* table, const char* field) {
  return std::get<std::int64_t>(DeliveredRecord(table).at(field));
}

// Without a slash at its end. A folder that was named is not made: it may be mistyped.
std::string AbsoluteFolder(const std::string& folder) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) {
    throw std::runtime_error("Den Ordner \"" + folder + "\" gibt es nicht.");
  }
  const auto path = (std::filesystem::absolute(folder) / "").lexically_normal();
  return path.parent_path().string();
}

EquipTarget TargetOf(const StoredTerminal& stored, const std::string& device) {
  return {{device, stored.address}, stored.name, stored.checksum};
}

std::vector<EquipTarget> ActiveOf(const ProgramData& data, const std::string& device) {
  std::vector<EquipTarget> targets;
  for (const StoredTerminal& stored : StoredTerminals(data.ctlDovuData)) {
    if (stored.active) targets.push_back(TargetOf(stored, device));
  }
  if (targets.empty()) throw WrongRequest("In der Liste ist kein Terminal aktiv.");
  return targets;
}

}  // namespace

void Person::Say(const std::string& text, const std::string& hint) {
  before_();
  err_ << "kelvo-cli: " << text << "\n";
  if (!hint.empty()) err_ << "           " << hint << "\n";
  err_ << std::flush;
}

Bench::Bench(const Options& options, const Outside& outside)
    : options_(options),
      outside_(outside),
      dataPath_(options.data.empty() ? outside.data : AbsoluteFolder(options.data)),
      progress_(outside.err, outside.progressWidth),
      person_(outside.err, [this] { progress_.Clear(); }) {}

ProgramData& Bench::Data() {
  if (!data_) {
    TakeDeliveredDatabase(outside_.program, dataPath_);
    data_.emplace(dataPath_ + "/" + kDatabaseFile);
  }
  return *data_;
}

ProgramData* Bench::DataIfThere() {
  std::error_code ignored;
  const bool there = data_ || std::filesystem::exists(dataPath_ + "/" + kDatabaseFile, ignored);
  return there ? &Data() : nullptr;
}

const DeviceFonts& Bench::Fonts() {
  if (!fonts_) {
    fonts_.emplace();
    const bool whole = fonts_->Load(outside_.program + kFontFolder).empty();
    if (!whole) person_.Say("Es fehlen Schriften des Terminals oder sie sind beschädigt.");
  }
  return *fonts_;
}

void Bench::Print(const Table& table) {
  progress_.Clear();
  outside_.out << TableText(table, options_.form) << std::flush;
}

DisplaySizeChoice DisplayOf(Bench& bench) {
  if (bench.Asked().display) return *bench.Asked().display;
  const ProgramData* const data = bench.DataIfThere();
  if (data == nullptr) {
    return {static_cast<int>(Delivered("Default", "displayx")),
            static_cast<int>(Delivered("Default", "displayy"))};
  }
  const auto [width, height] = DisplaySizeIn(data->Default);
  return {width, height};
}

std::int64_t BlackThreshold(Bench& bench) {
  const ProgramData* const data = bench.DataIfThere();
  return data == nullptr ? Delivered("Optionen", "BMPSchwarzschwelle")
                         : RoundToEven(data->Optionen.Number("BMPSchwarzschwelle"));
}

std::string StoredName(const ProgramData& data, int address) {
  const auto stored = StoredTerminalAt(data.ctlDovuData, address);
  return stored ? stored->name : std::string();
}

std::vector<EquipTarget> TargetsOf(Bench& bench, const std::string& device) {
  const ProgramData& data = bench.Data();
  const AddressChoice& to = *bench.Asked().to;
  if (to.active) return ActiveOf(data, device);
  std::vector<EquipTarget> targets;
  for (const int address : to.addresses) {
    const auto stored = StoredTerminalAt(data.ctlDovuData, address);
    targets.push_back(stored ? TargetOf(*stored, device) : EquipTarget{{device, address}, {}, {}});
  }
  return targets;
}

}  // namespace kelvo::cli
