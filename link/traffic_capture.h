#pragma once

#include <span>
#include <string>
#include <string_view>

#include "link/traffic_record.h"

// A capture of the traffic as text, UTF-8: a head, then one line an entry, its columns separated by
// tabs. What is read back are time, direction, characters, duration, result and which question an
// answer belongs to; the last two columns are for people.
//
//   2026-11-22 12:34:56.789 +0100 ⇥ PC → Terminal ⇥ 1B 3F 56 ⇥ ⇥ ⇥ ⇥ ←?V ⇥ Version abfragen
//   2026-11-22 12:34:56.820 +0100 ⇥ Terminal → PC ⇥ 32 2E 31 3B ⇥ 30,2 ms ⇥ beantwortet ⇥ 1 ⇥ …

namespace kelvo {

inline constexpr std::string_view kCaptureHead =
    "Zeit\tRichtung\tHexadezimal\tDauer\tErgebnis\tAntwort auf die Zeile davor\tZeichen\tBedeutung";

/// The lines of these entries, in this order, each with its line end; without the head.
std::string CaptureLines(const TrafficRecord& record,
                         std::span<const TrafficRecord::Number> numbers);

struct Capture {
  TrafficRecord record;
  std::size_t notUnderstood = 0;  ///< lines, beside a head
};
/// Reads a capture, whole or a part of it.
Capture ReadCapture(std::string_view text);

/// "2026-11-22 12:34:56.789 +0100", in the zone of this machine
std::string DateText(WallTime time);
/// "12:34:56.789", in the zone of this machine
std::string ClockText(WallTime time);

}  // namespace kelvo
