#include "shell/traffic_log.h"

#include <array>
#include <cstdio>

#include "base/wire_text.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

// Longer than any gap within one answer at 1200 baud.
constexpr milliseconds kSameEntry{40};
constexpr std::size_t kLongestEntry = 5000;
// Dropping many at once keeps a full log as cheap as an empty one.
constexpr std::ptrdiff_t kDropped = 1000;

bool IsQuery(const CommandRow* row) {
  return row != nullptr && (row->answer == Answer::Value || row->answer == Answer::FreeText);
}

}  // namespace

TrafficLog::Change TrafficLog::ChangeBy(milliseconds timeOfDay, Direction direction) const {
  if (Continues(timeOfDay, direction)) return Change::Grown;
  return entries_.size() < kCapacity ? Change::Added : Change::AddedAndDropped;
}

void TrafficLog::Add(milliseconds timeOfDay, Direction direction, std::string_view characters) {
  const bool continues = Continues(timeOfDay, direction);
  lastTime_ = timeOfDay;
  if (continues) {
    TrafficEntry& entry = entries_.back();
    entry.characters += characters;
    entry.meaning = ReplyMeaning(entry.characters);
    return;
  }
  TrafficEntry entry{timeOfDay, direction, std::string(characters), {}};
  if (direction == Direction::ToTerminal) {
    entry.meaning = CommandMeaning(characters);
    asked_ = IsQuery(LastCommand(characters)) ? entry.meaning : std::string();
  } else {
    entry.meaning = ReplyMeaning(entry.characters);
  }
  if (entries_.size() == kCapacity) entries_.erase(entries_.begin(), entries_.begin() + kDropped);
  entries_.push_back(std::move(entry));
}

bool TrafficLog::Continues(milliseconds timeOfDay, Direction direction) const {
  return direction == Direction::FromTerminal && !entries_.empty() &&
         entries_.back().direction == direction && timeOfDay - lastTime_ <= kSameEntry &&
         timeOfDay >= lastTime_ && entries_.back().characters.size() < kLongestEntry;
}

std::string TrafficLog::ReplyMeaning(const std::string& reply) const {
  if (reply == std::string_view(&kAck, 1)) return "angenommen (ACK)";
  if (reply == std::string_view(&kNak, 1)) return "abgelehnt (NAK)";
  return asked_.empty() ? "empfangene Zeichen" : "Antwort: " + asked_;
}

void TrafficLog::Clear() { entries_.clear(); }

std::string ClockText(milliseconds timeOfDay) {
  const long long ms = timeOfDay.count();
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02lld:%02lld:%02lld.%03lld", ms / 3600000,
                ms / 60000 % 60, ms / 1000 % 60, ms % 1000);
  return text.data();
}

std::string DirectionText(Direction direction) {
  return direction == Direction::ToTerminal ? "PC → Terminal" : "Terminal → PC";
}

std::string TrafficLine(const TrafficEntry& entry) {
  return ClockText(entry.timeOfDay) + '\t' + DirectionText(entry.direction) + '\t' +
         ReadableText(entry.characters) + '\t' + HexText(entry.characters) + '\t' + entry.meaning;
}

}  // namespace kelvo
