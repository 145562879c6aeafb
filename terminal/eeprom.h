#pragma once

#include <string>

#include "base/operator.h"
#include "link/exchange.h"
#include "terminal/terminal_state.h"

namespace kelvo {

/// Free EEPROM bytes of the Terminal, 0 when there is no reply. Leaves the reply text in
/// CommandBuffer and tmrTimeout at 1000 ms.
double GetEEpromBytes(Exchange& exchange, TerminalState& state);

/// Bytes of the EEPROM that every write leaves free.
inline constexpr int EepromReserve = 20;

/// The report after an acknowledged EEPROM command that failed: "Fehler beim EEPROM" when the
/// Terminal refused it, else the error text and `suffix` (" / cmdSetMakro"), which each handler
/// has its own of.
void ReportEEpromError(Operator& person, const std::string& errorText, const std::string& suffix);

/// Sends an acknowledged command and reports when it fails; true on success.
bool SendToEEprom(Exchange& exchange, Operator& person, std::string command,
                  const std::string& suffix);

/// The first count of an erase count-down, from the Terminal's text: the blocks to erase, at
/// least 1.
int EraseBlocks(const std::string& reply);

}  // namespace kelvo
