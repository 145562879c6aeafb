#include "settings/status.h"

#include <cmath>

#include "base/val.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

std::string Command(std::string_view letters, std::string_view parameters) {
  std::string command(CmdPrefix);
  return command.append(letters).append(parameters).append(EndMark);
}

bool IsWholeNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

Version ReadVersion(std::string_view reply) {
  return {Val(reply), !reply.empty() && reply.back() == 'F'};
}

void NoteVersion(TerminalState& state, std::string_view reply) {
  const Version version = ReadVersion(reply);
  state.TerminalVersion = version.number;
  if (reply == "TimeOut") {
    state.versionText.clear();
  } else {
    state.versionText = reply;
    state.flash = version.hasFlash ? FlashState::Yes : FlashState::No;
  }
  state.Changed();
}

std::string AskVersionByTime(Exchange& exchange, TerminalState& state) {
  const std::string query = std::string(CmdPrefix) + "?V";
  exchange.CommandBuffer = query;
  exchange.SendCommand(Acknowledge::None);
  exchange.WaitAnswer(exchange.CommandBuffer, {});
  std::string reply = exchange.CommandBuffer;
  if (reply.starts_with(query)) reply.erase(0, query.size());
  if (!reply.empty()) NoteVersion(state, std::string_view(reply).substr(0, reply.find(';')));
  return reply;
}

std::string SetAddressCommand(std::string_view address) { return Command("!A", address); }

std::string SetPortCommand(std::string_view lines) { return Command("!P", lines); }

std::string SetResolutionCommand(std::string_view x, std::string_view y, std::string_view option) {
  std::string parameters(x);
  parameters.append(",").append(y).append(",").append(option);
  return Command("!R", parameters);
}

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
  if (value < SmallestDisplay) return std::to_string(SmallestDisplay);
  if (value > largest) return std::to_string(largest);
  return IsWholeNumber(text) ? std::string(text) : NumberText(std::floor(value));
}

FlashInfo ReadFlashInfo(std::string_view reply) {
  const std::size_t comma = reply.find(',');
  return {Val(reply), Val(comma == std::string_view::npos ? reply : reply.substr(comma + 1))};
}

}  // namespace kelvo
