#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/val.h"
#include "link/commands.h"

namespace kelvo {

/// What came of a command.
enum class ReplyKind : std::uint8_t {
  Sent,        ///< written; nobody was asked to answer
  Answered,    ///< acknowledged, or a complete reply
  Silent,      ///< not one character within the time
  Unfinished,  ///< characters, but no end mark within the time
  Refused,     ///< NAK
  Unexpected,  ///< neither ACK nor NAK
  PortClosed,  ///< there was no port, or it went away, or the program is closing
};

struct Reply {
  ReplyKind kind = ReplyKind::Sent;
  /// Of an acknowledged command: "", "EEPROM" (refused), "keine Reaktion", "unknown 65". Of a
  /// query: the values without echo and end mark, or "TimeOut". Else what came. A wire text.
  std::string text;
  /// The characters as they came, end mark and all; without the echo of the line.
  std::string received{};
  /// What came can be the answer to the question. Where it cannot, the values are read all the
  /// same, but they are not what a Terminal has told.
  bool readable = true;

  bool Failed() const { return kind != ReplyKind::Sent && kind != ReplyKind::Answered; }
  /// The number that the reply begins with; 0 when there is none.
  double Number() const { return Val(text); }
};

/// The reply to an acknowledged command, from what has come: nothing, or the characters read.
Reply AcknowledgeReply(std::string_view answer, bool alive);
/// An acknowledge that was collected by time is an answer like any other; here it is Answered or
/// Refused. Without one in it the reply is Sent: it may still come.
Reply JudgedAcknowledge(const Reply& reply);
/// The reply to a query, from the characters up to the end mark.
Reply CompleteReply(std::string received, std::string_view endMark);
/// Some Terminals repeat the query in front of their reply: its text goes without that.
void RemoveEcho(Reply& reply, const Command& query);
/// The reply to a query whose end mark has not come.
Reply TimeOutReply(std::string received, bool alive);

}  // namespace kelvo
