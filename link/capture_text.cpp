#include "link/capture_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>

#include "base/wire_text.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

enum Column { Stamp, Way, Hex, Duration, Result, BelongsTo, ColumnsRead };

struct LocalTime {
  std::tm fields{};
  int milliseconds = 0;
};

LocalTime Local(WallTime time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const std::time_t moment = std::chrono::system_clock::to_time_t(seconds);
  LocalTime local;
  localtime_r(&moment, &local.fields);
  local.milliseconds = static_cast<int>((time - seconds).count());
  return local;
}

template <typename Integer>
std::optional<Integer> Whole(std::string_view text) {
  Integer number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Reads fixed places of a text; one that is no number spoils them all.
class Places {
 public:
  explicit Places(std::string_view text) : text_(text) {}
  int Number(std::size_t from, std::size_t length) {
    const auto number = Whole<int>(text_.substr(from, length));
    good_ = good_ && number && *number >= 0;
    return number.value_or(0);
  }
  bool Good() const { return good_; }

 private:
  std::string_view text_;
  bool good_ = true;
};

std::optional<WallTime> ReadTime(std::string_view text) {
  static constexpr std::string_view kShape = "0000-00-00 00:00:00.000 +0000";
  if (text.size() != kShape.size()) return std::nullopt;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    const bool sign = kShape[i] == '+' ? text[i] == '+' || text[i] == '-' : text[i] == kShape[i];
    if (kShape[i] != '0' && !sign) return std::nullopt;
  }
  Places at(text);
  const std::chrono::year_month_day day{std::chrono::year(at.Number(0, 4)),
                                        std::chrono::month(static_cast<unsigned>(at.Number(5, 2))),
                                        std::chrono::day(static_cast<unsigned>(at.Number(8, 2)))};
  const auto ofDay = std::chrono::hours(at.Number(11, 2)) + std::chrono::minutes(at.Number(14, 2)) +
                     std::chrono::seconds(at.Number(17, 2)) + milliseconds(at.Number(20, 3));
  const auto zone = std::chrono::hours(at.Number(25, 2)) + std::chrono::minutes(at.Number(27, 2));
  if (!at.Good() || !day.ok()) return std::nullopt;
  const WallTime time = WallTime(std::chrono::sys_days(day)) + ofDay;
  return text[24] == '-' ? time + zone : time - zone;
}

std::optional<Direction> ReadDirection(std::string_view text) {
  for (const Direction way : {Direction::ToTerminal, Direction::FromTerminal}) {
    if (text == DirectionText(way)) return way;
  }
  return std::nullopt;
}

// "1B 3F 56"
std::optional<std::string> ReadHex(std::string_view text) {
  std::string characters;
  for (std::size_t at = 0; at < text.size(); at += 3) {
    unsigned code = 0;
    const char* const pair = text.data() + at;
    const bool whole = at + 2 == text.size() || (at + 3 < text.size() && pair[2] == ' ');
    if (!whole || std::from_chars(pair, pair + 2, code, 16).ptr != pair + 2) return std::nullopt;
    characters += static_cast<char>(code);
  }
  return characters;
}

// "30,2 ms"
std::optional<std::chrono::microseconds> ReadDuration(std::string_view text) {
  if (text.empty()) return std::chrono::microseconds(0);
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || text.substr(comma).size() != 5 || !text.ends_with(" ms")) {
    return std::nullopt;
  }
  const auto whole = Whole<std::uint32_t>(text.substr(0, comma));
  const auto tenth = Whole<std::uint32_t>(text.substr(comma + 1, 1));
  if (!whole || !tenth) return std::nullopt;
  return milliseconds(*whole) + std::chrono::microseconds(*tenth * 100);
}

std::array<std::string_view, ColumnsRead> Columns(std::string_view line) {
  std::array<std::string_view, ColumnsRead> columns;
  for (std::string_view& column : columns) {
    column = line.substr(0, line.find('\t'));
    line.remove_prefix(std::min(line.size(), column.size() + 1));
  }
  return columns;
}

}  // namespace

std::string CaptureLineText(const CaptureLine& line) {
  return DateText(line.time) + '\t' + DirectionText(line.direction) + '\t' +
         HexText(line.characters) + '\t' + DurationText(line.took) + '\t' + line.result + '\t' +
         (line.linesBack == 0 ? std::string() : std::to_string(line.linesBack)) + '\t' +
         ReadableText(line.characters) + '\t' + line.meaning + '\n';
}

std::optional<CaptureLine> ReadCaptureLine(std::string_view text) {
  const auto column = Columns(text);
  const auto time = ReadTime(column[Stamp]);
  const auto way = ReadDirection(column[Way]);
  auto characters = ReadHex(column[Hex]);
  const auto took = ReadDuration(column[Duration]);
  if (!time || !way || !characters || !took) return std::nullopt;
  CaptureLine line{.time = *time, .direction = *way, .characters = *std::move(characters)};
  line.took = *took;
  line.result = column[Result];
  line.linesBack = Whole<std::uint64_t>(column[BelongsTo]).value_or(0);
  return line;
}

void EachCaptureLine(std::string_view capture,
                     const std::function<void(std::string_view, std::size_t)>& use) {
  for (std::size_t number = 1; !capture.empty(); ++number) {
    std::string_view line = capture.substr(0, capture.find('\n'));
    capture.remove_prefix(std::min(capture.size(), line.size() + 1));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty() && line != kCaptureHead) use(line, number);
  }
}

std::string DurationText(std::chrono::microseconds span) {
  if (span.count() == 0) return {};
  const auto tenths = (span.count() + 50) / 100;
  return std::to_string(tenths / 10) + ',' + std::to_string(tenths % 10) + " ms";
}

std::string DirectionText(Direction direction) {
  return direction == Direction::ToTerminal ? "PC → Terminal" : "Terminal → PC";
}

std::string ClockText(WallTime time) {
  const LocalTime local = Local(time);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.fields.tm_hour,
                local.fields.tm_min, local.fields.tm_sec, local.milliseconds);
  return text.data();
}

std::string DateText(WallTime time) {
  const LocalTime local = Local(time);
  std::array<char, 16> date{};
  std::array<char, 8> zone{};
  std::strftime(date.data(), date.size(), "%Y-%m-%d ", &local.fields);
  std::strftime(zone.data(), zone.size(), " %z", &local.fields);
  return date.data() + ClockText(time) + zone.data();
}

}  // namespace kelvo
