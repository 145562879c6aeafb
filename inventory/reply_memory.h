#pragma once

#include <functional>
#include <map>
#include <string_view>
#include <utility>

#include "inventory/readings.h"
#include "link/line_watch.h"

namespace kelvo {

/// Follows the line and keeps the newest reply to each question of one Terminal, whoever asked it.
/// What a Terminal has said before it was known who it is counts as its own once it tells its
/// address, unless another one may have been selected meanwhile.
class ReplyMemory {
 public:
  /// `listener` tells who listens now.
  ReplyMemory(LineWatch& line, const EventLoop& loop, std::function<TerminalId()> listener);
  ReplyMemory(const ReplyMemory&) = delete;
  ReplyMemory& operator=(const ReplyMemory&) = delete;

  /// Adds what is newer than what the readings have; none of it goes into their file.
  void AddTo(Readings& readings) const;

 private:
  void Sent(std::string_view characters);
  void Take(const Outcome& outcome);
  void TakeNameless(const TerminalId& told);

  const EventLoop& loop_;
  std::function<TerminalId()> listener_;
  std::map<std::pair<TerminalId, CommandName>, Reading> newest_;
};

}  // namespace kelvo
