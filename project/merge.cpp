#include "project/merge.h"

#include <algorithm>
#include <deque>
#include <map>

#include "project/identity.h"
#include "project/notation.h"

namespace kelvo {
namespace {

using Lines = std::vector<std::string>;
using Matches = std::vector<std::optional<std::size_t>>;
using Records = std::vector<const ProjectRecord*>;

// More than this is not compared line by line: it counts as one change.
constexpr std::size_t kMostPairs = 4'000'000;

std::string KeyPart(const std::string& text) { return std::to_string(text.size()) + ":" + text; }

std::string KeyPart(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return "t" + KeyPart(*text);
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return "w" + std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value)) return "r" + std::to_string(*real);
  return "-";
}

// What two records have in common that count as the same; nothing: this does not tell.
using KeyOf = std::optional<std::string> (*)(const ProjectRecord&);

std::optional<std::string> AllOfIt(const ProjectRecord& record) {
  std::string key;
  for (const Value& value : record.values) key += KeyPart(value);
  return key;
}

std::optional<std::string> NameAndNumber(const ProjectRecord& record) {
  const auto number = NumberOf(record);
  if (!number) return std::nullopt;
  return std::to_string(*number) + " " + NameOf(record);
}

std::optional<std::string> Identity(const ProjectRecord& record) {
  switch (RowOf(record.kind).identity) {
    case KindRow::Identity::Name:
      return NameKeyOf(record).second;
    case KindRow::Identity::Number:
      return KeyPart(record.values[RowOf(record.kind).number.value_or(0)]);
    case KindRow::Identity::Single:
      break;
  }
  return "";
}

// Of names that differ in blanks alone, first the one that is written so.
std::optional<std::string> NameToTheLetter(const ProjectRecord& record) {
  const bool tells = RowOf(record.kind).identity == KindRow::Identity::Name;
  return tells ? std::optional(NameOf(record)) : std::nullopt;
}

// Renamed, or another one that has taken its number.
std::optional<std::string> NumberInTerminal(const ProjectRecord& record) {
  const auto number = NumberOf(record);
  const bool tells = RowOf(record.kind).identity == KindRow::Identity::Name;
  if (!tells || !number || *number < 0) return std::nullopt;
  return std::to_string(*number);
}

void MatchBy(KeyOf keyOf, const Records& records, const Records& others, Matches& matches,
             std::vector<bool>& taken) {
  std::map<std::string, std::deque<std::size_t>> free;
  for (std::size_t i = 0; i < others.size(); ++i) {
    const auto key = taken[i] ? std::nullopt : keyOf(*others[i]);
    if (key) free[*key].push_back(i);
  }
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto key = matches[i] ? std::nullopt : keyOf(*records[i]);
    const auto found = key ? free.find(*key) : free.end();
    if (found == free.end() || found->second.empty()) continue;
    matches[i] = found->second.front();
    taken[*matches[i]] = true;
    found->second.pop_front();
  }
}

// Which line of `changed` is still the base's, in their order: the longest such sequence.
Matches KeptLines(const Lines& base, const Lines& changed) {
  Matches kept(base.size());
  std::size_t head = 0;
  const std::size_t shorter = std::min(base.size(), changed.size());
  for (; head < shorter && base[head] == changed[head]; ++head) kept[head] = head;
  std::size_t tail = 0;
  while (tail < shorter - head &&
         base[base.size() - 1 - tail] == changed[changed.size() - 1 - tail]) {
    ++tail;
    kept[base.size() - tail] = changed.size() - tail;
  }
  const std::size_t rows = base.size() - head - tail;
  const std::size_t columns = changed.size() - head - tail;
  if (rows * columns > kMostPairs) return kept;
  std::vector<std::vector<std::uint32_t>> length(rows + 1, std::vector<std::uint32_t>(columns + 1));
  for (std::size_t i = rows; i-- > 0;) {
    for (std::size_t j = columns; j-- > 0;) {
      length[i][j] = base[head + i] == changed[head + j]
                         ? length[i + 1][j + 1] + 1
                         : std::max(length[i + 1][j], length[i][j + 1]);
    }
  }
  for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
    if (base[head + i] == changed[head + j]) {
      kept[head + i++] = head + j++;
    } else {
      length[i + 1][j] >= length[i][j + 1] ? ++i : ++j;
    }
  }
  return kept;
}

Lines Part(const Lines& lines, std::size_t from, std::size_t to) {
  return {lines.begin() + static_cast<std::ptrdiff_t>(from),
          lines.begin() + static_cast<std::ptrdiff_t>(to)};
}

std::optional<Lines> MergedPart(const Lines& base, const Lines& one, const Lines& other) {
  if (one == other || other == base) return one;
  if (one == base) return other;
  return std::nullopt;
}

Lines LinesOf(const Value& value) {
  Lines lines;
  if (const auto* text = std::get_if<std::string>(&value)) {
    for (const std::string_view piece : CommandPieces(*text)) lines.emplace_back(piece);
  }
  return lines;
}

std::optional<Value> MergedCommands(const Value& base, const Value& one, const Value& other) {
  for (const Value* const value : {&base, &one, &other}) {
    if (!std::holds_alternative<std::string>(*value)) return std::nullopt;
  }
  const auto merged = MergedLines(LinesOf(base), LinesOf(one), LinesOf(other));
  if (!merged) return std::nullopt;
  std::string text;
  for (const std::string& line : *merged) text += line;
  return text;
}

}  // namespace

std::vector<std::optional<std::size_t>> Matched(const Records& records, const Records& others) {
  Matches matches(records.size());
  std::vector<bool> taken(others.size());
  for (const KeyOf keyOf :
       {&AllOfIt, &NameAndNumber, &NameToTheLetter, &Identity, &NumberInTerminal}) {
    MatchBy(keyOf, records, others, matches, taken);
  }
  return matches;
}

// What lies between two lines that are equal is put side by side as it comes.
std::vector<LinePair> AlignedLines(const Lines& one, const Lines& other) {
  const Matches kept = KeptLines(one, other);
  std::vector<LinePair> pairs;
  std::size_t left = 0;
  std::size_t right = 0;
  const auto fill = [&](std::size_t toLeft, std::size_t toRight) {
    while (left < toLeft || right < toRight) {
      pairs.emplace_back(left < toLeft ? std::optional(left++) : std::nullopt,
                         right < toRight ? std::optional(right++) : std::nullopt);
    }
  };
  for (std::size_t line = 0; line < one.size(); ++line) {
    if (!kept[line]) continue;
    fill(line, *kept[line]);
    fill(line + 1, *kept[line] + 1);
  }
  fill(one.size(), other.size());
  return pairs;
}

// Between two lines that both sides have kept lies what one of them, or both, have changed.
std::optional<Lines> MergedLines(const Lines& base, const Lines& one, const Lines& other) {
  const Matches inOne = KeptLines(base, one);
  const Matches inOther = KeptLines(base, other);
  Lines merged;
  std::size_t atBase = 0;
  std::size_t atOne = 0;
  std::size_t atOther = 0;
  for (std::size_t line = 0; line <= base.size(); ++line) {
    const bool end = line == base.size();
    if (!end && (!inOne[line] || !inOther[line])) continue;
    const std::size_t toOne = end ? one.size() : *inOne[line];
    const std::size_t toOther = end ? other.size() : *inOther[line];
    const auto part = MergedPart(Part(base, atBase, line), Part(one, atOne, toOne),
                                 Part(other, atOther, toOther));
    if (!part) return std::nullopt;
    merged.insert(merged.end(), part->begin(), part->end());
    if (!end) merged.push_back(base[line]);
    atBase = line + 1;
    atOne = toOne + 1;
    atOther = toOther + 1;
  }
  return merged;
}

std::optional<ProjectRecord> MergedRecord(const ProjectRecord& base, const ProjectRecord& one,
                                          const ProjectRecord& other) {
  ProjectRecord merged = one;
  const auto fields = RowOf(base.kind).fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (one.values[i] == other.values[i] || other.values[i] == base.values[i]) continue;
    if (one.values[i] == base.values[i]) {
      merged.values[i] = other.values[i];
      continue;
    }
    const auto both = fields[i].form == FieldForm::Commands
                          ? MergedCommands(base.values[i], one.values[i], other.values[i])
                          : std::nullopt;
    if (!both) return std::nullopt;
    merged.values[i] = *both;
  }
  return merged;
}

}  // namespace kelvo
