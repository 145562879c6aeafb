#include "keyboards/at_table.h"

#include <algorithm>
#include <stdexcept>

#include "base/val.h"
#include "keyboards/key_codes.h"

namespace kelvo {
namespace {

constexpr int kLastCode = 255;

// Two characters at most are read of each code.
int CodeOf(std::string_view field) { return RoundToEven(HexField(field.substr(0, 2))); }

}  // namespace

void EnterPair(AtPairs& pairs, AtPair pair) {
  const auto same = std::find_if(pairs.begin(), pairs.end(),
                                 [&](const AtPair& row) { return row.oldCode == pair.oldCode; });
  if (same != pairs.end()) {
    same->newCode = pair.newCode;
  } else {
    pairs.push_back(pair);
  }
}

AtPairs OrderingPass(const AtPairs& pairs) {
  const auto at = [&pairs](std::size_t row) -> const AtPair& { return pairs[row - 1]; };
  AtPairs sorted;
  // Rows count from 1 here; a code is compared with the row number m, deliberately.
  for (std::size_t i = 1; i <= pairs.size(); ++i) {
    std::size_t m = i;
    for (std::size_t j = i + 1; j <= pairs.size(); ++j) {
      if (at(j).oldCode < static_cast<int>(m)) m = j;
    }
    sorted.push_back(at(m));
  }
  return sorted;
}

AtPairs SortedPairs(AtPairs pairs) {
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const AtPair& a, const AtPair& b) { return a.oldCode < b.oldCode; });
  return pairs;
}

bool SentAsShown(const AtPairs& pairs) {
  return pairs.empty() || CreateATTab(0, pairs).Text() == CreateATTab(0, SortedPairs(pairs)).Text();
}

std::vector<int> LostRows(const AtPairs& pairs) {
  std::vector<int> lost;
  for (const AtPair& pair : pairs) {
    if (pair.oldCode == pair.newCode) lost.push_back(pair.oldCode);
  }
  return lost;
}

Command CreateATTab(double number, const AtPairs& pairs) {
  if (pairs.empty()) throw std::runtime_error("Die Tabelle ist leer");
  const AtPairs sorted = OrderingPass(pairs);
  std::string codes;
  std::size_t next = 0;
  for (int code = sorted.front().oldCode; code <= sorted.back().oldCode; ++code) {
    const bool recoded = next < sorted.size() && sorted[next].oldCode == code;
    codes += "," + HexCode(recoded ? sorted[next++].newCode : code);
  }
  return WriteKeyTable(NumberText(number), HexCode(sorted.front().oldCode), codes);
}

AtPairs ReadAtTable(std::string_view command) {
  const auto fields = TableFields(command);
  AtPairs pairs;
  if (fields.size() < 2) return pairs;
  int code = CodeOf(fields[1]);
  for (std::size_t field = 2; field < fields.size() && code <= kLastCode; ++field, ++code) {
    const int newCode = CodeOf(fields[field]);
    if (newCode != code) pairs.push_back({code, newCode});
  }
  return pairs;
}

}  // namespace kelvo
