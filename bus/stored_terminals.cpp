#include "bus/stored_terminals.h"

#include <algorithm>

#include "base/val.h"

namespace kelvo {

std::vector<StoredTerminal> StoredTerminals(const Recordset& terminals) {
  const auto addresses = terminals.Column("Adresse");
  const auto names = terminals.Column("Bezeichnung");
  const auto active = terminals.Column("aktiv");
  const auto checksums = terminals.Column("Checksum");
  std::vector<StoredTerminal> stored;
  stored.reserve(addresses.size());
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    stored.push_back(
        {RoundToEven(Val(addresses[i])), names[i], Val(active[i]) != 0, Val(checksums[i]) != 0});
  }
  return stored;
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
