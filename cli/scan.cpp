#include <algorithm>

#include "base/wire_text.h"
#include "bus/quick_search.h"
#include "bus/search_meaning.h"
#include "cli/connection.h"
#include "cli/verbs.h"

namespace kelvo::cli {
namespace {

constexpr Column kScanColumns[] = {{"adresse", "Adresse"},   {"name", "Name"},
                                   {"gefunden", ""},         {"ergebnis", "Ergebnis"},
                                   {"version", "Version"},   {"pruefsumme", "Prüfsumme"},
                                   {"erlaeuterung", "Grund"}};

// What has gone well needs no reason in the table of the people.
std::vector<Cell> RowOf(const SearchResult& result, const std::string& name) {
  const bool found = result.Found();
  return {std::int64_t{result.address},
          name,
          found,
          ResultVerdict(result),
          found ? Cell(ReadableText(result.versionReply)) : Cell(),
          found ? Cell(result.checksum) : Cell(),
          found ? Cell(std::string()) : Cell(ResultStory(result))};
}

/// One search, as it goes on.
class Scan {
 public:
  explicit Scan(Bench& bench) : bench_(bench), line_(bench) {}
  Status Run();

 private:
  TerminalSearch::End Search();
  void Take(const SearchResult& result);
  Status End(TerminalSearch::End end);

  Bench& bench_;
  Connection line_;
  std::vector<SearchResult> results_;
};

Status Scan::Run() {
  if (!line_.Open()) return SomethingFailed;
  return End(Search());
}

TerminalSearch::End Scan::Search() {
  const Options& asked = bench_.Asked();
  const double from = bench_.Data().Optionen.Number("ChecksumabVer");
  const auto reopen = [this] { return line_.Reopen(); };
  const auto take = [this](const SearchResult& result) { Take(result); };
  if (asked.quick) {
    QuickSearch search(
        {line_.exchange, bench_.World().com1, bench_.World().loop, line_.terminal, reopen});
    line_.SetStop([&search] { search.Stop(); });
    return search.Run(asked.last, from, take);
  }
  TerminalSearch search({line_.exchange, line_.terminal, reopen});
  line_.SetStop([&search] { search.Stop(); });
  return search.Run(asked.last, from, take, asked.first);
}

// The quick search may tell of an address again.
void Scan::Take(const SearchResult& result) {
  const auto known = std::find_if(results_.begin(), results_.end(), [&](const SearchResult& some) {
    return some.address == result.address;
  });
  if (known != results_.end()) {
    *known = result;
  } else {
    results_.push_back(result);
  }
  const auto found = std::count_if(results_.begin(), results_.end(),
                                   [](const SearchResult& some) { return some.Found(); });
  bench_.Shown().Show("Adresse " + std::to_string(result.address) + " von " +
                      std::to_string(bench_.Asked().last) + ", " + std::to_string(found) +
                      " gefunden");
}

Status Scan::End(TerminalSearch::End end) {
  Table table{{std::begin(kScanColumns), std::end(kScanColumns)}, {}};
  bool conflict = false;
  bool found = false;
  for (const SearchResult& result : results_) {
    conflict = conflict || (!result.Found() && !result.Absent());
    found = found || result.Found();
    if (result.Absent() && !bench_.Asked().all) continue;
    table.rows.push_back(RowOf(result, StoredName(bench_.Data(), result.address)));
  }
  bench_.Print(table);
  line_.TellLoss();
  const std::string meaning = SearchMeaning(results_);
  const bool lost = end == TerminalSearch::End::LineLost;  // silence means nothing then
  if (!meaning.empty() && !lost) bench_.Operator().Say(meaning);
  if (end != TerminalSearch::End::Complete) {
    bench_.Operator().Say(std::string(lost ? "Abgebrochen" : "Angehalten") + " nach " +
                          std::to_string(results_.size()) + " von " +
                          std::to_string(bench_.Asked().last - bench_.Asked().first + 1) +
                          " Adressen.");
  }
  if (!found && !lost) bench_.Operator().Say("Kein Terminal gefunden.");
  return end == TerminalSearch::End::Complete && found && !conflict ? AllWell : SomethingFailed;
}

}  // namespace

Status RunScan(Bench& bench) { return Scan(bench).Run(); }

}  // namespace kelvo::cli
