#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "link/commands.h"

// A table that gives keys of the PC keyboard at the Terminal another code.

namespace kelvo {

/// One key: the code that it has, and the one that it gets (0..255 each).
struct AtPair {
  int oldCode = 0;
  int newCode = 0;
  bool operator==(const AtPair&) const = default;
};
using AtPairs = std::vector<AtPair>;

/// Overwrites the pair of that old code, or appends one; no old code occurs twice.
void EnterPair(AtPairs& pairs, AtPair pair);

/// The pairs in the order in which the command takes them. The pass compares each code with a
/// position instead of with a code: rows in ascending order come out as they are, others do not
/// come out sorted, and a pair can be lost. It is kept exactly so.
AtPairs OrderingPass(const AtPairs& pairs);

/// The pairs by ascending old code.
AtPairs SortedPairs(AtPairs pairs);

/// Whether the command carries what the rows show; an empty table counts as such.
bool SentAsShown(const AtPairs& pairs);

/// The old codes of the rows that come back from the command no more, because their keys keep their
/// code.
std::vector<int> LostRows(const AtPairs& pairs);

/// ESC "EWK" number "," first old code ("," code)* ";" with one code for each old code from the
/// first to the last of the ordering pass, the unchanged ones too. Throws std::runtime_error
/// (German) for an empty table.
Command CreateATTab(double number, const AtPairs& pairs);

/// The pairs of a stored command. Keys that keep their code give none; a text that is no code
/// counts as 0; what goes beyond code 255 is dropped.
AtPairs ReadAtTable(std::string_view command);

}  // namespace kelvo
