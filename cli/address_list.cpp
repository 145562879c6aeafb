#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "cli/options.h"

namespace kelvo::cli {
namespace {

// 255 reaches all at once, so that nobody could be told apart.
constexpr int kHighestAddress = 254;
constexpr std::string_view kRange = "..";

std::optional<int> AddressIn(std::string_view text) {
  int address = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, address);
  if (read.ec != std::errc() || read.ptr != end || address < 0) return std::nullopt;
  return address <= kHighestAddress ? std::optional(address) : std::nullopt;
}

bool AddRange(std::vector<int>& addresses, std::string_view part) {
  const std::size_t dots = part.find(kRange);
  const bool range = dots != std::string_view::npos;
  const auto first = AddressIn(part.substr(0, dots));
  const auto last = range ? AddressIn(part.substr(dots + kRange.size())) : first;
  if (!first || !last || *first > *last) return false;
  for (int address = *first; address <= *last; ++address) {
    const bool known = std::find(addresses.begin(), addresses.end(), address) != addresses.end();
    if (!known) addresses.push_back(address);
  }
  return true;
}

}  // namespace

std::optional<std::vector<int>> AddressesIn(std::string_view list) {
  std::vector<int> addresses;
  for (;;) {
    const std::size_t comma = std::min(list.find(','), list.size());
    if (!AddRange(addresses, list.substr(0, comma))) return std::nullopt;
    if (comma == list.size()) return addresses;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace kelvo::cli
