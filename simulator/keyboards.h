#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/command_table.h"
#include "simulator/eeprom.h"
#include "simulator/parameters.h"

namespace kelvo::sim {

/// A keyboard table as the EEPROM holds it: the first code, then one code for each key from there.
/// Reads "S,K,K,..." in hexadecimal; nothing when a field is none or there are more than 256 keys.
std::optional<std::string> PackKeyTable(std::string_view text);

/// The times of the matrix keypad, in the order of "MC", which sends 2, 10, 35 and 5. The keypad is
/// looked at every scan; all other times are numbers of scans.
struct KeyTimes {
  int debounce = 2;  ///< 0..255 scans for which a key must be down before it counts
  int scan = 10;     ///< 1..255 milliseconds from one scan to the next
  int delay = 35;    ///< 0..255 scans until a key that is held counts again; 0: it never does
  int repeat = 5;    ///< 0..255 scans from then on to each further time; 0: it never does
};

/// The matrix keypad on the port lines and the PC keyboard: from a key to the character sent.
class Keyboards {
 public:
  static constexpr int kRows = 8;
  static constexpr int kColumns = 8;

  /// The tables lie in the EEPROM, which must outlive this.
  explicit Keyboards(const Eeprom& eeprom) : eeprom_(&eeprom) {}
  /// From now on they lie in this one.
  void LieIn(const Eeprom& eeprom) { eeprom_ = &eeprom; }

  void Reset();
  bool Execute(Command command, const Parameters& parameters);
  std::optional<std::string> Answer(Command query) const;

  const KeyTimes& Times() const { return times_; }
  /// Whether the keypad is scanned and has a key at this crossing (0..7 each).
  bool Wired(int row, int column) const;
  /// What a pressed key sends: the active table's code, nothing where that is 255, and without a
  /// table (or outside of it) the position: 128 + 16 x row + column.
  std::optional<unsigned char> MatrixCode(int row, int column) const;
  /// What a character typed on the PC keyboard becomes.
  unsigned char AtCode(unsigned char character) const;

  std::string ConfigCommands() const;

 private:
  std::optional<std::string> Table(std::optional<int> number) const;
  std::string Describe(std::optional<int> number) const;

  const Eeprom* eeprom_;
  bool scanning_ = false;
  KeyTimes times_;
  int columns_ = kColumns;
  int rows_ = kRows;
  int unusedInputs_ = 0;   // bit k: line k of P1 is no column
  int unusedOutputs_ = 0;  // bit k: line k of P0 is no row; row 0 is on line 7
  std::optional<int> matrixTable_;
  std::optional<int> atTable_;
};

}  // namespace kelvo::sim
