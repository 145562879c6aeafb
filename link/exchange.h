#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/event_loop.h"
#include "base/serial_port.h"

namespace kelvo {

/// What happens to characters that still wait to be sent.
enum class Pending { Keep, Discard };
/// Whether the Terminal answers the command with ACK or NAK.
enum class Acknowledge { None, Wait };

/// The sum of the character codes, wrapped into the signed 16-bit range; the Terminal computes its
/// transfer checksum the same way.
std::int16_t StringSum(std::string_view text);

/// The exchange of one command with its reply, over the one serial port.
///
/// Every wait is a nested event loop: ticks, port events and the operator are served while a
/// command is outstanding, and a handler that runs then may start an exchange of its own. There is
/// no guard against that: the newest exchange runs first, the outer one goes on afterwards and may
/// find its answer gone. A wait ends at once when the port is closed or the program is closing.
///
/// With a closed port nothing is written and nothing is waited for: an acknowledged command fails
/// with "keine Reaktion", a query with "TimeOut", a collection by time is empty.
class Exchange {
 public:
  Exchange(SerialPort& port, EventLoop& loop, Timer& tmrTimeout, Timer& tmrRS485);

  /// The command being sent; afterwards the error text (SendString) or the reply (SendQuery).
  std::string CommandBuffer;
  /// 0 = the last exchange succeeded, -1 = it failed; after OpenCom the port layer's error number.
  std::int16_t LastStatus = 0;

  /// Writes `text` as it stands, in pieces of at most 5000 characters, each after the one before
  /// has left the line. With Acknowledge::Wait it then waits, for the interval of tmrTimeout from
  /// the moment the last bit has left, and `text` becomes "" or the error text: "EEPROM" (NAK),
  /// "keine Reaktion" (nothing came), "unknown " and the decimal code of another answer.
  /// Returns true on an error.
  bool SendString(std::string& text, Pending pending, Acknowledge acknowledge);

  /// Collects what arrives. Up to `endMark` (one character, dropped) within the interval of
  /// tmrTimeout: true and "TimeOut" when it does not come. With an empty end mark whatever comes
  /// within 100 ms: always false. Ends with WaitRS485() in every case.
  bool WaitAnswer(std::string& reply, std::string_view endMark);

  /// Sends the bare query `text` ("?A") and returns its reply without echo and end mark, or
  /// "TimeOut" after 500 ms. Sets LastStatus; leaves tmrTimeout at 500 ms, also where the caller
  /// had set another interval.
  std::string SendQuery(std::string& text);

  /// Until the last bit of what was written has left the line; before the port is closed, so that
  /// the Terminal gets it. Takes no input and no tick, but windows repaint.
  void WaitUntilSent();
  /// The same, but everything is served meanwhile. `left`, if any, is told about every 50 ms how
  /// many characters have not left yet.
  void WaitUntilSentYielding(const std::function<void(std::size_t left)>& left = {});

  /// The pause after each reply, in which a bus Terminal turns its line around: until the next tick
  /// of tmrRS485, which runs freely.
  void WaitRS485();

  /// Sends what CommandBuffer holds; LastStatus takes the result.
  void SendCommand(Acknowledge acknowledge);
  /// Sends CommandBuffer as a query and puts the reply into it.
  void QueryCommand();

  /// The interval of tmrTimeout, the one setting that all waits share.
  void SetReplyTimeout(std::chrono::milliseconds interval) { tmrTimeout_.SetInterval(interval); }
  /// Starts the interval anew and forgets a tick that has come.
  void RestartTimeout();

  /// Told of each tick of tmrTimeout, which ends more than the exchange's waits.
  void SetTickListener(std::function<void()> listener) { tick_ = std::move(listener); }

  /// Told what is going on: the text when one is handed to the line, an empty text when the
  /// outermost exchange is over.
  void SetActivityListener(std::function<void(std::string_view)> listener) {
    activity_ = std::move(listener);
  }
  /// Characters of the present text that have not left the line yet.
  std::size_t CharactersToSend() const { return unsent_ + port_.OutBufferCount(); }
  /// What the last collection up to an end mark has received, complete or not, with echo and end
  /// mark.
  const std::string& LastReceived() const { return received_; }
  /// The port is open and the program goes on; otherwise every exchange ends at once.
  bool Alive() const { return port_.IsOpen() && !loop_.Closing(); }

 private:
  class Activity;

  void tmrTimeout_Timer();
  void tmrRS485_Timer() { rs485Tick_ = true; }

  void UntilSent(const std::function<void()>& wait);
  void RestartTimer();
  void WriteInPieces(std::string& text);
  bool WaitAcknowledge(std::string& text);
  std::string CollectForTime();
  bool CollectUntil(std::string& reply, std::string_view endMark);
  void WaitForEvent();
  void Idle(bool nothingCame);

  SerialPort& port_;
  EventLoop& loop_;
  Timer& tmrTimeout_;
  Timer& tmrRS485_;
  bool timeOutFlag_ = false;
  bool rs485Tick_ = false;
  std::size_t unsent_ = 0;
  std::string received_;
  int depth_ = 0;
  std::function<void(std::string_view)> activity_;
  std::function<void()> tick_;
};

}  // namespace kelvo
