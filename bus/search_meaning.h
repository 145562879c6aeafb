#pragma once

#include <string>
#include <vector>

#include "bus/terminal_search.h"

namespace kelvo {

/// What the results together mean, by address, where that is a guess with "vermutlich"; empty when
/// they speak for themselves. German, UTF-8.
std::string SearchMeaning(const std::vector<SearchResult>& results);

}  // namespace kelvo
