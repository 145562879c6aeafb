#pragma once

#include <cstdint>

#include "link/line_state.h"

namespace kelvo {

/// Whether the Terminal that was selected last is one that something can be said of now.
enum class Hearing : std::uint8_t {
  Listens,       ///< or nobody was ever selected, and there may be but one
  Nobody,        ///< nobody is selected
  Silent,        ///< who was selected has not answered
  Unknown,       ///< somebody has answered, but not who was selected
  Disconnected,  ///< no port is open
};
Hearing HearingOf(const LineState& line);

}  // namespace kelvo
