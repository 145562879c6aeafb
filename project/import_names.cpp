#include <algorithm>

#include "project/identity.h"
#include "project/project_store.h"

// Which names an import brings into the database, and whether they can stand there.

namespace kelvo {
namespace {

bool ComesUnderAName(const ImportItem& item) {
  return item.choice == ImportChoice::Beside && RowOf(item.kind).name.has_value();
}

// What is told apart by its number may be called as another is.
bool HasItsName(const ImportItem& item) {
  return RowOf(item.kind).identity == KindRow::Identity::Name;
}

std::string InQuotes(const std::string& name) { return "„" + name + "“"; }

// How often each name would be there when all is done.
std::multiset<NameKey> NamesAfter(const ImportPlan& plan) {
  std::multiset<NameKey> names = plan.namesHere;
  for (const ImportItem& item : plan.items) {
    const auto brought = BroughtName(item);
    const bool replaced = item.choice == ImportChoice::Take && item.here.has_value();
    const bool kept = replaced && item.result && !brought;
    const auto old = replaced && !kept ? names.find(NameKeyOf(item.here->record)) : names.end();
    if (old != names.end()) names.erase(old);
    if (brought) names.insert({item.kind, *brought});
  }
  return names;
}

}  // namespace

std::optional<std::string> BroughtName(const ImportItem& item) {
  if (!HasItsName(item)) return std::nullopt;
  if (ComesUnderAName(item)) return WithoutOuterBlanks(item.besideName);
  if (item.choice != ImportChoice::Take || !item.result) return std::nullopt;
  std::string name = NameKeyOf(*item.result).second;
  const bool same = item.here && NameKeyOf(item.here->record).second == name;
  return same || name.empty() ? std::nullopt : std::optional(std::move(name));
}

// A file that has two records of one name says so of them: these may come as they are.
std::vector<std::string> ImportPlan::NameFaults() const {
  const std::multiset<NameKey> after = NamesAfter(*this);
  std::multiset<NameKey> there;
  for (const ImportItem& item : items) {
    if (item.there) there.insert(NameKeyOf(*item.there));
  }
  std::vector<std::string> faults(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto name = BroughtName(items[i]);
    if (!name) continue;
    const NameKey key(items[i].kind, *name);
    const bool beside = ComesUnderAName(items[i]);
    const std::size_t most = beside ? 1 : std::max<std::size_t>(1, there.count(key));
    const bool isHere = namesHere.count(key) > 0;
    if (name->empty()) {
      faults[i] = "ohne Bezeichnung";
    } else if (after.count(key) > most || (beside && isHere)) {
      faults[i] = InQuotes(*name) + (isHere ? " gibt es hier schon" : " kommt schon aus der Datei");
    }
  }
  return faults;
}

}  // namespace kelvo
