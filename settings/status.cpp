#include "settings/status.h"

#include <cmath>

#include "base/val.h"

namespace kelvo {
namespace {

bool IsWholeNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

bool IsByteNumber(double value) { return value >= 0 && value < 256 && value == std::floor(value); }

PortLines ReadPortLines(double value) {
  PortLines lines{};
  for (int line = 7; line >= 0; --line) {
    const int weight = 1 << line;
    if (value / weight < 1) continue;
    lines[static_cast<std::size_t>(line)] = true;
    value -= weight;
  }
  return lines;
}

int PortNumberOf(const PortLines& lines) {
  int sum = 0;
  for (std::size_t line = 0; line < lines.size(); ++line) {
    if (lines[line]) sum += 1 << line;
  }
  return sum;
}

std::string ClampDisplay(std::string_view text, int largest) {
  const double value = Val(text);
  if (value < kSmallestDisplay) return std::to_string(kSmallestDisplay);
  if (value > largest) return std::to_string(largest);
  return IsWholeNumber(text) ? std::string(text) : NumberText(std::floor(value));
}

FlashInfo ReadFlashInfo(std::string_view reply) {
  const std::size_t comma = reply.find(',');
  return {Val(reply), Val(comma == std::string_view::npos ? reply : reply.substr(comma + 1))};
}

}  // namespace kelvo
