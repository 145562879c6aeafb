#include "inventory/equip_target.h"

#include "base/wire_text.h"
#include "bus/terminal_search.h"
#include "inventory/line_text.h"
#include "link/commands.h"
#include "terminal/eeprom.h"
#include "terminal/version.h"

namespace kelvo {

TargetReading AskTarget(Exchange& exchange, TerminalState& state, int address) {
  exchange.SendString(SelectAddress(address));
  const Heard heard = ReadAddressReply(address, exchange.SendQuery(AskAddress()));
  if (heard == Heard::Silence || heard == Heard::Unfinished) return {"Es antwortet nicht."};
  if (heard != Heard::Itself) return {"Unter seiner Adresse antwortet etwas anderes."};
  const Reply version = QueryVersion(exchange, state);
  if (version.Failed() || !version.readable) return {"Es hat seine Version nicht genannt."};
  const auto free = AskFreeBytesOf(exchange, state);
  if (!free) return {"Es hat seinen freien Platz nicht genannt."};
  return {{}, ScreenText(version.text), ReadVersion(version.text).number, *free};
}

std::optional<std::int64_t> AskFreeBytesOf(Exchange& exchange, TerminalState& state) {
  const Reply reply = GetEEpromBytes(exchange, state);
  return reply.Failed() ? std::nullopt : NumberIn<std::int64_t>(reply.text);
}

}  // namespace kelvo
