#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "base/operator.h"
#include "graphics/create_bitmap.h"
#include "link/commands.h"

namespace kelvo {

/// The Terminal's EEPROM, as storing a picture needs it.
struct EEPromAccess {
  /// Asks whether so many bytes fit; what does not has been reported.
  std::function<bool(std::size_t bytes)> hasRoom;
  /// Sends an acknowledged command; reports a failure, with the suffix of the one who writes.
  std::function<void(const Command& command, const std::string& suffix)> write;
  /// Told each valid number as it is typed, nothing when there is none; may be empty.
  std::function<void(std::optional<int> number)> typed{};
};

/// The picture that would be stored: the lowest selected one, or the lowest one when none is
/// selected; members of groups count. nullptr without any.
const DrawingObject* PictureToStore(const Drawing& drawing);

/// Stores a picture of the drawing in the EEPROM under a number that the operator is asked for.
///
/// ESC "EWB" number "," bitmap text
void SaveBMPinEEProm(const Drawing& drawing, TerminalTraits terminal, Operator& person,
                     const EEPromAccess& eeprom);

}  // namespace kelvo
