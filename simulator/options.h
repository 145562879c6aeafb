#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/terminal.h"

namespace kelvo::sim {

/// What the command line settles.
struct Options {
  TerminalSetup terminal;
  bool lineEcho = false;
  bool paced = true;
  bool unplugged = false;
  unsigned char p1 = 0;
  std::string eepromFile;  ///< empty: simulator.eeprom in the program's folder
  std::string port;        ///< empty: simulator.tty in the program's folder
  std::string displayPng;  ///< not empty: no window, but this file
  bool commands = false;   ///< command lines on standard input
  bool window = true;
  bool help = false;
};

/// Reads the arguments (without the program's name) into `options`; otherwise the reason, German.
std::optional<std::string> ReadOptions(std::span<const std::string> arguments, Options& options);
/// The table of all options as a text, German.
std::string OptionHelp();

// The words that options and command lines share. Each is false for a word that it does not know.

/// "none", "silent", "nak", "garbled", "late", "drops".
std::optional<Fault> FaultNamed(std::string_view name);
std::string_view NameOf(Fault fault);
/// "2.10" or "2.10F": at most 20 characters without ";", beginning with a digit.
bool ReadVersion(std::string_view text, TerminalSetup& setup);
/// "off", "query" (the Terminal repeats queries), "line" (the line echoes everything).
bool ReadEcho(std::string_view text, bool& queries, bool& line);
/// "on", "off".
bool ReadSwitch(std::string_view text, bool& on);
/// A whole decimal number within the limits.
bool ReadNumber(std::string_view text, int least, int most, int& number);

}  // namespace kelvo::sim
