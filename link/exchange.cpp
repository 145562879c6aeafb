#include "link/exchange.h"

#include <algorithm>

#include "link/answer_form.h"
#include "link/control_characters.h"
#include "link/intervals.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// A line that carries nothing at all for so long is held by its handshake; waiting on would keep
// the operator from everything else.
constexpr std::chrono::seconds kStalledAfter{5};
constexpr milliseconds kProgressPause{50};

bool IsAcknowledge(std::string_view answer) {
  return answer == std::string_view(&kAck, 1) || answer == std::string_view(&kNak, 1);
}

}  // namespace

std::int16_t StringSum(std::string_view text) {
  std::uint16_t sum = 0;
  for (const char c : text) sum = static_cast<std::uint16_t>(sum + static_cast<unsigned char>(c));
  return static_cast<std::int16_t>(sum);
}

// Brackets an exchange for the activity listener; nested exchanges count as one.
class Exchange::Activity {
 public:
  Activity(Exchange& exchange, std::string_view text) : exchange_(exchange) {
    ++exchange_.depth_;
    if (exchange_.activity_ && !text.empty()) exchange_.activity_(text);
  }
  ~Activity() {
    if (--exchange_.depth_ == 0 && exchange_.activity_) exchange_.activity_({});
  }
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;

 private:
  Exchange& exchange_;
};

Exchange::Exchange(SerialPort& port, EventLoop& loop, Timer& tmrTimeout, Timer& tmrRS485)
    : port_(port), loop_(loop), tmrTimeout_(tmrTimeout), tmrRS485_(tmrRS485) {
  tmrTimeout_.SetHandler([this] { tmrTimeout_Timer(); });
  tmrRS485_.SetHandler([this] { tmrRS485_Timer(); });
}

void Exchange::tmrTimeout_Timer() {
  timeOutFlag_ = true;
  if (tick_) tick_();
}

Reply Exchange::SendString(const Command& command, Within within) {
  return SendString(command.Text(), Pending::Keep,
                    command.IsAcknowledged() ? Acknowledge::Wait : Acknowledge::None, within);
}

Reply Exchange::SendString(std::string_view text, Pending pending, Acknowledge acknowledge,
                           Within within) {
  if (within) tmrTimeout_.SetInterval(*within);
  RestartTimer();
  sent_ = text;
  const bool wait = acknowledge == Acknowledge::Wait;
  Reply reply = wait ? AcknowledgeReply({}, false) : Reply{ReplyKind::PortClosed, {}};
  if (Alive()) {
    const Activity activity(*this, text);
    if (pending == Pending::Discard) {
      port_.DiscardOutput();
    } else if (!timeOutFlag_) {
      // A tick left over from earlier makes the text follow the one before without a pause.
      WaitUntilSent();
    }
    // An answer may be there as soon as the text is written; no receive event may take it away.
    if (wait) port_.SetReceiveThreshold(0);
    WriteInPieces(text);
    reply = wait ? WaitAcknowledge() : Reply{ReplyKind::Sent, {}};
  } else if (wait) {
    TellOutcome(text, reply, loop_.Now());
  }
  Leave(within);
  return reply;
}

void Exchange::WriteInPieces(std::string_view text) {
  ForgetOverdue(text);
  while (text.size() > kPieceLength && Alive()) {
    port_.Write(text.substr(0, kPieceLength));
    text.remove_prefix(kPieceLength);
    unsent_ = text.size();
    WaitUntilSent();
  }
  unsent_ = 0;
  if (Alive()) port_.Write(text);
}

Reply Exchange::WaitAcknowledge() {
  UntilSent([this] { PaintWhileSending(); }, true);
  RestartTimeout();
  const std::string sent = sent_;
  const nanoseconds asked = loop_.Now();
  while (port_.InBufferCount() == 0 && !timeOutFlag_ && Alive()) WaitForEvent();
  Reply reply = AcknowledgeReply(AcknowledgeBehindOverdue(), Alive());
  NoteOverdue(Answer::Acknowledge, reply);
  port_.SetReceiveThreshold(1);
  TellOutcome(sent, reply, asked);
  return reply;
}

Reply Exchange::WaitAnswer(std::string_view endMark) { return WaitAnswer(endMark, {}); }

Reply Exchange::WaitAnswer(std::string_view endMark, std::optional<nanoseconds> since) {
  const bool byTime = endMark.empty();
  const std::string sent = sent_;  // another exchange may run in the middle
  if (!Alive()) {
    Reply closed = byTime ? Reply{ReplyKind::PortClosed, {}} : TimeOutReply({}, false);
    TellOutcome(sent, closed, loop_.Now());
    return closed;
  }
  const Activity activity(*this, {});
  const int inputLen = port_.InputLen();
  const int threshold = port_.ReceiveThreshold();
  // No receive event may take the reply away.
  port_.SetReceiveThreshold(0);
  WaitUntilSent();
  port_.SetInputLen(1);
  const nanoseconds asked = since.value_or(loop_.Now());
  Reply reply = byTime ? CollectForTime() : CollectUntil(endMark);
  if (endMark == kEndMark) reply = ReplyBehindOverdue(std::move(reply), asked);
  if (reply.kind == ReplyKind::Answered) reply.readable = CanAnswer(sent, reply.text);
  port_.SetInputLen(inputLen);
  port_.SetReceiveThreshold(threshold);
  TellOutcome(sent, reply, asked);
  WaitRS485();
  return reply;
}

Reply Exchange::CollectForTime() {
  std::string received;
  tmrTimeout_.SetEnabled(false);
  const milliseconds interval = tmrTimeout_.Interval();
  tmrTimeout_.SetInterval(kCollectionInterval);
  RestartTimeout();
  do {
    const std::string characters = port_.AllInput();
    received += characters;
    Idle(characters.empty());
  } while (!timeOutFlag_ && Alive());
  // What is there when the time has run out came in time, though the tick was served first.
  received += port_.AllInput();
  tmrTimeout_.SetEnabled(false);
  tmrTimeout_.SetInterval(interval);
  const ReplyKind nothing = Alive() ? ReplyKind::Silent : ReplyKind::PortClosed;
  return {received.empty() ? nothing : ReplyKind::Answered, received, received};
}

Reply Exchange::CollectUntil(std::string_view endMark) {
  std::string received;
  bool complete = false;
  RestartTimeout();
  while (!complete && Alive()) {
    const std::string character = port_.Input();
    if (timeOutFlag_ && character.empty()) break;
    received += character;
    complete = character == endMark;
    // What is there when the time has run out came in time, though the tick was served first.
    if (!complete && !timeOutFlag_) Idle(character.empty());
  }
  tmrTimeout_.SetEnabled(false);
  return complete ? CompleteReply(std::move(received), endMark)
                  : TimeOutReply(std::move(received), Alive());
}

Reply Exchange::SendQuery(const Command& query, Within within) {
  Reply reply = TimeOutReply({}, false);
  if (within) tmrTimeout_.SetInterval(*within);
  if (Alive()) {
    const Activity activity(*this, {});
    port_.SetReceiveThreshold(0);
    port_.DiscardInput();
    SendString(query.Text());
    tmrTimeout_.SetInterval(kQueryInterval);
    reply = WaitAnswer(kEndMark);
    NoteOverdue(Answer::Value, reply);
    if (!reply.Failed()) RemoveEcho(reply, query);
    port_.SetReceiveThreshold(1);
  } else {
    TellOutcome(query.Text(), reply, loop_.Now());
  }
  Leave(within);
  return reply;
}

Reply Exchange::SendQuickQuery(const Command& query, milliseconds first) {
  Reply reply = TimeOutReply({}, false);
  if (!Alive()) return reply;
  const Activity activity(*this, {});
  port_.SetReceiveThreshold(0);
  port_.DiscardInput();
  SendString(query.Text());
  tmrTimeout_.SetInterval(kQueryInterval);
  WaitUntilSent();
  const nanoseconds asked = loop_.Now();
  if (AwaitInput(asked + first)) {
    reply = WaitAnswer(kEndMark, asked);
    if (!reply.Failed()) RemoveEcho(reply, query);
  } else {
    reply = TimeOutReply({}, Alive());
    TellOutcome(query.Text(), reply, asked);
  }
  port_.SetReceiveThreshold(1);
  return reply;
}

void Exchange::TellOutcome(std::string_view sent, const Reply& reply, nanoseconds asked) {
  lastWait_ = loop_.Now() - asked;
  if (outcome_) outcome_({sent, reply, lastWait_});
}

bool Exchange::IsOverdue(Answer answer) const {
  return overdue_ == answer && loop_.Now() < overdueUntil_;
}

void Exchange::NoteOverdue(Answer answer, const Reply& reply) {
  if (reply.kind != ReplyKind::Silent && reply.kind != ReplyKind::Unfinished) return;
  overdue_ = answer;
  overdueUntil_ = loop_.Now() + kOverdueFor;
}

void Exchange::ForgetOverdue(std::string_view text) {
  if (overdue_ == Answer::None) return;
  const CommandRow* const last = LastCommand(text);
  const bool anew = last != nullptr && (last->name == CommandName::SelectAddress ||
                                        last->name == CommandName::Restart);
  if (anew) overdue_ = Answer::None;
}

bool Exchange::AwaitInput(nanoseconds until) {
  while (port_.InBufferCount() == 0 && loop_.Now() < until && Alive()) {
    loop_.WaitForEvent(until - loop_.Now());
  }
  return port_.InBufferCount() > 0;
}

std::string Exchange::AcknowledgeBehindOverdue() {
  std::string answer = port_.Input();
  if (IsOverdue(Answer::Value)) return AcknowledgeBehindReply(std::move(answer));
  if (IsOverdue(Answer::Acknowledge)) return LastAcknowledge(std::move(answer));
  return answer;
}

// What a late reply consists of goes up to its end mark. Without one it was none.
std::string Exchange::AcknowledgeBehindReply(std::string answer) {
  std::string first;
  while (!answer.empty() && !IsAcknowledge(answer)) {
    if (first.empty()) first = answer;
    if (answer == kEndMark) {
      first.clear();
      overdue_ = Answer::None;
    }
    while (port_.InBufferCount() == 0 && !timeOutFlag_ && Alive()) WaitForEvent();
    answer = port_.Input();
  }
  return answer.empty() ? first : answer;
}

std::string Exchange::LastAcknowledge(std::string answer) {
  if (!IsAcknowledge(answer)) return answer;
  overdue_ = Answer::None;
  if (!AwaitInput(loop_.Now() + kSecondAcknowledge)) return answer;
  const std::string second = port_.Input();
  return IsAcknowledge(second) ? second : answer;
}

Reply Exchange::ReplyBehindOverdue(Reply reply, nanoseconds asked) {
  if (reply.kind != ReplyKind::Answered) return reply;
  if (IsOverdue(Answer::Acknowledge) && IsAcknowledge(reply.text.substr(0, 1))) {
    overdue_ = Answer::None;
    reply.text.erase(0, 1);
  }
  if (!IsOverdue(Answer::Value)) return reply;
  overdue_ = Answer::None;
  std::string second;
  while (!second.ends_with(kEndMark) && AwaitInput(asked + 2 * kQueryInterval)) {
    second += port_.Input();
  }
  if (!second.ends_with(kEndMark)) return reply;
  return loop_.Now() <= asked + kQueryInterval ? CompleteReply(std::move(second), kEndMark)
                                               : TimeOutReply(std::move(second), Alive());
}

// Whoever has brought a time of their own leaves the usual one.
void Exchange::Leave(Within within) {
  if (within) tmrTimeout_.SetInterval(kUsualInterval);
}

void Exchange::WaitRS485() {
  rs485Tick_ = false;
  tmrRS485_.SetEnabled(true);
  while (!rs485Tick_ && Alive()) loop_.WaitForEvent();
}

void Exchange::RestartTimer() {
  tmrTimeout_.SetEnabled(false);
  tmrTimeout_.SetEnabled(true);
}

void Exchange::RestartTimeout() {
  timeOutFlag_ = false;
  RestartTimer();
}

void Exchange::WaitUntilSent() {
  UntilSent([this] { PaintWhileSending(); });
}

void Exchange::PaintWhileSending() { loop_.WaitPaintingOnly(port_.OutBufferTime()); }

void Exchange::WaitUntilSentYielding(const std::function<void(std::size_t left)>& left) {
  UntilSent([this, &left] {
    if (left) left(CharactersToSend());
    loop_.WaitForEvent(std::min<std::chrono::nanoseconds>(port_.OutBufferTime(), kProgressPause));
  });
}

void Exchange::UntilSent(const std::function<void()>& wait, bool untilAnswered) {
  std::size_t left = port_.OutBufferCount();
  auto moved = loop_.Now();
  while (left > 0 && Alive() && loop_.Now() - moved < kStalledAfter) {
    if (untilAnswered && port_.InBufferCount() > 0) return;
    wait();
    const std::size_t now = port_.OutBufferCount();
    if (now != left) moved = loop_.Now();
    left = now;
  }
}

// Sleeps inside a bounded wait. An exchange that ran meanwhile leaves tmrTimeout switched off; the
// outer wait must still end.
void Exchange::WaitForEvent() {
  loop_.WaitForEvent();
  if (!tmrTimeout_.Enabled()) RestartTimer();
}

// One round of a collecting wait: sleeps when nothing came, else only serves what has happened, so
// that a line which never falls silent cannot keep the time-out away.
void Exchange::Idle(bool nothingCame) {
  if (nothingCame) {
    WaitForEvent();
  } else {
    loop_.ProcessPending();
  }
}

}  // namespace kelvo
