#pragma once

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "link/capture_text.h"
#include "simulator/question.h"
#include "simulator/terminal.h"

namespace kelvo::sim {

/// Writes what crosses the line as a capture. Characters of one direction that follow each other
/// closely are one line of it, which is written when it is complete.
class Recorder {
 public:
  /// Replaces the file. Throws std::runtime_error, in German, when that does not go. Time `now` is
  /// this moment.
  Recorder(const std::string& path, Time now);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() { Complete(); }

  void Add(Direction direction, std::string_view characters, Time now);
  /// When a line has become complete; nothing while there is none.
  std::optional<Time> Due() const;
  /// Writes the line that is complete by now.
  void Advance(Time now);
  /// Whether all could be written so far.
  bool Good() const { return file_.good(); }

 private:
  void Complete();
  std::string Result() const;

  std::ofstream file_;
  const WallTime wall_;  // at `start_`
  const Time start_;
  std::optional<CaptureLine> line_;
  Time last_{};  // characters of it
  Question question_;
  bool asked_ = false;           // and not answered yet
  std::uint64_t linesBack_ = 0;  // to what was sent last
};

}  // namespace kelvo::sim
