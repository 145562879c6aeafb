#pragma once

#include "inventory/equip_plan.h"
#include "link/exchange.h"
#include "terminal/terminal_state.h"

namespace kelvo {

/// Selects a Terminal, which stays selected, and asks for its address, version and free bytes;
/// `state` takes what it tells.
TargetReading AskTarget(Exchange& exchange, TerminalState& state, int address);
/// The free bytes alone; nothing when it does not tell them.
std::optional<std::int64_t> AskFreeBytesOf(Exchange& exchange, TerminalState& state);

}  // namespace kelvo
