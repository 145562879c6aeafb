#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/event_loop.h"
#include "base/serial_port.h"
#include "link/commands.h"
#include "link/reply.h"

namespace kelvo {

/// What happens to characters that still wait to be sent.
enum class Pending { Keep, Discard };
/// Whether the Terminal answers the command with ACK or NAK.
enum class Acknowledge { None, Wait };
/// The time of an operation that takes longer than usual. It is set in front of the call, and
/// kUsualInterval is left behind it.
using Within = std::optional<std::chrono::milliseconds>;

/// What came of what was sent, once it is known.
struct Outcome {
  std::string_view sent;  ///< the last text before the wait
  const Reply& reply;
  std::chrono::nanoseconds took{0};  ///< from the last bit on the line to the end of the wait
};

/// Long texts go out in pieces of at most so many characters.
inline constexpr std::size_t kPieceLength = 5000;

/// The sum of the character codes, wrapped into the signed 16-bit range; the Terminal computes its
/// transfer checksum the same way.
std::int16_t StringSum(std::string_view text);

/// The record that a text is made from: its name (UTF-8) and its kind, as the database has them.
struct Origin {
  std::string name;
  std::string typ;
};

/// The exchange of one command with its reply, over the one serial port.
///
/// Every wait is a nested event loop: ticks, port events and the operator are served while a
/// command is outstanding, and a handler that runs then may start an exchange of its own. There is
/// no guard against that: the newest exchange runs first, the outer one goes on afterwards and may
/// find its answer gone. A wait ends at once when the port is closed or the program is closing.
///
/// All waits share one interval, that of tmrTimeout: an acknowledged command waits as long as it
/// says, a query sets 500 ms and leaves them, an operation with a time of its own leaves 1000 ms.
///
/// An answer that has not come in its time is overdue and may still come. It is dropped then, not
/// taken for the answer to the next question: a reply is no acknowledge and the other way round;
/// and of two answers of a kind the last one counts, for which is listened twice the interval of a
/// query, and kSecondAcknowledge behind an acknowledge. Nothing is listened for before an answer
/// has come, so that silence takes no longer than ever; who is selected anew owes nothing.
///
/// With a closed port nothing is written and nothing is waited for.
class Exchange {
 public:
  /// Takes the ticks of both timers.
  Exchange(SerialPort& port, EventLoop& loop, Timer& tmrTimeout, Timer& tmrRS485);

  /// Writes the command and waits for its acknowledge if it has one.
  Reply SendString(const Command& command, Within within = {});
  /// Writes `text` as it stands, in pieces, each after the one before has left the line. With
  /// Acknowledge::Wait it then waits for one character: an answer counts as soon as it is there,
  /// and its time begins when the last bit has left.
  Reply SendString(std::string_view text, Pending pending = Pending::Keep,
                   Acknowledge acknowledge = Acknowledge::None, Within within = {});

  /// Collects what arrives. Up to `endMark` (one character) within the interval of tmrTimeout; with
  /// an empty end mark whatever comes within 100 ms, which is never a time-out. Ends with
  /// WaitRS485() in every case.
  Reply WaitAnswer(std::string_view endMark);

  /// Sends a query and collects its reply; a copy of the query in front of it is removed.
  Reply SendQuery(const Command& query, Within within = {});

  /// The same, but gives up when not one character has come `first` after the last bit; without the
  /// pause then, because nobody has driven the line.
  Reply SendQuickQuery(const Command& query, std::chrono::milliseconds first);

  /// Until the last bit of what was written has left the line; before the port is closed, so that
  /// the Terminal gets it. Takes no input and no tick, but windows repaint.
  void WaitUntilSent();
  /// The same, but everything is served meanwhile. `left`, if any, is told about every 50 ms how
  /// many characters have not left yet.
  void WaitUntilSentYielding(const std::function<void(std::size_t left)>& left = {});

  /// The pause after each reply, in which a bus Terminal turns its line around: until the next tick
  /// of tmrRS485, which runs freely.
  void WaitRS485();

  /// The interval that all waits share.
  void SetInterval(std::chrono::milliseconds interval) { tmrTimeout_.SetInterval(interval); }
  /// Whoever waits for an answer now waits no longer, as if its time had run out.
  void EndWait() { timeOutFlag_ = true; }
  /// Starts the interval anew and forgets a tick that has come.
  void RestartTimeout();
  /// Told of each tick of tmrTimeout, which ends more than the exchange's waits.
  void SetTickListener(std::function<void()> listener) { tick_ = std::move(listener); }

  /// Told what is going on: the text when one is handed to the line, an empty text when the
  /// outermost exchange is over.
  void SetActivityListener(std::function<void(std::string_view)> listener) {
    activity_ = std::move(listener);
  }
  /// The record that is being sent; an empty one when it is none.
  const Origin& SentFrom() const { return origin_; }
  /// How long the last wait for an answer took, from the last bit on.
  std::chrono::nanoseconds LastWait() const { return lastWait_; }
  /// Told of every wait for an answer when it is over; also at once, with the port closed.
  void SetOutcomeListener(std::function<void(const Outcome&)> listener) {
    outcome_ = std::move(listener);
  }
  /// Characters of the present text that have not left the line yet.
  std::size_t CharactersToSend() const { return unsent_ + port_.OutBufferCount(); }
  /// Characters of whole texts that the line has brought back, since the program's start.
  std::size_t CharactersEchoed() const { return port_.CharactersEchoed(); }
  /// Characters wait to be sent, but the other end lets nothing pass.
  bool LineHeld() const { return port_.Held(); }
  /// The port is open and the program goes on; otherwise every exchange ends at once.
  bool Alive() const { return port_.IsOpen() && !loop_.Closing(); }
  /// Somebody is in the middle of an exchange, or waits until a text has left the line.
  bool Busy() const { return depth_ > 0; }

 private:
  class Activity;
  friend class Sending;

  void tmrTimeout_Timer();
  void tmrRS485_Timer() { rs485Tick_ = true; }
  void UntilSent(const std::function<void()>& wait, bool untilAnswered = false);
  void PaintWhileSending();
  void RestartTimer();
  void WriteInPieces(std::string_view text);
  Reply WaitAcknowledge();
  Reply WaitAnswer(std::string_view endMark, std::optional<std::chrono::nanoseconds> since);
  Reply CollectForTime();
  Reply CollectUntil(std::string_view endMark);
  bool IsOverdue(Answer answer) const;
  void NoteOverdue(Answer answer, const Reply& reply);
  void ForgetOverdue(std::string_view text);
  std::string AcknowledgeBehindOverdue();
  std::string AcknowledgeBehindReply(std::string answer);
  std::string LastAcknowledge(std::string answer);
  Reply ReplyBehindOverdue(Reply reply, std::chrono::nanoseconds asked);
  bool AwaitInput(std::chrono::nanoseconds until);
  void WaitForEvent();
  void Idle(bool nothingCame);
  void Leave(Within within);
  void TellOutcome(std::string_view sent, const Reply& reply, std::chrono::nanoseconds asked);

  SerialPort& port_;
  EventLoop& loop_;
  Timer& tmrTimeout_;
  Timer& tmrRS485_;
  bool timeOutFlag_ = false;
  bool rs485Tick_ = false;
  std::size_t unsent_ = 0;
  Answer overdue_ = Answer::None;
  std::chrono::nanoseconds overdueUntil_{0};
  int depth_ = 0;
  std::function<void(std::string_view)> activity_;
  std::function<void()> tick_;
  std::function<void(const Outcome&)> outcome_;
  std::chrono::nanoseconds lastWait_{0};
  std::string sent_;  // the text written last
  Origin origin_;
};

/// While it lives, what is sent is made from that record.
class Sending {
 public:
  Sending(Exchange& exchange, Origin origin)
      : exchange_(exchange), before_(std::exchange(exchange.origin_, std::move(origin))) {}
  ~Sending() { exchange_.origin_ = std::move(before_); }
  Sending(const Sending&) = delete;
  Sending& operator=(const Sending&) = delete;

 private:
  Exchange& exchange_;
  Origin before_;
};

}  // namespace kelvo
