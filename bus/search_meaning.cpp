#include "bus/search_meaning.h"

#include <algorithm>

namespace kelvo {
namespace {

using Results = std::vector<SearchResult>;

// One alone may be that of an adapter that holds the echo back.
constexpr std::ptrdiff_t kShortestLoss = 2;

bool Shared(const SearchResult& result) { return !result.Found() && !result.Absent(); }

bool Any(const Results& results, bool (*holds)(const SearchResult&)) {
  return std::any_of(results.begin(), results.end(), holds);
}

bool Echoed(const SearchResult& result) { return result.echoed; }

std::string SharedAddresses(const Results& results) {
  std::string shared;
  for (const SearchResult& result : results) {
    if (!Shared(result)) continue;
    shared += (shared.empty() ? "" : ", ") + std::to_string(result.address);
  }
  return shared;
}

std::string AnswerMeaning(const Results& results) {
  const bool heard =
      Any(results, [](const SearchResult& result) { return result.heard != Heard::Silence; });
  if (!heard && Any(results, Echoed)) {
    return "Es kam nur zurück, was gesendet wurde (Echo); kein Terminal hat geantwortet. Anschluss "
           "und Adapter arbeiten also. Vermutlich sind die Terminals aus, A und B vertauscht, oder "
           "die Baudrate stimmt nicht.";
  }
  if (!heard) {
    return "Niemand hat geantwortet. Vermutlich liegt es am Kabel, am Anschluss oder an der "
           "Baudrate.";
  }
  if (!Any(results, [](const SearchResult& result) { return result.Found(); })) {
    return "Jede Antwort war beschädigt. Vermutlich stimmt die Baudrate nicht, oder der Abschluss "
           "der Leitung fehlt.";
  }
  const std::string shared = SharedAddresses(results);
  if (shared.empty()) return {};
  return "Adresse " + shared + ": Dort antworten vermutlich mehrere Terminals zugleich.";
}

// The first stretch in which a line that brings back what is sent does not.
std::string EchoMeaning(const Results& results) {
  if (!Any(results, Echoed)) return {};
  const auto silent = [](const SearchResult& result) { return !result.echoed; };
  auto end = results.begin();
  while (end != results.end()) {
    const auto first = std::find_if(end, results.end(), silent);
    end = std::find_if(first, results.end(), Echoed);
    if (end - first < kShortestLoss) continue;
    const std::string from = std::to_string(first->address);
    std::string meaning;
    if (end == results.end()) {
      meaning = "Ab Adresse " + from +
                " kam das Echo der Leitung nicht mehr. Vermutlich ist der Adapter oder sein Kabel "
                "ausgefallen.";
    } else {
      meaning = "Von Adresse " + from + " bis " + std::to_string((end - 1)->address) +
                " blieb das Echo der Leitung aus. Vermutlich hat der Adapter oder sein Kabel einen "
                "Wackelkontakt.";
    }
    return meaning.append(" Was dort „nicht vorhanden“ heißt, ist nicht sicher.");
  }
  return {};
}

}  // namespace

std::string SearchMeaning(const Results& results) {
  const std::string answers = AnswerMeaning(results);
  const std::string echo = EchoMeaning(results);
  return answers + (answers.empty() || echo.empty() ? "" : " ") + echo;
}

}  // namespace kelvo
