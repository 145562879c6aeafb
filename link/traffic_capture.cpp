#include "link/traffic_capture.h"

#include <map>

#include "link/traffic_words.h"

namespace kelvo {
namespace {

using Number = TrafficRecord::Number;

// As the column "Ergebnis" has them; the first of each kind that fits is as good as another.
constexpr std::pair<std::string_view, ReplyKind> kResults[] = {
    {"", ReplyKind::Sent},
    {kCaptureAccepted, ReplyKind::Answered},
    {kCaptureAnswered, ReplyKind::Answered},
    {"keine Antwort", ReplyKind::Silent},
    {"nichts empfangen", ReplyKind::Silent},
    {"Antwort unvollständig", ReplyKind::Unfinished},
    {kCaptureRefused, ReplyKind::Refused},
    {"unerwartete Antwort", ReplyKind::Unexpected},
    {"nicht gesendet", ReplyKind::PortClosed},
    {kCaptureClosed, ReplyKind::PortClosed}};

std::optional<ReplyKind> ReadResult(std::string_view text) {
  for (const auto& [words, kind] : kResults) {
    if (text == words) return kind;
  }
  return std::nullopt;
}

bool AddLine(TrafficRecord& record, std::string_view text) {
  const auto line = ReadCaptureLine(text);
  const auto result = line ? ReadResult(line->result) : std::nullopt;
  if (!result || line->characters.size() > TrafficRecord::kLongestEntry) return false;
  const Number number = record.Append(line->time, line->direction, line->characters);
  if (*result != ReplyKind::Sent) record.Mark(number, *result, line->took);
  const Number back = line->linesBack;
  if (back > 0 && back <= number - record.Begin()) record.Join(number, number - back);
  return true;
}

std::string Line(const TrafficRecord& record, Number number, std::size_t linesBack) {
  const TrafficEntry& entry = record.At(number);
  CaptureLine line{.time = entry.time, .direction = entry.direction};
  line.characters = record.Characters(number);
  if (entry.result != ReplyKind::Sent) line.took = entry.took;
  line.result = ResultWords(record, number);
  line.linesBack = linesBack;
  line.meaning = TrafficWords(record, number);
  return CaptureLineText(line);
}

}  // namespace

std::string CaptureLines(const TrafficRecord& record, std::span<const Number> numbers) {
  std::string lines;
  std::map<Number, std::size_t> lineOf;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    lineOf[numbers[i]] = i;
    const auto sent = record.Sent(numbers[i]);
    const auto found = sent ? lineOf.find(*sent) : lineOf.end();
    lines += Line(record, numbers[i], found == lineOf.end() ? 0 : i - found->second);
  }
  return lines;
}

Capture ReadCapture(std::string_view text) {
  // Each line of text is longer than what is kept of it.
  Capture capture{TrafficRecord(TrafficRecord::kUsualLimit + 2 * text.size())};
  EachCaptureLine(text, [&capture](std::string_view line, std::size_t) {
    if (!AddLine(capture.record, line)) ++capture.notUnderstood;
  });
  return capture;
}

}  // namespace kelvo
