#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "base/serial_port.h"

namespace kelvo {

/// One stretch of characters in one direction.
struct TrafficEntry {
  std::chrono::milliseconds timeOfDay{0};
  Direction direction = Direction::ToTerminal;
  std::string characters;
  std::string meaning;  ///< German, UTF-8
};

/// What has crossed the line, the newest 10000 entries. Characters that arrive close together are
/// one entry.
class TrafficLog {
 public:
  static constexpr std::size_t kCapacity = 10000;

  /// What adding changes: the last entry grows, one is added, or one is added and the oldest
  /// thousand dropped.
  enum class Change { Grown, Added, AddedAndDropped };
  Change ChangeBy(std::chrono::milliseconds timeOfDay, Direction direction) const;
  void Add(std::chrono::milliseconds timeOfDay, Direction direction, std::string_view characters);
  void Clear();

  std::size_t Size() const { return entries_.size(); }
  const TrafficEntry& At(std::size_t index) const { return entries_[index]; }

 private:
  bool Continues(std::chrono::milliseconds timeOfDay, Direction direction) const;
  std::string ReplyMeaning(const std::string& reply) const;

  std::deque<TrafficEntry> entries_;
  std::chrono::milliseconds lastTime_{0};
  std::string asked_;  // meaning of what was sent last, if that ended with a query
};

/// An entry as a line of text: time, direction, readable and hexadecimal characters, meaning,
/// separated by tabs. UTF-8.
std::string TrafficLine(const TrafficEntry& entry);
/// "12:34:56.789"
std::string ClockText(std::chrono::milliseconds timeOfDay);
/// "PC → Terminal" or "Terminal → PC"
std::string DirectionText(Direction direction);

}  // namespace kelvo
