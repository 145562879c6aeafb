#pragma once

#include <cstdint>

#include "simulator/command_table.h"
#include "simulator/parameters.h"

namespace kelvo::sim {

/// What becomes of a macro that is to be run.
enum class MacroRun : std::uint8_t {
  Runs,
  Missing,  ///< there is none of this number
  TooDeep,  ///< macros run each other too often; the Terminal itself would never come to an end
};

/// Sees from within what a Terminal carries out, whether it came over the line or from a macro. The
/// stored configuration's own commands are not told.
class TerminalFollower {
 public:
  virtual ~TerminalFollower() = default;

  /// In front of each command of a Terminal that is selected and has enough parameters.
  virtual void Does(const CommandRow& row, const Parameters& parameters) = 0;
  /// In front of each byte for the text layer.
  virtual void Prints(unsigned char byte) = 0;
  /// In front of each byte of a graphic text.
  virtual void PrintsGraphic(unsigned char byte) = 0;
  /// The stored configuration is in force, and macro 0 comes next.
  virtual void HasRestarted() = 0;
  /// Asked for this macro; what is written into the EEPROM meanwhile is found.
  virtual void Calls(int number) = 0;
  virtual void Called(int number, MacroRun run) = 0;
  /// A macro is given up, because it would go on for ever.
  virtual void GivesUp() = 0;
};

}  // namespace kelvo::sim
