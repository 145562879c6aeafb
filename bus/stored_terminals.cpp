#include "bus/stored_terminals.h"

#include <algorithm>
#include <cmath>

#include "bus/addresses.h"
#include "store/single_records.h"

namespace kelvo {

namespace {

int AddressIn(const std::optional<double>& number) {
  if (!number || std::nearbyint(*number) != *number) return kNoAddress;
  return *number >= 0 && *number <= kLastBusAddress ? static_cast<int>(*number) : kNoAddress;
}

int AddressIn(const std::string& text) {
  return AddressIn(text.empty() ? std::nullopt : NumberIn(text));
}

}  // namespace

std::vector<StoredTerminal> ListedTerminals(const Recordset& terminals) {
  const auto addresses = terminals.Column("Adresse");
  const auto names = terminals.Column("Bezeichnung");
  const auto active = terminals.Column("aktiv");
  const auto checksums = terminals.Column("Checksum");
  std::vector<StoredTerminal> listed;
  listed.reserve(addresses.size());
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    listed.push_back({AddressIn(addresses[i]), names[i], NumberIn(active[i]).value_or(0) != 0,
                      NumberIn(checksums[i]).value_or(0) != 0});
  }
  return listed;
}

std::vector<StoredTerminal> StoredTerminals(const Recordset& terminals) {
  std::vector<StoredTerminal> stored = ListedTerminals(terminals);
  std::erase_if(stored, [](const StoredTerminal& some) { return some.address == kNoAddress; });
  return stored;
}

int CurrentAddress(const Recordset& terminals) {
  return AddressIn(NumberIn(terminals.Field("Adresse")));
}

std::optional<StoredTerminal> StoredTerminalAt(const Recordset& terminals, int address) {
  const auto stored = StoredTerminals(terminals);
  const auto found = std::find_if(stored.begin(), stored.end(), [address](const auto& terminal) {
    return terminal.address == address;
  });
  return found == stored.end() ? std::nullopt : std::optional(*found);
}

std::vector<int> StoredAddresses(const Recordset& terminals) {
  std::vector<int> addresses;
  for (const StoredTerminal& terminal : StoredTerminals(terminals)) {
    addresses.push_back(terminal.address);
  }
  return addresses;
}

}  // namespace kelvo
