#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/event_loop.h"
#include "base/serial_port.h"

// A capture of the traffic as text, UTF-8: a head, then one line an entry, its columns separated by
// tabs. What is read back are time, direction, characters, duration, result and which question an
// answer belongs to; the last two columns are for people.
//
//   2026-11-22 12:34:56.789 +0100 ⇥ PC → Terminal ⇥ 1B 3F 56 ⇥ ⇥ ⇥ ⇥ ←?V ⇥ Version abfragen
//   2026-11-22 12:34:56.820 +0100 ⇥ Terminal → PC ⇥ 32 2E 31 3B ⇥ 30,2 ms ⇥ beantwortet ⇥ 1 ⇥ …

namespace kelvo {

inline constexpr std::string_view kCaptureHead =
    "Zeit\tRichtung\tHexadezimal\tDauer\tErgebnis\tAntwort auf die Zeile davor\tZeichen\tBedeutung";

// Words of the column "Ergebnis".
inline constexpr std::string_view kCaptureAccepted = "angenommen";
inline constexpr std::string_view kCaptureAnswered = "beantwortet";
inline constexpr std::string_view kCaptureRefused = "abgelehnt (NAK)";
inline constexpr std::string_view kCaptureClosed = "Anschluss geschlossen";

struct CaptureLine {
  WallTime time{};
  Direction direction = Direction::ToTerminal;
  std::string characters{};
  std::chrono::microseconds took{0};  ///< 0: not known
  std::string result{};               ///< a word; empty: nothing is known
  std::uint64_t linesBack = 0;        ///< to the question that is answered; 0: none
  std::string meaning{};              ///< for people; is not read back
};

/// The line with its end.
std::string CaptureLineText(const CaptureLine& line);
/// Nothing when this is no line of a capture.
std::optional<CaptureLine> ReadCaptureLine(std::string_view text);
/// Calls `use` for every line of a capture, whole or a part of it, that is neither a head nor
/// empty, with its number, counted from 1.
void EachCaptureLine(std::string_view capture,
                     const std::function<void(std::string_view line, std::size_t number)>& use);

/// "30,2 ms"; of 0 nothing
std::string DurationText(std::chrono::microseconds span);
/// "PC → Terminal" or "Terminal → PC"
std::string DirectionText(Direction direction);
/// "2026-11-22 12:34:56.789 +0100", in the zone of this machine
std::string DateText(WallTime time);
/// "12:34:56.789", in the zone of this machine
std::string ClockText(WallTime time);

}  // namespace kelvo
