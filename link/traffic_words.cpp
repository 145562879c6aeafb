#include "link/traffic_words.h"

#include "base/wire_text.h"
#include "link/command_table.h"
#include "link/command_words.h"

namespace kelvo {
namespace {

using Number = TrafficRecord::Number;

// An answer in pieces is not longer than this.
constexpr Number kPiecesOfAnAnswer = 64;
constexpr std::size_t kLongestUnasked = 30;

Answer AwaitedAfter(const TrafficRecord& record, Number sent) {
  const CommandRow* const last = LastCommand(record.Characters(sent));
  return last == nullptr ? Answer::None : last->answer;
}

TrafficKind KindOfSent(const TrafficRecord& record, Number sent) {
  switch (AwaitedAfter(record, sent)) {
    case Answer::Value:
    case Answer::FreeText:
      return TrafficKind::Query;
    case Answer::Acknowledge:
    case Answer::CountDown:
      return TrafficKind::Command;
    case Answer::None:
      break;
  }
  return TrafficKind::Plain;
}

// What has come before the answer's last part, the one that is noted as the answer.
bool IsPieceOfAnswer(const TrafficRecord& record, Number number, Number sent) {
  if (number - sent > kPiecesOfAnAnswer) return false;
  if (AwaitedAfter(record, sent) == Answer::None) return false;
  for (Number before = sent + 1; before < number; ++before) {
    if (record.At(before).result != ReplyKind::Sent) return false;
  }
  return record.At(sent).result == ReplyKind::Sent;
}

// The one command that is answered.
std::string QuestionWords(const TrafficRecord& record, Number sent) {
  const std::string text = record.Characters(sent);
  std::string words = CommandWords(text, 1);
  if (words.find("; … und ") == std::string::npos) return words;
  const CommandRow* const last = LastCommand(text);
  return last == nullptr ? "unbekannter Befehl" : std::string(last->meaning);
}

std::string ReceivedWords(const TrafficRecord& record, Number number) {
  const auto sent = record.Sent(number);
  const bool unasked = KindOf(record, number) == TrafficKind::Unasked;
  if (!sent || unasked) {
    const std::string text = record.Characters(number, kLongestUnasked);
    return "unverlangt empfangen „" + ReadableText(text) +
           (text.size() < record.At(number).length ? "…“" : "“");
  }
  return "↳ " + QuestionWords(record, *sent);
}

}  // namespace

TrafficKind KindOf(const TrafficRecord& record, Number number) {
  const TrafficEntry& entry = record.At(number);
  if (entry.direction == Direction::ToTerminal) return KindOfSent(record, number);
  if (entry.length == 0) return TrafficKind::Unasked;
  const auto sent = record.Sent(number);
  const bool answers =
      sent && (entry.result != ReplyKind::Sent || IsPieceOfAnswer(record, number, *sent));
  return answers ? KindOfSent(record, *sent) : TrafficKind::Unasked;
}

bool IsFailure(const TrafficRecord& record, Number number) {
  switch (record.At(number).result) {
    case ReplyKind::Sent:
    case ReplyKind::Answered:
      return false;
    case ReplyKind::Silent:
      // Silence after what nobody answers is as it should be.
      return AwaitedAfter(record, number) != Answer::None;
    default:
      return true;
  }
}

std::optional<Number> LastFailure(const TrafficRecord& record) {
  for (Number number = record.End(); number > record.Begin(); --number) {
    if (IsFailure(record, number - 1)) return number - 1;
  }
  return std::nullopt;
}

std::string TrafficWords(const TrafficRecord& record, Number number, int limit) {
  const TrafficEntry& entry = record.At(number);
  const bool received = entry.direction == Direction::FromTerminal;
  if (received && entry.length == 0) return "Verbindung verloren: Das Gerät ist verschwunden";
  if (received) return ReceivedWords(record, number);
  if (entry.length == 0) return "nichts gesendet: kein Anschluss war offen";
  return CommandWords(record.Characters(number), limit);
}

std::string ResultWords(const TrafficRecord& record, Number number) {
  const TrafficEntry& entry = record.At(number);
  switch (entry.result) {
    case ReplyKind::Sent:
      return {};
    case ReplyKind::Answered:
      return record.Characters(number, 2) == "\x06" ? "angenommen" : "beantwortet";
    case ReplyKind::Silent:
      return IsFailure(record, number) ? "keine Antwort" : "nichts empfangen";
    case ReplyKind::Unfinished:
      return "Antwort unvollständig";
    case ReplyKind::Refused:
      return "abgelehnt (NAK)";
    case ReplyKind::Unexpected:
      return "unerwartete Antwort";
    case ReplyKind::PortClosed:
      return entry.length == 0 && entry.direction == Direction::ToTerminal
                 ? "nicht gesendet"
                 : "Anschluss geschlossen";
  }
  return {};
}

std::string DurationWords(const TrafficEntry& entry) {
  return entry.result == ReplyKind::Sent ? std::string() : DurationText(entry.took);
}

}  // namespace kelvo
