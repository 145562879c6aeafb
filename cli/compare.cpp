#include "base/wire_text.h"
#include "cli/connection.h"
#include "cli/verbs.h"
#include "inventory/comparison.h"
#include "inventory/line_text.h"
#include "inventory/stored_records.h"

namespace kelvo::cli {
namespace {

constexpr Column kCompareColumns[] = {
    {"adresse", "Adresse"}, {"name", "Name"},          {"was", "Was"},
    {"gelesen", "Gelesen"}, {"gelesen_am", ""},        {"geschrieben", "Zuletzt geschrieben"},
    {"geschrieben_am", ""}, {"geprueft", ""},          {"datenbank", "Datenbank"},
    {"ergebnis", ""},       {"vergleich", "Vergleich"}};

std::string Word(Compared compared) {
  switch (compared) {
    case Compared::Same:
      return "gleich";
    case Compared::Different:
      return "verschieden";
    case Compared::Unknown:
      return "unbekannt";
    case Compared::Plain:
      break;
  }
  return "ohne Vergleich";
}

std::string WrittenName(const Held& held) {
  if (held.item.key.kind == ItemKind::Config) return {};
  return held.item.name.empty() ? "ohne Namen" : held.item.name;
}

std::vector<Cell> RowOf(const ComparisonRow& row, const std::string& name) {
  const auto& written = row.written;
  return {std::int64_t{row.terminal.address},
          name,
          row.what,
          ReadableText(row.read),
          row.readAt ? Cell(TimeText(*row.readAt)) : Cell(),
          written ? Cell(WrittenName(*written)) : Cell(),
          written ? Cell(TimeText(written->written)) : Cell(),
          written ? Cell(written->proof == Proof::Checksum) : Cell(),
          row.database,
          Word(row.compared),
          row.words};
}

/// What is to be compared: what is known, or has just been read.
class Comparing {
 public:
  explicit Comparing(Bench& bench)
      : bench_(bench),
        device_(LineSettingOf(bench).device),
        readings_(bench.DataPath() + "/" + kReadingsFile) {}
  Status Run();

 private:
  bool Read(const std::vector<EquipTarget>& targets);
  std::vector<EquipTarget> Targets(const WriteJournal& journal);
  void Compare(const EquipTarget& target, const WriteJournal& journal);

  Bench& bench_;
  const std::string device_;
  Readings readings_;
  Table table_{{std::begin(kCompareColumns), std::end(kCompareColumns)}, {}};
  bool different_ = false;
};

Status Comparing::Run() {
  WriteJournal journal(bench_.DataPath() + "/" + kJournalFile);
  journal.Refresh();
  const std::vector<EquipTarget> targets = Targets(journal);
  const bool read = !bench_.Asked().read || Read(targets);
  journal.Refresh();
  for (const EquipTarget& target : targets) Compare(target, journal);
  bench_.Print(table_);
  if (targets.empty()) bench_.Operator().Say("An diesem Anschluss wurde noch nichts geschrieben.");
  return read && !different_ ? AllWell : SomethingFailed;
}

// Without a list these are all on the line that anything is known of.
std::vector<EquipTarget> Comparing::Targets(const WriteJournal& journal) {
  if (bench_.Asked().to) return TargetsOf(bench_, device_);
  std::vector<EquipTarget> targets;
  for (const TerminalId& id : journal.Terminals()) {
    if (id.device != device_ || id.address == kUnknownAddress) continue;
    targets.push_back({id, StoredName(bench_.Data(), id.address), {}});
  }
  return targets;
}

bool Comparing::Read(const std::vector<EquipTarget>& targets) {
  Connection line(bench_);
  if (!line.Open()) return false;
  std::vector<int> addresses;
  addresses.reserve(targets.size());
  for (const EquipTarget& target : targets) addresses.push_back(target.id.address);
  ReadRun run({line.exchange, bench_.World().loop, readings_});
  line.SetStop([&run] { run.Stop(); });
  const ReadRun::Result result = run.Run(device_, addresses, {}, [this](int address) {
    bench_.Shown().Show("Adresse " + std::to_string(address) + " wird gelesen …");
  });
  for (const int address : result.silent) {
    bench_.Operator().Say("Unter Adresse " + std::to_string(address) +
                          " antwortet das Terminal nicht.");
  }
  return result.complete && result.silent.empty();
}

void Comparing::Compare(const EquipTarget& target, const WriteJournal& journal) {
  const std::vector<StoredRecord> records = StoredRecords(bench_.Data().database);
  for (const ComparisonRow& row :
       kelvo::Compare(target.id, journal.Of(target.id), readings_, records)) {
    different_ = different_ || row.compared == Compared::Different;
    const bool telling = row.compared == Compared::Different || row.compared == Compared::Unknown;
    if (telling || bench_.Asked().all) table_.rows.push_back(RowOf(row, target.name));
  }
}

}  // namespace

Status RunCompare(Bench& bench) { return Comparing(bench).Run(); }

}  // namespace kelvo::cli
