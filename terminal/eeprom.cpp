#include "terminal/eeprom.h"

#include "link/chronicle.h"

namespace kelvo {
namespace {

// The query sets 500 ms itself, and that governs the wait; this one is kept as it is.
constexpr std::chrono::milliseconds kFreeBytesInterval{10000};

bool Fits(std::size_t bytes, const Reply& free, Operator& person) {
  if (static_cast<double>(bytes) <= free.Number() - kEepromReserve) return true;
  person.Message("nicht genügend Platz im EEprom", Icon::Exclamation);
  return false;
}

}  // namespace

Reply GetEEpromBytes(Exchange& exchange, TerminalState& state) {
  Reply reply = exchange.SendQuery(AskFreeBytes(), kFreeBytesInterval);
  state.freeBytes = reply.Failed() ? std::nullopt : std::optional(reply.Number());
  state.freeBytesLack = MarkWords(reply, exchange);
  state.freeBytesElsewhere.clear();
  state.freeBytesChanged = false;
  state.freeBytesAsked = std::chrono::system_clock::now();
  state.Changed();
  return reply;
}

bool HasRoom(Exchange& exchange, TerminalState& state, Operator& person, std::size_t bytes) {
  return Fits(bytes, GetEEpromBytes(exchange, state), person);
}

bool HasRoomForTable(Exchange& exchange, TerminalState& state, Operator& person) {
  const Reply free = GetEEpromBytes(exchange, state);
  return Fits(free.text.size(), free, person);
}

void ReportEEpromError(Operator& person, const Reply& reply, const std::string& suffix) {
  person.Message(reply.kind == ReplyKind::Refused ? "Fehler beim EEPROM" : reply.text + suffix,
                 Icon::Exclamation);
}

bool SendToEEprom(Exchange& exchange, Operator& person, const Command& command,
                  const std::string& suffix, Within within) {
  const Reply reply = exchange.SendString(command, within);
  if (reply.Failed()) ReportEEpromError(person, reply, suffix);
  return !reply.Failed();
}

}  // namespace kelvo
