#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/station.h"

namespace kelvo::sim {

/// What a command line can ask for beyond the Terminal itself.
struct ConsoleActions {
  /// The display of one Terminal (from 0), or of all.
  std::function<bool(const std::string& path, std::optional<std::size_t> terminal)> writePng;
  std::function<void()> quit;
};

/// Carries out one command line for the first Terminal of the station, or for the n-th (from 1)
/// when the line begins with "@n ":
///
///   p1 N                  sets the lines of P1
///   key ROW COLUMN press  presses a key of the matrix keypad (0..7 each); "release" is accepted
///   type TEXT             types on the PC keyboard; UTF-8, as far as it is Latin-1
///   com2 TEXT             the device on the second interface sends
///   power on|off, reset   switches
///   fault ART             none, silent, nak, garbled, late, slow, drops, doubles or flips; the
///                         last three with ":n" behind them or without
///   echo off|query|line
///   version TEXT, address N
///   unplug, plug          the host's adapter
///   png FILE              writes the display as a picture; without "@n" all of them
///   status                one line: power, selected address, P0, P1, free EEPROM bytes, display
///   count                 how many Terminals there are
///   quit
///
/// Returns the answer: "ok", "ok " and what was asked for, or "error " and the reason.
std::string RunConsoleLine(std::string_view line, Station& station, const ConsoleActions& actions);

}  // namespace kelvo::sim
