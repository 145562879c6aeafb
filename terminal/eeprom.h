#pragma once

#include <cstddef>
#include <string>

#include "base/operator.h"
#include "link/exchange.h"
#include "terminal/terminal_state.h"

// What every write into the Terminal's EEPROM shares: the room that it needs, and how a failure is
// reported.

namespace kelvo {

/// Bytes of the EEPROM that every write leaves free.
inline constexpr int kEepromReserve = 20;

/// Asks for the free bytes and notes them; the reply's number is 0 when there is none.
Reply GetEEpromBytes(Exchange& exchange, TerminalState& state);

/// Asks the Terminal whether so many bytes fit; says so when they do not.
bool HasRoom(Exchange& exchange, TerminalState& state, Operator& person, std::size_t bytes);
/// The same for a keyboard table. It measures the Terminal's reply instead of the table,
/// deliberately: what is too large is refused by the Terminal itself.
bool HasRoomForTable(Exchange& exchange, TerminalState& state, Operator& person);

/// The report after an acknowledged EEPROM command that failed: "Fehler beim EEPROM" when the
/// Terminal refused it, else the error text and `suffix` (" / cmdSetMakro"), which each handler
/// has its own of.
void ReportEEpromError(Operator& person, const Reply& reply, const std::string& suffix);

/// Sends an acknowledged command and reports when it fails; true on success.
bool SendToEEprom(Exchange& exchange, Operator& person, const Command& command,
                  const std::string& suffix, Within within = {});

}  // namespace kelvo
