#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/bus.h"

namespace kelvo::sim {

/// One Terminal on the line.
struct TerminalOptions {
  TerminalSetup setup;
  unsigned char p1 = 0;
  std::string eepromFile;  ///< empty: simulator.eeprom in the data folder, or a numbered one
};

/// What the command line settles.
struct Options {
  TerminalOptions terminal;  ///< the only one, or what those of the bus have in common
  std::string busFile;       ///< empty: one Terminal
  bool lineEcho = false;
  bool paced = true;
  int turnAround = 0;  ///< ms, of the Terminals on one pair of wires; 0: two pairs
  int hostBits = 0;    ///< 0: data bits and parity as the Terminals'
  int hostParity = 0;  ///< numbered as in "!B"
  bool unplugged = false;
  std::string port;        ///< empty: simulator.tty in the data folder
  std::string displayPng;  ///< not empty: no window, but this file
  std::string recordFile;  ///< not empty: the traffic is written there as a capture
  std::string replayFile;  ///< not empty: this capture is played, and there is no port
  bool atOnce = false;     ///< without letting time pass
  bool commands = false;   ///< command lines on standard input
  bool window = true;      ///< of a capture that is played only where it is asked for
  bool help = false;
};

/// Reads the arguments (without the program's name) into `options`; otherwise the reason, German.
std::optional<std::string> ReadOptions(std::span<const std::string> arguments, Options& options);
/// Reads the description of a bus, at most Bus::kMost Terminals, into `terminals`; otherwise the
/// reason, German, with the line's number.
///
///   file = { line LF }
///   line = { name "=" value }     separated by blanks; an option of one Terminal, without "--"
///        | "#" comment            | nothing
///
/// Each line with an option is a Terminal; what it does not say is as in `common`.
std::optional<std::string> ReadBus(std::string_view file, const TerminalOptions& common,
                                   std::vector<TerminalOptions>& terminals);
/// The table of all options as a text, German.
std::string OptionHelp();

// The words that options and command lines share. Each is false for a word that it does not know.

/// "none", "silent", "nak", "garbled", "late", "slow", "drops", "doubles", "flips"; the last three
/// may have the distance of the faults in characters behind them ("flips:500"), which is else 7.
bool ReadFault(std::string_view text, TerminalSetup& setup);
std::string_view NameOf(Fault fault);
/// "2.10" or "2.10F": at most 20 characters without ";", beginning with a digit.
bool ReadVersion(std::string_view text, TerminalSetup& setup);
/// "off", "query" (the Terminal repeats queries), "line" (the line echoes everything).
bool ReadEcho(std::string_view text, bool& queries, bool& line);
/// "auto" (0 bits), or data bits and the parity's letter: "8N", "7E", with S for space, O for odd.
bool ReadFrame(std::string_view text, int& bits, int& parity);
/// "on", "off".
bool ReadSwitch(std::string_view text, bool& on);
/// A whole decimal number within the limits.
bool ReadNumber(std::string_view text, int least, int most, int& number);

}  // namespace kelvo::sim
