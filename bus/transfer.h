#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/event_loop.h"
#include "bus/addresses.h"
#include "link/exchange.h"

// A drawing goes to Terminals of one RS-485 line, and each proves by its checksum what it received.

namespace kelvo {

enum class TransferState {
  None,      ///< not part of the transfer, or not reached
  Waiting,   ///< its turn is still to come
  Sending,   ///< the drawing is on the line
  Open,      ///< the transfer has ended before its turn
  Cut,       ///< stopped when only a part was sent
  Unproven,  ///< all was sent, but stopped before the Terminal was asked
  Sent,      ///< it is through; this Terminal cannot be asked
  Checking,  ///< asked for its checksum, or about to be
  Good,      ///< its checksum is the one expected
  WrongSum,  ///< it has received something else
  NoAnswer,
};

/// A Terminal of the list, and how far the transfer to it is.
struct TransferEntry {
  int address = 0;
  bool checksum = false;  ///< it can compute one
  bool ticked = false;    ///< it takes part; what is good or cannot be asked is unticked
  TransferState state = TransferState::None;
  int percent = 0;             ///< sent, while Sending
  std::uint16_t expected = 0;  ///< its checksum when it has received the drawing
  std::string answer{};        ///< to "C?", where that was wrong; a wire text

  bool Failed() const {
    return state == TransferState::WrongSum || state == TransferState::NoAnswer;
  }
};

/// ESC "GC" ESC "!C0;" and the drawing's commands.
std::string TransferPayload(std::string_view drawing);
/// The sum that a Terminal reports when it has received the payload and the question "C?".
std::uint16_t ExpectedChecksum(std::string_view payload);
/// A reply to "C?": up to four hexadecimal digits, nothing else.
std::optional<std::uint16_t> ReadChecksum(std::string_view reply);
/// Four hexadecimal digits.
std::string ChecksumText(std::uint16_t sum);

/// In German what an entry's state is, with both sums where they differ. UTF-8.
std::string TransferStateText(const TransferEntry& entry);
/// In German how many entries are good, wrong, silent, unproven and not reached. UTF-8.
std::string TransferSummary(const std::vector<TransferEntry>& entries);

/// The transfer. It serves the event loop all the time; it ends early when it is stopped or the
/// line is lost.
class Transfer {
 public:
  using Listener = std::function<void(std::size_t entry)>;

  Transfer(Exchange& exchange, EventLoop& loop) : exchange_(exchange), loop_(loop) {}

  /// Sends the drawing to the ticked entries: with a broadcast when all are ticked, else to one
  /// after the other. The listener is told of each entry that has changed.
  void SendRS485(std::vector<TransferEntry>& entries, std::string_view drawing,
                 const Listener& listener);
  /// Ends it after the piece that is on the line and the command that this may have cut.
  void Stop() { stopping_ = true; }

 private:
  class Run;

  Exchange& exchange_;
  EventLoop& loop_;
  bool stopping_ = false;
};

}  // namespace kelvo
