#include "terminal/eeprom.h"

#include <algorithm>

#include "base/val.h"

namespace kelvo {

using std::chrono::milliseconds;

double GetEEpromBytes(Exchange& exchange, TerminalState& state) {
  // The query sets 500 ms itself, and that governs the wait; these two are kept as they are.
  exchange.SetReplyTimeout(milliseconds(10000));
  exchange.CommandBuffer = "E?F";
  exchange.QueryCommand();
  exchange.SetReplyTimeout(milliseconds(1000));
  const double bytes = Val(exchange.CommandBuffer);
  state.freeBytes = exchange.LastStatus == 0 ? std::optional(bytes) : std::nullopt;
  state.Changed();
  return bytes;
}

void ReportEEpromError(Operator& person, const std::string& errorText, const std::string& suffix) {
  person.Message(errorText == "EEPROM" ? "Fehler beim EEPROM" : errorText + suffix,
                 Icon::Exclamation);
}

bool SendToEEprom(Exchange& exchange, Operator& person, std::string command,
                  const std::string& suffix) {
  exchange.CommandBuffer = std::move(command);
  exchange.SendCommand(Acknowledge::Wait);
  if (exchange.LastStatus == 0) return true;
  ReportEEpromError(person, exchange.CommandBuffer, suffix);
  return false;
}

int EraseBlocks(const std::string& reply) { return std::max(RoundToEven(Val(reply)), 1); }

}  // namespace kelvo
