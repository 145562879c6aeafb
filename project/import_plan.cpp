#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "inventory/journal_text.h"
#include "project/identity.h"
#include "project/merge.h"
#include "project/project_store.h"

namespace kelvo {
namespace {

using Records = std::vector<const ProjectRecord*>;

constexpr std::pair<Finding, const char*> kFindingTexts[] = {
    {Finding::Equal, "gleich"},
    {Finding::New, "neu"},
    {Finding::Different, "verschieden"},
    {Finding::OtherName, "gleiche Nummer, anderer Name"},
    {Finding::ChangedThere, "nur in der Datei geändert"},
    {Finding::ChangedHere, "nur hier geändert"},
    {Finding::Merged, "beide geändert, zusammengeführt"},
    {Finding::Conflict, "beide geändert, an derselben Stelle"},
    {Finding::DeletedThere, "in der Datei gelöscht"},
    {Finding::DeletedHere, "hier gelöscht"}};

// One record as each side has it.
struct Trio {
  const RecordHere* here = nullptr;
  const ProjectRecord* there = nullptr;
  const ProjectRecord* base = nullptr;
};

// The records of one kind.
struct Sides {
  std::vector<const RecordHere*> here;
  Records there;
  Records base;
};

Records RecordsOf(const std::vector<const RecordHere*>& here) {
  Records records;
  for (const RecordHere* const one : here) records.push_back(&one->record);
  return records;
}

// First who comes from the same record of the common state, then who is the same without it.
std::vector<Trio> TriosOf(const Sides& sides) {
  std::vector<Trio> trios;
  const auto baseHere = Matched(sides.base, RecordsOf(sides.here));
  const auto baseThere = Matched(sides.base, sides.there);
  std::set<const void*> taken;
  for (std::size_t i = 0; i < sides.base.size(); ++i) {
    Trio trio{baseHere[i] ? sides.here[*baseHere[i]] : nullptr,
              baseThere[i] ? sides.there[*baseThere[i]] : nullptr, sides.base[i]};
    taken.insert({trio.here, trio.there});
    trios.push_back(trio);
  }
  Sides rest;
  std::copy_if(sides.here.begin(), sides.here.end(), std::back_inserter(rest.here),
               [&](const RecordHere* one) { return taken.count(one) == 0; });
  std::copy_if(sides.there.begin(), sides.there.end(), std::back_inserter(rest.there),
               [&](const ProjectRecord* one) { return taken.count(one) == 0; });
  const auto thereHere = Matched(rest.there, RecordsOf(rest.here));
  for (std::size_t i = 0; i < rest.there.size(); ++i) {
    trios.push_back({thereHere[i] ? rest.here[*thereHere[i]] : nullptr, rest.there[i], nullptr});
  }
  return trios;
}

// Both have it, and it came from nowhere common.
void FindTwo(const Trio& trio, ImportItem& item) {
  const bool renamed = RowOf(item.kind).identity == KindRow::Identity::Name &&
                       NameKeyOf(trio.here->record) != NameKeyOf(*trio.there);
  item.finding = renamed ? Finding::OtherName : Finding::Different;
  item.result = *trio.there;
}

void FindThree(const Trio& trio, ImportItem& item) {
  const ProjectRecord& here = trio.here->record;
  const ProjectRecord& there = *trio.there;
  item.result = there;
  if (here == *trio.base) {
    item.finding = Finding::ChangedThere;
    item.choice = ImportChoice::Take;
  } else if (there == *trio.base) {
    item.finding = Finding::ChangedHere;
    item.choice = ImportChoice::Leave;
  } else if (auto merged = MergedRecord(*trio.base, here, there)) {
    // What has been merged here before is not merged again.
    const bool done = *merged == here;
    item.finding = done ? Finding::Equal : Finding::Merged;
    item.choice = done ? ImportChoice::Leave : ImportChoice::Take;
    item.result = std::move(merged);
  } else {
    item.finding = Finding::Conflict;
  }
}

// Only the file has it: new, or deleted here since.
void FindThere(const Trio& trio, ImportItem& item) {
  item.result = *trio.there;
  item.finding = trio.base != nullptr ? Finding::DeletedHere : Finding::New;
  if (trio.base == nullptr) item.choice = ImportChoice::Take;
  if (trio.base != nullptr && *trio.there == *trio.base) item.choice = ImportChoice::Leave;
}

// It was in the common state and the file has it no more: the one side's deletion counts unless the
// other has changed it.
void FindHere(const Trio& trio, ImportItem& item) {
  item.finding = Finding::DeletedThere;
  const bool unchanged =
      trio.here != nullptr && trio.base != nullptr && trio.here->record == *trio.base;
  if (unchanged) item.choice = ImportChoice::Take;
}

ImportItem ItemOf(const Trio& trio, ProjectKind kind) {
  ImportItem item;
  item.kind = kind;
  if (trio.here != nullptr) item.here = *trio.here;
  if (trio.there != nullptr) item.there = *trio.there;
  if (trio.base != nullptr) item.base = *trio.base;
  if (trio.there == nullptr) {
    FindHere(trio, item);
  } else if (trio.here == nullptr) {
    FindThere(trio, item);
  } else if (trio.here->record == *trio.there) {
    item.finding = Finding::Equal;
    item.choice = ImportChoice::Leave;
  } else if (trio.base == nullptr) {
    FindTwo(trio, item);
  } else {
    FindThree(trio, item);
  }
  return item;
}

// A part of the kind alone tells nothing of what is not in it.
bool TellsDeletions(const Project& there, const Project& base, ProjectKind kind) {
  return there.partly.count(kind) == 0 && base.partly.count(kind) == 0;
}

class Names {
 public:
  Names(const std::vector<RecordHere>& here, const std::vector<ImportItem>& items) {
    for (const RecordHere& one : here) used_.insert(NameKeyOf(one.record));
    for (const ImportItem& item : items) {
      if (!item.here) used_.insert(NameKeyOf(*item.there));
    }
  }
  // "Halle (2)" where "Halle" is used; each is given once.
  std::string FreeOf(ProjectKind kind, const std::string& name) {
    std::string free = name;
    for (int i = 2; !used_.insert({kind, free}).second; ++i) {
      free = name + " (" + std::to_string(i) + ")";
    }
    return free;
  }

 private:
  std::set<NameKey> used_;
};

template <typename All>
Records OfKind(const All& all, ProjectKind kind) {
  Records records;
  for (const auto& record : all) {
    if (record.kind == kind) records.push_back(&record);
  }
  return records;
}

void PlanKind(ImportPlan& plan, ProjectKind kind, const Project& there,
              const std::vector<RecordHere>& here, const Project* base) {
  Sides sides;
  for (const RecordHere& one : here) {
    if (one.record.kind == kind) sides.here.push_back(&one);
  }
  sides.there = OfKind(there.records, kind);
  if (base != nullptr) sides.base = OfKind(base->records, kind);
  for (const Trio& trio : TriosOf(sides)) {
    if (trio.here == nullptr && trio.there == nullptr) continue;  // deleted on both sides
    const bool deletes = base != nullptr && TellsDeletions(there, *base, kind);
    if (trio.there == nullptr && !deletes) continue;
    plan.items.push_back(ItemOf(trio, kind));
  }
}

void PlanInventory(ImportPlan& plan, const Project& there,
                   const std::vector<JournalEntry>& journal) {
  std::multiset<std::string> known;
  for (const JournalEntry& entry : journal) known.insert(JournalLine(entry));
  for (const JournalEntry& entry : there.inventory) {
    const auto found = known.find(JournalLine(entry));
    if (found == known.end()) {
      plan.inventory.push_back(entry);
    } else {
      known.erase(found);
      ++plan.inventoryKnown;
    }
  }
}

const ProjectRecord& RecordOf(const ImportItem& item) {
  return item.there ? *item.there : item.here->record;
}

}  // namespace

std::string FindingText(Finding finding) {
  for (const auto& [known, text] : kFindingTexts) {
    if (known == finding) return text;
  }
  return {};
}

bool ImportItem::MayBeBeside() const {
  const bool other = there && finding != Finding::Equal;
  return other && (RowOf(kind).identity == KindRow::Identity::Name || kind == ProjectKind::Line);
}

bool ImportItem::MayChoose(ImportChoice wanted) const {
  switch (wanted) {
    case ImportChoice::Open:
      return false;
    case ImportChoice::Leave:
      return true;
    case ImportChoice::Take:
      return finding != Finding::Equal;
    case ImportChoice::Beside:
      break;
  }
  return MayBeBeside();
}

std::size_t ImportPlan::Open() const {
  return static_cast<std::size_t>(std::count_if(items.begin(), items.end(), [](const auto& item) {
    return item.choice == ImportChoice::Open;
  }));
}

std::size_t ImportPlan::Changes() const {
  return static_cast<std::size_t>(std::count_if(items.begin(), items.end(), [](const auto& item) {
    return item.choice == ImportChoice::Take || item.choice == ImportChoice::Beside;
  }));
}

ImportPlan PlanImport(const Project& there, const std::vector<RecordHere>& here,
                      const std::vector<JournalEntry>& journal, const Project* base) {
  ImportPlan plan;
  for (const ProjectKind kind : there.kinds) PlanKind(plan, kind, there, here, base);
  std::stable_sort(plan.items.begin(), plan.items.end(), [](const auto& one, const auto& other) {
    return StandsBefore(RecordOf(one), RecordOf(other));
  });
  Names names(here, plan.items);
  for (ImportItem& item : plan.items) {
    if (!item.MayBeBeside()) continue;
    const std::string name = NameKeyOf(*item.there).second;
    item.besideName = item.here ? names.FreeOf(item.kind, name) : name;
  }
  for (const RecordHere& one : here) plan.namesHere.insert(NameKeyOf(one.record));
  plan.drawings = there.drawings;
  PlanInventory(plan, there, journal);
  return plan;
}

}  // namespace kelvo
