#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "inventory/equipment.h"
#include "inventory/journal.h"
#include "link/exchange.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"

namespace kelvo {

/// What the equipping of Terminals needs of the program.
struct EquipServices {
  Exchange& exchange;
  EventLoop& loop;
  Operator& person;
  TerminalState& state;
  WriteJournal& journal;
  const Recordset& terminals;                          ///< `DOVU`
  const Recordset& options;                            ///< `Optionen`
  std::function<std::vector<StoredRecord>()> records;  ///< that can be written
  std::function<std::string()> device;                 ///< of the port that is open
  std::function<std::optional<int>()> selected;        ///< the one Terminal that listens
  std::string logPath;
};

}  // namespace kelvo
