#pragma once

#include <string>
#include <string_view>

#include "link/exchange.h"
#include "terminal/terminal_state.h"

namespace kelvo {

/// What a "?V" reply says.
struct Version {
  double number = 0;  ///< the leading decimal number
  bool hasFlash = false;
};
/// `reply` without end mark. It ends in "F" where the Terminal has flash memory.
Version ReadVersion(std::string_view reply);

/// Notes what a "?V" query has brought; without a reply the version is 0 and the flash state stays
/// as it was.
void NoteVersion(TerminalState& state, const Reply& reply);

/// Asks "?V" and notes the reply.
Reply QueryVersion(Exchange& exchange, TerminalState& state);

/// Asks "?V" and returns all that comes within 100 ms, the closing ";" included and without the
/// echo. Notes version and flash state; without a complete answer both stay as they are.
std::string AskVersionByTime(Exchange& exchange, TerminalState& state);

}  // namespace kelvo
