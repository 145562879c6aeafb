#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "sheet/sources.h"
#include "store/program_data.h"

// Where the sources of a data sheet come from.

namespace kelvo {

/// The Terminals of the list, on the listener's device, then all others that something was written
/// to or that listen; where there is none, somebody at that device of whom nothing is known.
std::vector<SheetTerminal> SheetTerminals(const ProgramData& data, const WriteJournal& journal,
                                          const TerminalId& listener,
                                          const std::function<std::string(int address)>& nameOf);

/// All that the database and the journal have of them. Throws StoreError.
SheetSources SourcesOf(ProgramData& data, const WriteJournal& journal,
                       std::shared_ptr<const Readings> readings,
                       std::vector<SheetTerminal> terminals);

}  // namespace kelvo
