#include "link/line_state.h"

#include <algorithm>
#include <utility>

#include "base/val.h"
#include "link/addresses.h"
#include "link/answer_form.h"

namespace kelvo {
namespace {

// A Terminal may repeat the question's letters in front of the number.
std::optional<int> AddressIn(std::string_view reply) {
  const double value = Val(reply.substr(reply.find_first_of("0123456789")));
  return value < kAllAddresses ? std::optional(static_cast<int>(value)) : std::nullopt;
}

bool Counts(const CommandRow* asked) {
  return asked != nullptr && asked->answer == Answer::CountDown;
}

// A count-down is waited for in parts; a refusal is the end of it.
Reply Judged(const Reply& reply, const CommandRow* asked) {
  Reply judged = Counts(asked) ? JudgedAcknowledge(reply) : reply;
  return judged.kind == ReplyKind::Refused ? judged : reply;
}

}  // namespace

LineState::LineState(LineWatch& line, const EventLoop& loop, const Exchange& exchange)
    : loop_(loop), exchange_(exchange) {
  line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction == Direction::ToTerminal) Sent(characters);
  });
  line.FollowOutcomes([this](const Outcome& outcome) { Settle(outcome); });
  line.FollowBreaks([this](LineBreak how) {
    if (how == LineBreak::SetAnew) SetAnew();
  });
}

void LineState::PortIs(int number) {
  if (number != 0) {
    // Behind another port, or a device that was away, are other Terminals perhaps.
    if (lost_ || number != lastPort_) {
      trace_.Forget();
      Anew();
      StartedAnew();
    }
    // Of a line that has just been opened nothing is known yet.
    if (port_ == 0) {
      NotAsked();
      sent_ = false;
    }
    lastPort_ = number;
    lost_ = false;
  }
  if (number != port_) failure_.reset();
  port_ = number;
  Changed();
}

void LineState::PortLost() {
  port_ = 0;
  lost_ = true;
  trace_.Forget();
  Anew();
  StartedAnew();
  Changed();
}

void LineState::HeardUnasked() {
  if (port_ == 0 || std::exchange(unasked_, true)) return;
  Changed();
}

void LineState::SearchEnded() {
  searched_ = true;
  Changed();
}

void LineState::Anew() {
  version_.clear();
  NotAsked();
}

// Who was heard with other settings may not be heard with these.
void LineState::SetAnew() {
  Anew();
  failure_.reset();
  Changed();
}

void LineState::NotAsked() {
  answered_.reset();
  unanswered_ = 0;
  unasked_ = false;
}

void LineState::Sent(std::string_view characters) {
  sent_ = true;
  const std::optional<int> before = trace_.Address();
  const auto change = trace_.Sent(characters);
  if (change == ListenerTrace::Change::None) return;
  searched_ = false;
  // To select once more who has just answered is no reason to doubt them.
  const bool same = before && before == trace_.Address() && !trace_.Nobody() && unanswered_ == 0;
  if (!same) Anew();
  if (change == ListenerTrace::Change::Restarted) StartedAnew();
  Changed();
}

void LineState::Settle(const Outcome& told) {
  if (told.reply.kind == ReplyKind::PortClosed) return;
  const CommandRow* const asked = LastCommand(told.sent);
  const Reply judged = Judged(told.reply, asked);
  const Outcome outcome{told.sent, judged, told.took};
  unasked_ = false;
  const bool refused = Counts(asked) && failure_ && failure_->kind == ReplyKind::Refused &&
                       failure_->sent == outcome.sent;
  // Nothing can come behind that.
  if (refused && judged.kind == ReplyKind::Silent) return;
  if (outcome.reply.kind == ReplyKind::Silent) {
    // What has no answer proves nothing by silence.
    if (asked == nullptr || asked->answer == Answer::None) return;
    ++unanswered_;
  } else {
    NoteAnswer(outcome, asked != nullptr ? asked->name : CommandName::Restart);
  }
  failure_.reset();
  if (outcome.reply.Failed()) {
    failure_ = {outcome.reply.kind, std::string(outcome.sent), outcome.reply.received};
  } else if (!outcome.reply.readable) {
    failure_ = {ReplyKind::Unexpected, std::string(outcome.sent), outcome.reply.received};
  }
  Changed();
}

void LineState::NoteAnswer(const Outcome& outcome, CommandName asked) {
  answered_ = loop_.Now();
  unanswered_ = 0;
  const ReplyKind kind = outcome.reply.kind;
  const bool readable = outcome.reply.readable;
  clear_ = readable && (kind == ReplyKind::Answered || kind == ReplyKind::Refused);
  if (kind != ReplyKind::Answered || !readable) return;
  const std::string_view values = ValuesBehind(outcome.sent, outcome.reply.text);
  if (asked == CommandName::AskVersion) version_ = values;
  if (asked != CommandName::AskAddress || trace_.Address() == kAllAddresses) return;
  const auto address = AddressIn(values);
  if (address) trace_.Told(*address);
}

Listening LineState::Listens() const {
  if (!trace_.Address()) return Listening::Unknown;
  if (trace_.Nobody()) return answered_ ? Listening::Unknown : Listening::Nobody;
  const int address = *trace_.Address();
  if (address == kAllAddresses) return Listening::All;
  // Whoever answers there is somebody else, who has missed that it was selected away.
  if (address == kClosingAddress) return answered_ ? Listening::Unknown : Listening::Nobody;
  const bool vain = unanswered_ > 0 || searched_;
  return vain && !answered_ ? Listening::Nobody : Listening::One;
}

std::optional<int> LineState::Meant() const {
  const Listening listens = Listens();
  const bool silent = listens == Listening::Nobody && !SelectedAway();
  return listens == Listening::One || silent ? Address() : std::nullopt;
}

bool LineState::SelectedAway() const {
  return searched_ || trace_.Nobody() || trace_.Address() == kClosingAddress;
}

Answering LineState::Answers() const {
  if (port_ == 0) return lost_ ? Answering::Lost : Answering::Disconnected;
  if (exchange_.LineHeld()) return Answering::Held;
  if (unanswered_ > 0) return Answering::Silent;
  if (!answered_) return Answering::NotAsked;
  return clear_ ? Answering::Answered : Answering::Unclear;
}

bool LineState::DeviceGone() const {
  return port_ == 0 ? lost_ : !exchange_.Alive() && !loop_.Closing();
}

std::chrono::seconds LineState::SinceAnswer() const {
  return std::chrono::duration_cast<std::chrono::seconds>(loop_.Now() -
                                                          answered_.value_or(loop_.Now()));
}

void LineState::StartedAnew() const {
  if (anew_) anew_();
}

void LineState::Changed() const {
  if (listener_) listener_();
}

}  // namespace kelvo
