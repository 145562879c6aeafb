#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "link/line_watch.h"
#include "link/listener_trace.h"

namespace kelvo {

/// Who hears what is sent now.
enum class Listening : std::uint8_t { Unknown, Nobody, One, All };
/// How it stands with the answer.
enum class Answering : std::uint8_t {
  Disconnected,
  Lost,  ///< the device has gone
  Held,
  NotAsked,
  Answered,
  Unclear,  ///< something came, but no whole answer
  Silent,
};

/// A question or acknowledged command that failed.
struct LineFailure {
  ReplyKind kind = ReplyKind::Silent;
  std::string sent;
  std::string received{};
};

/// What is known of the line and of who listens: all of it from what is exchanged anyway, whoever
/// sends it. Nothing is asked for it.
class LineState {
 public:
  LineState(LineWatch& line, const EventLoop& loop, const Exchange& exchange);
  LineState(const LineState&) = delete;
  LineState& operator=(const LineState&) = delete;

  /// Told what the trace of the listeners tells (ListenerTrace), while Address() is still who hears
  /// it, and before a character of it is on the line.
  void SetCommandListener(std::function<void(std::string_view command)> listener) {
    trace_.SetListener(std::move(listener));
  }
  /// Told when any of this may have changed, except for the time that passes.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }

  /// Told when what the Terminals were set to may hold no more: they have been restarted, or they
  /// are others, behind another port or a device that was away.
  void SetStartedAnewListener(std::function<void()> listener) { anew_ = std::move(listener); }

  /// The number of the port that is open; 0 for none.
  void PortIs(int number);
  /// Its device has gone; the port is closed.
  void PortLost();
  /// Something has arrived that nobody asked for; it names no address.
  void HeardUnasked();
  /// A search is over. Whom it asked last the operator has not chosen.
  void SearchEnded();

  Listening Listens() const;
  /// The address selected last, if it is known: where Nobody listens, the one under which nobody
  /// does.
  std::optional<int> Address() const { return trace_.Address(); }
  /// The Terminal that is meant by what is sent now: the one that is selected, also while it keeps
  /// silent. Nothing for all, for the address that closes a transfer, and where a search or a macro
  /// has selected one that has not answered.
  std::optional<int> Meant() const;
  /// What the Terminal that listens has said to "?V"; a wire text, empty until it did.
  const std::string& Version() const { return version_; }
  Answering Answers() const;
  /// The device has gone; also before the program has been told of it.
  bool DeviceGone() const;
  /// Something has arrived unasked since the last question.
  bool SendsUnasked() const { return unasked_; }
  /// Time since the last answer of the Terminal that listens; only where there was one.
  std::chrono::seconds SinceAnswer() const;
  /// Questions and acknowledged commands since then to which nothing came.
  int Unanswered() const { return unanswered_; }
  /// Nobody has been selected on purpose: a transfer has ended, or a macro has handed over; or a
  /// search has left an address selected.
  bool SelectedAway() const;
  /// What failed last, if nothing has succeeded since.
  const std::optional<LineFailure>& LastFailure() const { return failure_; }
  /// Anything has been sent since the port was opened last.
  bool SentAny() const { return sent_; }

 private:
  void Sent(std::string_view characters);
  void Settle(const Outcome& outcome);
  void NoteAnswer(const Outcome& outcome, CommandName asked);
  void Anew();
  void SetAnew();
  void StartedAnew() const;
  void NotAsked();
  void Changed() const;

  const EventLoop& loop_;
  const Exchange& exchange_;
  ListenerTrace trace_;
  int port_ = 0;
  int lastPort_ = 0;
  bool lost_ = false;
  bool sent_ = false;
  bool searched_ = false;  // by a search, nothing has been selected since
  std::string version_;
  std::optional<std::chrono::nanoseconds> answered_;
  bool clear_ = true;  // the last answer was whole
  int unanswered_ = 0;
  bool unasked_ = false;
  std::optional<LineFailure> failure_;
  std::function<void()> listener_;
  std::function<void()> anew_;
};

}  // namespace kelvo
