#include "inventory/proven_write.h"

#include <algorithm>

#include "base/val.h"
#include "base/wire_text.h"
#include "bus/transfer.h"
#include "link/commands.h"
#include "link/control_characters.h"
#include "link/intervals.h"
#include "terminal/eeprom.h"

namespace kelvo {
namespace {

using std::chrono::nanoseconds;

// An answer that has not come may still do so, and must not be taken for the next one.
constexpr std::chrono::milliseconds kStrayAnswer{1000};

// "?A" and the number, as the Terminal tells its address. An acknowledge that is late from an
// earlier command may stand in front.
bool IsAddressReply(std::string_view reply, int address) {
  while (!reply.empty() && (reply.front() == kAck || reply.front() == kNak)) {
    reply.remove_prefix(1);
  }
  if (reply.size() < 3) return false;
  std::string_view number = reply.substr(2);
  number.remove_prefix(std::min(number.find_first_not_of(' '), number.size()));
  const bool isNumber = number.find_first_not_of("0123456789") == std::string_view::npos;
  return isNumber && !number.empty() && number.size() <= 3 &&
         std::stoi(std::string(number)) == address;
}

std::string Quoted(const std::string& wire) { return "\"" + ReadableText(wire) + "\""; }

WriteResult Failure(WriteVerdict verdict, const Reply& reply, std::string detail) {
  return {verdict, reply, std::move(detail)};
}

WriteResult Lost(const Reply& reply) {
  return Failure(WriteVerdict::LineLost, reply, "die Schnittstelle ist nicht mehr offen");
}

WriteResult NotAcknowledged(const Reply& reply) {
  switch (reply.kind) {
    case ReplyKind::PortClosed:
      return Lost(reply);
    case ReplyKind::Refused:
      return Failure(WriteVerdict::Refused, reply, "das Terminal hat es abgelehnt (NAK)");
    case ReplyKind::Silent:
      return Failure(WriteVerdict::Silent, reply,
                     "keine Reaktion; ob es geschrieben wurde, ist offen");
    default:
      return Failure(
          WriteVerdict::UnknownCode, reply,
          "statt ACK kam " + Quoted(reply.received.empty() ? reply.text : reply.received));
  }
}

bool MayBeLate(WriteVerdict verdict) {
  return verdict == WriteVerdict::Unproven || verdict == WriteVerdict::WrongSum ||
         verdict == WriteVerdict::UnknownCode || verdict == WriteVerdict::Silent ||
         verdict == WriteVerdict::NoTerminal || verdict == WriteVerdict::OtherAnswer;
}

}  // namespace

std::string VerdictText(WriteVerdict verdict) {
  switch (verdict) {
    case WriteVerdict::Proven:
      return "empfangen und bestätigt";
    case WriteVerdict::AcknowledgedOnly:
      return "bestätigt, ohne Prüfsumme";
    case WriteVerdict::Unproven:
      return "bestätigt, aber nicht geprüft";
    case WriteVerdict::WrongSum:
      return "angekommen ist etwas anderes";
    case WriteVerdict::Refused:
    case WriteVerdict::UnknownCode:
    case WriteVerdict::Silent:
      return "nicht bestätigt";
    case WriteVerdict::NoTerminal:
    case WriteVerdict::OtherAnswer:
    case WriteVerdict::NoRoom:
      return "nicht geschrieben";
    case WriteVerdict::LineLost:
      break;
  }
  return "Verbindung verloren";
}

std::string ResultText(const WriteResult& result) {
  return VerdictText(result.verdict) + (result.detail.empty() ? "" : ": " + result.detail);
}

WriteResult ProvenWrite::Write(int address, bool canSum, const Item& item,
                               const WriteFrame& frame) {
  const Sending sending(exchange_, {item.name, RecordTyp(item.key.kind)});
  std::optional<WriteResult> result = Reach(address);
  if (result->verdict == WriteVerdict::Proven) {
    result = frame.room ? LacksRoom(*frame.room) : std::nullopt;
  }
  if (!result) {
    if (!frame.before.empty()) exchange_.SendString(frame.before);
    result = WriteAndProve(canSum, item);
    if (result->Done() && !frame.behind.empty()) exchange_.SendString(frame.behind);
  }
  if (MayBeLate(result->verdict)) AwaitStrayAnswer();
  return *std::move(result);
}

WriteResult ProvenWrite::Ask(int address) {
  WriteResult result = Reach(address);
  if (MayBeLate(result.verdict)) AwaitStrayAnswer();
  return result;
}

// Proven when the Terminal has told its address.
WriteResult ProvenWrite::Reach(int address) {
  exchange_.SendString(SelectAddress(address));
  const Reply reply = exchange_.SendQuery(AskAddress());
  if (!exchange_.Alive()) return Lost(reply);
  const std::string number = std::to_string(address);
  if (reply.Failed()) {
    return Failure(WriteVerdict::NoTerminal, reply,
                   reply.kind == ReplyKind::Silent
                       ? "unter Adresse " + number + " antwortet niemand"
                       : "die Antwort unter Adresse " + number + " war nicht vollständig");
  }
  if (IsAddressReply(reply.text, address)) {
    return {.verdict = WriteVerdict::Proven, .reply = reply};
  }
  return Failure(WriteVerdict::OtherAnswer, reply,
                 "auf die Frage nach Adresse " + number + " kam " + Quoted(reply.text));
}

std::optional<WriteResult> ProvenWrite::LacksRoom(std::size_t bytes) {
  const Reply free = exchange_.SendQuery(AskFreeBytes());
  if (!exchange_.Alive()) return Lost(free);
  if (free.Failed()) {
    return Failure(WriteVerdict::NoRoom, free, "auf die Frage nach dem freien Platz kam nichts");
  }
  if (static_cast<double>(bytes) <= free.Number() - kEepromReserve) return std::nullopt;
  return Failure(WriteVerdict::NoRoom, free,
                 "nicht genügend Platz, frei sind " + NumberText(free.Number()) + " Byte");
}

WriteResult ProvenWrite::WriteAndProve(bool canSum, const Item& item) {
  if (canSum) exchange_.SendString(ResetChecksum());
  if (!exchange_.Alive()) return Lost({ReplyKind::PortClosed, {}});
  const Reply reply =
      exchange_.SendString(item.command, Pending::Keep, Acknowledge::Wait, kProvenWriteInterval);
  WriteResult result = reply.Failed() ? NotAcknowledged(reply)
                       : canSum       ? ReadSum(item.command)
                                      : WriteResult{WriteVerdict::AcknowledgedOnly, reply};
  result.sent = true;
  return result;
}

// Of a Terminal that has acknowledged.
WriteResult ProvenWrite::ReadSum(const std::string& command) {
  const std::uint16_t expected = ExpectedChecksum(command);
  const Reply reply = exchange_.SendQuery(AskChecksum());
  if (!exchange_.Alive()) return Lost(reply);
  if (reply.Failed()) {
    return Failure(WriteVerdict::Unproven, reply, "auf die Frage nach der Prüfsumme kam nichts");
  }
  const std::optional<std::uint16_t> sum = ReadChecksum(reply.text);
  if (sum == expected) return {.verdict = WriteVerdict::Proven, .reply = reply};
  if (!sum) {
    return Failure(WriteVerdict::Unproven, reply, "statt der Prüfsumme kam " + Quoted(reply.text));
  }
  return Failure(WriteVerdict::WrongSum, reply,
                 "Prüfsumme " + ChecksumText(*sum) + " statt " + ChecksumText(expected));
}

void ProvenWrite::AwaitStrayAnswer() {
  const nanoseconds end = loop_.Now() + kStrayAnswer;
  while (loop_.Now() < end && exchange_.Alive()) loop_.WaitForEvent(end - loop_.Now());
}

}  // namespace kelvo
