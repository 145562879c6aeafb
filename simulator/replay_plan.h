#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/terminal.h"

namespace kelvo::sim {

/// What came back at one moment.
struct ReplayReceived {
  std::size_t line;  ///< of the capture, from 1
  Time at;           ///< since the capture's first line
  std::string characters;
  bool asked;  ///< an answer that may not be missing
};

/// A text that the host sent, and what came back before the next one.
struct ReplayStep {
  std::size_t line = 0;  ///< of the capture, from 1; 0: what came before anything was sent
  Time at{};             ///< since the capture's first line
  std::string sent{};
  int questions = 0;     ///< that are answered
  bool compared = true;  ///< not when the line went away meanwhile
  std::vector<ReplayReceived> received{};

  /// Characters up to the end of the last answer.
  std::size_t AwaitedLength() const;
  /// All that came back.
  std::string Received() const;
};

/// What the host did in a capture. Characters of the handshake (XON, XOFF) are left out: they come
/// when a buffer is full, which is a matter of moments.
struct ReplayPlan {
  std::vector<ReplayStep> steps;
  Time end{};  ///< of the capture's last line
};

/// Reads a capture into `plan`; otherwise the reason, German, with the line's number.
std::optional<std::string> ReadReplay(std::string_view capture, ReplayPlan& plan);

/// Without the characters of the handshake.
std::string WithoutHandshake(std::string_view characters);

}  // namespace kelvo::sim
