#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <string>

#include "inventory/item.h"

namespace kelvo {

/// Who listened is not known: no address has been selected or told.
inline constexpr int kUnknownAddress = -1;

/// A Terminal: the device of the port that it is at, and its address, which may be 255 for all on
/// that line, or kUnknownAddress.
struct TerminalId {
  std::string device;
  int address = kUnknownAddress;
  // The linter takes the zero that the compiler compares with for a pointer.
  auto operator<=>(const TerminalId&) const = default;  // NOLINT(modernize-use-nullptr)
};

using JournalTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// What has happened.
enum class Event : std::uint8_t {
  Begun,         ///< about to be sent; the answer is awaited
  Acknowledged,  ///< ACK
  Proven,        ///< what was acknowledged before is proven by the checksum
  Refused,       ///< NAK
  Silent,        ///< no answer
  Unclear,       ///< something else than an answer
  LineLost,      ///< the port has gone before the answer
  WrongSum,      ///< acknowledged before, but the checksum is wrong
  ByMacro,       ///< a macro that was run has done it; nobody has answered
  FreeBytes,     ///< the room in the EEPROM was read
  NotRecorded,   ///< done, but the file could not be written
};

struct JournalEntry {
  JournalTime time;
  TerminalId terminal;
  Event event = Event::Begun;
  ItemChange change;
  std::string name;        ///< of the record, UTF-8
  std::string command;     ///< of what was written and acknowledged, the whole wire text
  std::int64_t bytes = 0;  ///< free in the EEPROM
  bool operator==(const JournalEntry&) const = default;
};

}  // namespace kelvo
