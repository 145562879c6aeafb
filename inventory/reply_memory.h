#pragma once

#include <functional>
#include <map>
#include <utility>

#include "inventory/readings.h"
#include "link/line_watch.h"

namespace kelvo {

/// Follows the line and keeps the newest reply to each question of one Terminal, whoever asked it.
class ReplyMemory {
 public:
  /// `listener` tells who listens now.
  ReplyMemory(LineWatch& line, const EventLoop& loop, std::function<TerminalId()> listener);
  ReplyMemory(const ReplyMemory&) = delete;
  ReplyMemory& operator=(const ReplyMemory&) = delete;

  /// Adds what is newer than what the readings have; none of it goes into their file.
  void AddTo(Readings& readings) const;

 private:
  void Take(const Outcome& outcome);

  const EventLoop& loop_;
  std::function<TerminalId()> listener_;
  std::map<std::pair<TerminalId, CommandName>, Reading> newest_;
};

}  // namespace kelvo
