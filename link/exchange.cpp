#include "link/exchange.h"

#include <algorithm>

#include "link/control_characters.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t pieceLength = 5000;
constexpr milliseconds queryTimeout{500};
constexpr milliseconds collectionTime{100};
// A line that carries nothing at all for so long is held by its handshake; waiting on would freeze
// the window.
constexpr std::chrono::seconds stalledAfter{5};
constexpr milliseconds progressPause{50};

std::int16_t Status(bool failed) { return failed ? -1 : 0; }

// What a one-character answer to an acknowledged command means; empty for success.
std::string AnswerError(std::string_view answer) {
  if (answer.empty()) return "keine Reaktion";
  if (answer == std::string_view(&Ack, 1)) return {};
  if (answer == std::string_view(&Nak, 1)) return "EEPROM";
  return "unknown " + std::to_string(static_cast<unsigned char>(answer.front()));
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

bool Exchange::SendString(std::string& text, Pending pending, Acknowledge acknowledge) {
  RestartTimer();
  if (!Alive()) {
    if (acknowledge == Acknowledge::None) return false;
    text = AnswerError({});
    return true;
  }
  const Activity activity(*this, text);
  if (pending == Pending::Discard) {
    port_.DiscardOutput();
  } else if (!timeOutFlag_) {
    // A tick left over from earlier makes the text follow the one before without a pause.
    WaitUntilSent();
  }
  WriteInPieces(text);
  return acknowledge == Acknowledge::Wait && WaitAcknowledge(text);
}

void Exchange::WriteInPieces(std::string& text) {
  while (text.size() > pieceLength && Alive()) {
    port_.Write(std::string_view(text).substr(0, pieceLength));
    text.erase(0, pieceLength);
    unsent_ = text.size();
    WaitUntilSent();
  }
  unsent_ = 0;
  port_.Write(text);
}

bool Exchange::WaitAcknowledge(std::string& text) {
  // The Terminal answers a command that has arrived, so its time starts when the line is free; what
  // came before that can only be the bus echo of the command.
  WaitUntilSent();
  port_.DiscardEcho();
  port_.SetReceiveThreshold(0);
  RestartTimeout();
  while (port_.InBufferCount() == 0 && !timeOutFlag_ && Alive()) WaitForEvent();
  text = AnswerError(port_.Input());
  port_.SetReceiveThreshold(1);
  return !text.empty();
}

bool Exchange::WaitAnswer(std::string& reply, std::string_view endMark) {
  if (!Alive()) {
    reply = endMark.empty() ? "" : "TimeOut";
    return !endMark.empty();
  }
  const Activity activity(*this, {});
  const int inputLen = port_.InputLen();
  const int threshold = port_.ReceiveThreshold();
  // No receive event may take the reply away.
  port_.SetReceiveThreshold(0);
  WaitUntilSent();
  bool timedOut = false;
  if (endMark.empty()) {
    reply = CollectForTime();
  } else {
    timedOut = CollectUntil(reply, endMark);
  }
  port_.SetInputLen(inputLen);
  port_.SetReceiveThreshold(threshold);
  WaitRS485();
  return timedOut;
}

std::string Exchange::CollectForTime() {
  std::string reply;
  tmrTimeout_.SetEnabled(false);
  const milliseconds interval = tmrTimeout_.Interval();
  tmrTimeout_.SetInterval(collectionTime);
  port_.SetInputLen(1);
  RestartTimeout();
  do {
    const std::string character = port_.Input();
    reply += character;
    Idle(character.empty());
  } while (!timeOutFlag_ && Alive());
  tmrTimeout_.SetEnabled(false);
  tmrTimeout_.SetInterval(interval);
  return reply;
}

bool Exchange::CollectUntil(std::string& reply, std::string_view endMark) {
  // Collected aside: a handler that runs during the wait may use the caller's variable.
  std::string collected;
  bool complete = false;
  port_.SetInputLen(1);
  RestartTimeout();
  while (!timeOutFlag_ && Alive()) {
    const std::string character = port_.Input();
    complete = character == endMark;
    if (complete) break;
    collected += character;
    Idle(character.empty());
  }
  tmrTimeout_.SetEnabled(false);
  received_ = complete ? collected + std::string(endMark) : collected;
  reply = complete ? collected : "TimeOut";
  return !complete;
}

std::string Exchange::SendQuery(std::string& text) {
  if (!Alive()) {
    text.insert(0, CmdPrefix);
    LastStatus = Status(true);
    return "TimeOut";
  }
  const Activity activity(*this, {});
  port_.SetReceiveThreshold(0);
  text.insert(0, CmdPrefix);
  const std::string query = text;
  std::string reply = query;
  port_.DiscardInput();
  LastStatus = Status(SendString(reply, Pending::Keep, Acknowledge::None));
  tmrTimeout_.SetInterval(queryTimeout);
  const bool timedOut = WaitAnswer(reply, EndMark);
  LastStatus = Status(timedOut);
  if (!timedOut && reply.starts_with(query)) reply.erase(0, query.size());
  port_.SetReceiveThreshold(1);
  return reply;
}

void Exchange::WaitRS485() {
  rs485Tick_ = false;
  tmrRS485_.SetEnabled(true);
  while (!rs485Tick_ && Alive()) loop_.WaitForEvent();
}

void Exchange::SendCommand(Acknowledge acknowledge) {
  LastStatus = Status(SendString(CommandBuffer, Pending::Keep, acknowledge));
}

void Exchange::QueryCommand() { CommandBuffer = SendQuery(CommandBuffer); }

void Exchange::RestartTimer() {
  tmrTimeout_.SetEnabled(false);
  tmrTimeout_.SetEnabled(true);
}

void Exchange::RestartTimeout() {
  timeOutFlag_ = false;
  RestartTimer();
}

void Exchange::WaitUntilSent() {
  UntilSent([this] { loop_.WaitPaintingOnly(port_.OutBufferTime()); });
}

void Exchange::WaitUntilSentYielding(const std::function<void(std::size_t left)>& left) {
  UntilSent([this, &left] {
    if (left) left(CharactersToSend());
    loop_.WaitForEvent(std::min<std::chrono::nanoseconds>(port_.OutBufferTime(), progressPause));
  });
}

void Exchange::UntilSent(const std::function<void()>& wait) {
  std::size_t left = port_.OutBufferCount();
  auto moved = loop_.Now();
  while (left > 0 && Alive() && loop_.Now() - moved < stalledAfter) {
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
