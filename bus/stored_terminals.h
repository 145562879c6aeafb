#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/recordset.h"

namespace kelvo {

/// A Terminal of the operator's list, a record of the table `DOVU`.
struct StoredTerminal {
  int address = 0;
  std::string name;       ///< UTF-8
  bool active = false;    ///< it is ticked where something goes to many
  bool checksum = false;  ///< it can compute one
};

/// All of the list, in its order.
std::vector<StoredTerminal> StoredTerminals(const Recordset& terminals);
/// The first with this address.
std::optional<StoredTerminal> StoredTerminalAt(const Recordset& terminals, int address);
/// Their addresses, in the list's order.
std::vector<int> StoredAddresses(const Recordset& terminals);

}  // namespace kelvo
