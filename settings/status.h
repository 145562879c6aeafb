#pragma once

#include <array>
#include <string>
#include <string_view>

#include "link/exchange.h"
#include "terminal/terminal_state.h"

// Status queries and basic settings: the command texts, and how replies are read.

namespace kelvo {

/// What a "?V" reply says.
struct Version {
  double number = 0;  ///< the leading decimal number
  bool hasFlash = false;
};
/// `reply` without end mark. It ends in "F" where the Terminal has flash memory.
Version ReadVersion(std::string_view reply);

/// Notes the reply of a "?V" query; "TimeOut" leaves the flash state unknown.
void NoteVersion(TerminalState& state, std::string_view reply);

/// Asks "?V" and returns all that comes within 100 ms, the closing ";" included and without the
/// echo. Notes version and flash state; without an answer both stay as they are.
std::string AskVersionByTime(Exchange& exchange, TerminalState& state);

/// ESC "!A" text ";"
std::string SetAddressCommand(std::string_view address);
/// ESC "!P" text ";"
std::string SetPortCommand(std::string_view lines);
/// ESC "!R" x "," y "," option ";", each as typed.
std::string SetResolutionCommand(std::string_view x, std::string_view y, std::string_view option);

/// A whole number 0..255: a bus address, or the lines of a port.
bool IsByteNumber(double value);

/// The eight lines of a port from its number: line i is bit i.
using PortLines = std::array<bool, 8>;
PortLines ReadPortLines(double value);
int PortNumberOf(const PortLines& lines);

/// Limits of the display resolution, in pixels; the limits themselves are accepted.
inline constexpr int SmallestDisplay = 20;
inline constexpr int LargestDisplayX = 640;
inline constexpr int LargestDisplayY = 480;
/// A resolution field when it is left: within SmallestDisplay..largest, and a plain whole number.
std::string ClampDisplay(std::string_view text, int largest);

/// The two numbers of an "F??" reply. Without a comma both are read from the whole reply.
struct FlashInfo {
  double sectors = 0;
  double sectorSize = 0;
};
FlashInfo ReadFlashInfo(std::string_view reply);

}  // namespace kelvo
