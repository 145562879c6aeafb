#pragma once

namespace kelvo {

/// The pages of the tab strip `cmdTab`, by their index.
enum class Tab {
  Drawing = 0,
  Interfaces = 1,
  Text = 2,
  Status = 3,
  Eeprom = 4,
  AtKeyboard = 5,
  MatrixKeyboard = 6,
  Macros = 7,
  Welcome = 8,
  Terminals = 9,
};
inline constexpr int kTabCount = 10;

}  // namespace kelvo
