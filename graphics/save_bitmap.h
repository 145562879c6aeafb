#pragma once

#include <functional>
#include <string>

#include "graphics/create_bitmap.h"
#include "link/operator.h"

namespace kelvo {

/// The Terminal's EEPROM, as storing a picture needs it.
struct EEPromAccess {
  std::function<double()> freeBytes;
  /// Sends an acknowledged command; the error text of the exchange, empty when it succeeded.
  std::function<std::string(const std::string&)> send;
};

/// Stores the drawing's picture in the EEPROM under a number that the operator is asked for.
void SaveBMPinEEProm(const Drawing& drawing, TerminalTraits terminal, Operator& person,
                     const EEPromAccess& eeprom);

}  // namespace kelvo
