#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inventory/settings_trace.h"
#include "link/command_table.h"

namespace kelvo {

/// What was last sent of a setting that a Terminal can be asked for.
struct SettingSent {
  std::string value;  ///< as it stands in the command
  JournalTime time;
  bool agrees = false;  ///< the reply tells the same
};

/// Holds the reply to a query against what was set last; nothing where nothing of that was set, or
/// the query asks for no setting. `cursorKind` is the kind of cursor that the reply to
/// CommandName::AskCursorShape is of.
std::optional<SettingSent> LastSet(const Settings& settings, CommandName query,
                                   std::string_view reply, int cursorKind);

}  // namespace kelvo
