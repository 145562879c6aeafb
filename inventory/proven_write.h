#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "base/event_loop.h"
#include "inventory/item.h"
#include "link/exchange.h"

// One item goes into the EEPROM of one Terminal, which shows first that it is the one that listens
// and proves afterwards by its checksum what it has received.

namespace kelvo {

/// What came of a write. Only the first two are successes.
enum class WriteVerdict : std::uint8_t {
  Proven,            ///< acknowledged, and the checksum is the one expected
  AcknowledgedOnly,  ///< acknowledged; this Terminal computes no checksum
  Unproven,          ///< acknowledged, but no checksum came
  WrongSum,          ///< acknowledged, but something else has arrived
  Refused,           ///< NAK
  UnknownCode,       ///< neither ACK nor NAK
  Silent,            ///< no acknowledge
  NoTerminal,        ///< nobody answers at this address; nothing was written
  OtherAnswer,       ///< what answers there is not it; nothing was written
  NoRoom,            ///< too few bytes are free, or how many was not told; nothing was written
  LineLost,          ///< or the program is closing
};

struct WriteResult {
  WriteVerdict verdict = WriteVerdict::LineLost;
  Reply reply{};         ///< the one that decided
  std::string detail{};  ///< German, why it is not proven; empty when it is. UTF-8
  bool sent = false;     ///< the command has gone out: what the Terminal holds may have changed

  bool Done() const {
    return verdict == WriteVerdict::Proven || verdict == WriteVerdict::AcknowledgedOnly;
  }
};

/// In German what a verdict is, without the reason. UTF-8.
std::string VerdictText(WriteVerdict verdict);
/// The verdict, and the reason behind ": ".
std::string ResultText(const WriteResult& result);

/// What goes to the Terminal before and behind an item, without an answer and outside of the sum: a
/// keyboard table is read in the mode that stands before it.
struct WriteFrame {
  std::string before{};
  std::string behind{};  ///< only when the write is done
  /// Bytes that must be free beside the reserve; without a number they are not asked for.
  std::optional<std::size_t> room{};
};

/// Select, "?A", the free bytes if they matter, what stands before, "C!", the item, its
/// acknowledge, "C?", what stands behind. The Terminal stays selected.
class ProvenWrite {
 public:
  ProvenWrite(Exchange& exchange, EventLoop& loop) : exchange_(exchange), loop_(loop) {}

  /// `canSum`: the Terminal computes checksums; another one is never asked for it. An answer that
  /// may still come is waited for, so that the next question does not take it.
  WriteResult Write(int address, bool canSum, const Item& item, const WriteFrame& frame = {});

  /// Selects the Terminal and asks its address alone; Proven when it is that one.
  WriteResult Ask(int address);

 private:
  WriteResult Reach(int address);
  std::optional<WriteResult> LacksRoom(std::size_t bytes);
  WriteResult WriteAndProve(bool canSum, const Item& item);
  WriteResult ReadSum(const std::string& command);
  void AwaitStrayAnswer();

  Exchange& exchange_;
  EventLoop& loop_;
};

}  // namespace kelvo
