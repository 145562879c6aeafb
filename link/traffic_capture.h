#pragma once

#include <span>
#include <string>
#include <string_view>

#include "link/capture_text.h"
#include "link/traffic_record.h"

namespace kelvo {

/// The lines of these entries, in this order, each with its line end; without the head.
std::string CaptureLines(const TrafficRecord& record,
                         std::span<const TrafficRecord::Number> numbers);

struct Capture {
  TrafficRecord record;
  std::size_t notUnderstood = 0;  ///< lines, beside a head
};
/// Reads a capture, whole or a part of it.
Capture ReadCapture(std::string_view text);

}  // namespace kelvo
