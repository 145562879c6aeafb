#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "link/line_state.h"

// What has really happened when one of the program's fixed texts reports a failure.

namespace kelvo {

enum class FailureCause : std::uint8_t {
  PortClosed,
  DeviceGone,
  LineHeld,
  NobodySelected,
  SelectedSilent,
  AllSilent,
  UnknownSilent,
  Refused,
  Strange,
  Unfinished,
  NotConfirmed,
  NoRoom,
  RoomUnknown,
  PortBusy,
  PortMissing,
  PortForbidden,
  PortFault,
  StillGone,
  WrongNumber,
  TooLong,
  NothingIn,
  OtherArrived,
  NotProven,
  WrongTerminal,
  NoTarget,
  NoColumn,
  NoPicture,
};

/// How a failure text that the operator may be shown begins.
struct FailureText {
  std::string_view beginning;
  /// What it means by itself; nothing where the line knows better.
  std::optional<FailureCause> cause{};
  /// Nothing crosses the line where it is said, so only its box tells of it.
  bool local = false;
};
std::span<const FailureText> FailureTexts();
/// All causes, with their place in the chapter "meldungen.html".
struct CausePlace {
  FailureCause cause;
  const char* anchor;
};
std::span<const CausePlace> CausePlaces();
std::string_view AnchorOf(FailureCause cause);

/// Why this text is shown now; nothing for a text that reports no such failure.
std::optional<FailureCause> CauseOf(std::string_view text, const LineState& state);
/// What a text says that refuses an action before anything has been sent, as a line without its
/// box; nothing for other texts.
std::optional<std::string> RefusalWords(std::string_view text, const LineState& state);
/// What has happened and what to do next, in German, UTF-8.
std::string CauseWords(FailureCause cause, const LineState& state);

}  // namespace kelvo
