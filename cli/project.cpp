#include <algorithm>

#include "cli/files.h"
#include "cli/project_content.h"
#include "cli/verbs.h"
#include "inventory/journal.h"
#include "project/project_store.h"
#include "project/project_text.h"

// Export and import of the project.

namespace kelvo::cli {
namespace {

constexpr Column kProjectColumns[] = {{"art", "Art"},
                                      {"nummer", "Nummer"},
                                      {"bezeichnung", "Bezeichnung"},
                                      {"befund", "Befund"},
                                      {"geschieht", "Was geschieht"}};

std::string KindNames() {
  std::string names;
  for (const KindRow& row : ProjectKindTable()) {
    names += (names.empty() ? "" : ", ") + std::string(row.member);
  }
  return names;
}

std::set<ProjectKind> KindsOf(const std::vector<std::string>& named) {
  std::set<ProjectKind> kinds;
  for (const KindRow& row : ProjectKindTable()) {
    if (std::find(named.begin(), named.end(), row.member) != named.end()) kinds.insert(row.kind);
  }
  for (const std::string& name : named) {
    const auto table = ProjectKindTable();
    const bool known = std::any_of(table.begin(), table.end(),
                                   [&name](const KindRow& row) { return row.member == name; });
    if (!known)
      throw WrongRequest("--kind kennt \"" + name + "\" nicht, nur: " + KindNames() + ".");
  }
  return kinds;
}

std::string ChoiceText(const ImportItem& item) {
  switch (item.choice) {
    case ImportChoice::Open:
      return "offen";
    case ImportChoice::Leave:
      return "bleibt, wie es hier ist";
    case ImportChoice::Take:
      break;
    case ImportChoice::Beside:
      return "daneben als „" + item.besideName + "“";
  }
  return item.result ? "wird übernommen" : "wird gelöscht";
}

std::vector<Cell> RowOf(const ImportItem& item) {
  const ProjectRecord& shown = item.there ? *item.there : item.here->record;
  const auto number = NumberOf(shown);
  return {std::string(RowOf(item.kind).noun), number ? Cell(*number) : Cell(), NameOf(shown),
          FindingText(item.finding), ChoiceText(item)};
}

void Decide(ImportPlan& plan, Differing differing) {
  if (differing == Differing::Refuse) return;
  const ImportChoice wanted =
      differing == Differing::Take ? ImportChoice::Take : ImportChoice::Leave;
  for (ImportItem& item : plan.items) {
    if (item.choice == ImportChoice::Open && item.MayChoose(wanted)) item.choice = wanted;
  }
}

Status Apply(Bench& bench, WriteJournal& journal, const ImportPlan& plan) {
  if (!plan.drawings.empty()) {
    bench.Operator().Say("Zeichnungsdateien übernimmt das Fenster (Datei / Importieren …).");
  }
  if (plan.Open() > 0) {
    bench.Operator().Say((plan.Open() == 1 ? std::string("Ein Satz ist")
                                           : std::to_string(plan.Open()) + " Sätze sind") +
                         " hier anders; --different sagt, was geschehen soll. Es wurde "
                         "nichts geändert.");
    return SomethingFailed;
  }
  for (const std::string& fault : plan.NameFaults()) {
    if (fault.empty()) continue;
    bench.Operator().Say("Zwei Sätze hätten dieselbe Bezeichnung: " + fault +
                         ". Es wurde nichts geändert.");
    return SomethingFailed;
  }
  if (bench.Asked().tryOnly) return AllWell;
  const ImportDone done = ApplyImport(bench.Data().database, journal, plan);
  bench.Shown().Clear();
  if (!done.changes.empty() || !done.inventory.empty()) return AllWell;
  bench.Operator().Say("Es war nichts zu ändern.");
  return AllWell;
}

}  // namespace

Status RunExport(Bench& bench) {
  const std::set<ProjectKind> kinds = KindsOf(bench.Asked().kinds);
  WriteJournal journal(bench.DataPath() + "/" + kJournalFile);
  journal.Refresh();
  const std::vector<RecordHere> records = RecordsHere(bench.Data().database);
  const Project project = kinds.empty() ? EverythingOf(records, journal.Entries())
                                        : ProjectOf(records, journal.Entries(), kinds);
  const std::string text = *ProjectText(project);
  const std::string& path = bench.Asked().files.front();
  if (path == kStandardOutput) {
    bench.World().out << text << std::flush;
  } else {
    WriteWhole(path, text, bench.DataPath());
  }
  return AllWell;
}

Status RunImport(Bench& bench) {
  const std::string& path = bench.Asked().files.front();
  const Project there = ProjectFrom(path, ReadWhole(path));
  std::optional<Project> base;
  if (!bench.Asked().base.empty()) {
    base = ProjectFrom(bench.Asked().base, ReadWhole(bench.Asked().base));
  }
  WriteJournal journal(bench.DataPath() + "/" + kJournalFile);
  journal.Refresh();
  ImportPlan plan = PlanImport(there, RecordsHere(bench.Data().database), journal.Entries(),
                               base ? &*base : nullptr);
  Decide(plan, bench.Asked().differing);
  Table table{{std::begin(kProjectColumns), std::end(kProjectColumns)}, {}};
  for (const ImportItem& item : plan.items) {
    if (item.finding != Finding::Equal) table.rows.push_back(RowOf(item));
  }
  bench.Print(table);
  return Apply(bench, journal, plan);
}

}  // namespace kelvo::cli
