#pragma once

#include <functional>

#include "link/exchange.h"

// The erase of the whole EEPROM.

namespace kelvo {

/// Told how many of the blocks are erased, at first none. False: nobody waits for the rest.
using EraseProgress = std::function<bool(int done, int blocks)>;

/// Whether a Terminal of this version counts while it erases; `from` is the first that does.
inline bool CountsWhileErasing(double version, double from) { return version >= from; }

/// Acknowledged when it is over, which may take half a minute.
Reply ErasePlain(Exchange& exchange);
/// The Terminal counts down the blocks still to erase, then acknowledges; false when it does not,
/// or was not waited for. Waits as long as the interval says that stands, and for the acknowledge
/// as long as a collection by time.
bool EraseCounting(Exchange& exchange, const EraseProgress& progress);
/// The same with time for each count and for the acknowledge, whatever interval stood before.
bool EraseCountingPatiently(Exchange& exchange, const EraseProgress& progress);

}  // namespace kelvo
