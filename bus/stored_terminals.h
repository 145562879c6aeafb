#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/recordset.h"

namespace kelvo {

/// A Terminal of the operator's list, a record of the table `DOVU`.
struct StoredTerminal {
  int address = 0;        ///< 0 … 255; kNoAddress where something else is stored
  std::string name;       ///< UTF-8
  bool active = false;    ///< it is ticked where something goes to many
  bool checksum = false;  ///< it can compute one
};

inline constexpr int kNoAddress = -1;

/// Every record, in the list's order.
std::vector<StoredTerminal> ListedTerminals(const Recordset& terminals);
/// Those that have an address, in the list's order: nothing is ever sent to another.
std::vector<StoredTerminal> StoredTerminals(const Recordset& terminals);
/// The address of the current record, or kNoAddress.
int CurrentAddress(const Recordset& terminals);
/// The first with this address.
std::optional<StoredTerminal> StoredTerminalAt(const Recordset& terminals, int address);
/// Their addresses, in the list's order.
std::vector<int> StoredAddresses(const Recordset& terminals);

}  // namespace kelvo
