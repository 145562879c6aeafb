#pragma once

#include <string>

#include "link/capture_text.h"
#include "link/traffic_record.h"

// What a reader of the recorded traffic is told of an entry. German, UTF-8.

namespace kelvo {

enum class TrafficKind {
  Query,    ///< a question for values, and its answer
  Command,  ///< a command that is acknowledged, and its acknowledge
  Plain,    ///< what nobody answers, and what came back to it all the same
  Unasked,  ///< key presses, the second interface, answers that came too late
};

TrafficKind KindOf(const TrafficRecord& record, TrafficRecord::Number number);
/// Whether something has gone wrong with it.
bool IsFailure(const TrafficRecord& record, TrafficRecord::Number number);
/// The newest failure of the entries that are kept.
std::optional<TrafficRecord::Number> LastFailure(const TrafficRecord& record);

/// "Makro 7 schreiben, 50 Zeichen", of an answer "↳ " and what was asked; at most `limit` commands
/// of a text that was sent.
std::string TrafficWords(const TrafficRecord& record, TrafficRecord::Number number, int limit = 4);
/// What came of it: "beantwortet", "keine Antwort", …; empty as long as nothing is known.
std::string ResultWords(const TrafficRecord& record, TrafficRecord::Number number);
/// "30,2 ms"; empty where no time was taken.
std::string DurationWords(const TrafficEntry& entry);

}  // namespace kelvo
