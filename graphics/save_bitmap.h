#pragma once

#include <functional>
#include <string>

#include "base/operator.h"
#include "graphics/create_bitmap.h"

namespace kelvo {

/// The Terminal's EEPROM, as storing a picture needs it.
struct EEPromAccess {
  std::function<double()> freeBytes;
  /// Sends an acknowledged command; the error text of the exchange, empty when it succeeded.
  std::function<std::string(const std::string&)> send;
};

/// Stores a picture of the drawing in the EEPROM under a number that the operator is asked for: the
/// lowest selected one, or the lowest one when none is selected; members of groups count.
///
/// ESC "EWB" number "," bitmap text
void SaveBMPinEEProm(const Drawing& drawing, TerminalTraits terminal, Operator& person,
                     const EEPromAccess& eeprom);

}  // namespace kelvo
