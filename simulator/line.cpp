#include "simulator/line.h"

#include <algorithm>
#include <cstdint>

namespace kelvo::sim {
namespace {

void Earliest(std::optional<Time>& earliest, std::optional<Time> time) {
  if (time && (!earliest || *time < *earliest)) earliest = time;
}

// Two drivers work against each other: no bit arrives as it was sent.
unsigned char Clashed(unsigned char byte, bool clash) {
  return static_cast<unsigned char>(clash ? ~byte : byte);
}

}  // namespace

Time Line::CharacterTime(const Frame& frame, int stopBits) const {
  constexpr std::int64_t kSecond = 1'000'000'000;
  if (!paced_ || frame.baud <= 0) return Time::zero();
  return Time((FrameBits(frame) + stopBits) * kSecond / frame.baud);
}

void Line::FromHost(std::string_view bytes, Time now) {
  const Frame frame = host_.LineFrame();
  const Time length = CharacterTime(frame, host_.stopBits);
  for (const char byte : bytes) {
    incoming_.push_back({static_cast<unsigned char>(byte), frame, length, now});
  }
}

void Line::DiscardFromHost(Time now) {
  std::size_t begun = 0;
  Time begin = hostEnd_;
  for (; begun < incoming_.size(); ++begun) {
    begin = std::max(begin, incoming_[begun].earliest);
    if (begin >= now || (heldSince_ && begin >= *heldSince_)) break;
    begin += incoming_[begun].length;
  }
  incoming_.resize(begun);
}

void Line::ForgetXoff(Time now) {
  xoff_ = false;
  FollowHandshake(now);
}

// ---- times ----

Time Line::FrontBegin() const {
  return incoming_.empty() ? hostEnd_ : std::max(hostEnd_, incoming_.front().earliest);
}

// When the host's next character has arrived; nothing while none is under way.
std::optional<Time> Line::FrontEnd() const {
  if (incoming_.empty() || (heldSince_ && FrontBegin() >= *heldSince_)) return std::nullopt;
  return FrontBegin() + incoming_.front().length;
}

// Half a character early: a host that empties its buffer when its last character has left must
// find the echo there, as with a real driver.
std::optional<Time> Line::EchoTime() const {
  if (!echo_ || frontEchoed_) return std::nullopt;
  const std::optional<Time> end = FrontEnd();
  if (!end) return std::nullopt;
  return *end - incoming_.front().length / 2;
}

// When the next character of an answer can begin.
std::optional<Time> Line::SlotTime() const {
  if (outgoing_) return std::nullopt;
  const std::optional<Time> ready = bus_.OutputReady();
  if (!ready) return std::nullopt;
  const bool on = *ready <= drivenTo_;
  return std::max(on ? *ready : *ready + turnAround_, terminalEnd_);
}

// Whether a Terminal drives the wires at some time between these.
bool Line::Driven(Time begin, Time end) const {
  const Time to = outgoing_ ? std::max(outgoing_->end, drivenTo_) : drivenTo_;
  return turnAround_ > Time::zero() && drivenFrom_ < end && begin < to;
}

std::optional<Time> Line::NextEvent() const {
  std::optional<Time> next = EchoTime();
  Earliest(next, FrontEnd());
  if (outgoing_) Earliest(next, outgoing_->end);
  Earliest(next, SlotTime());
  Earliest(next, bus_.NextEvent());
  return next;
}

bool Line::Answering() const {
  const std::optional<Time> ready = bus_.OutputReady();
  return outgoing_ || (ready && *ready <= now_);
}

// ---- what happens ----

std::string Line::Advance(Time now) {
  std::string toHost;
  for (auto next = NextEvent(); next && *next <= now; next = NextEvent()) {
    now_ = std::max(now_, *next);
    Step(*next, toHost);
    FollowHandshake(now_);
  }
  now_ = std::max(now_, now);
  bus_.Advance(now_);
  FollowHandshake(now_);
  return toHost;
}

// What a Terminal sends goes first, so that its XOFF is in time where nothing takes any time.
void Line::Step(Time time, std::string& toHost) {
  if (EchoTime() == time) {
    const bool clash = Driven(FrontBegin(), time);
    toHost += static_cast<char>(Clashed(incoming_.front().byte, clash));
    frontEchoed_ = true;
  } else if (outgoing_ && outgoing_->end == time) {
    EndCharacter(time, toHost);
  } else if (SlotTime() == time) {
    BeginCharacter(time);
  } else if (FrontEnd() == time) {
    DeliverToBus();
  } else {
    bus_.Advance(time);
  }
}

void Line::DeliverToBus() {
  const Time begin = FrontBegin();
  const Incoming character = incoming_.front();
  hostEnd_ = begin + character.length;
  incoming_.pop_front();
  frontEchoed_ = false;
  const bool clash = Driven(begin, hostEnd_);
  bus_.Receive(Clashed(character.byte, clash), character.frame, hostEnd_);
}

void Line::BeginCharacter(Time time) {
  const std::optional<Bus::Character> character = bus_.Take(time);
  if (!character) return;
  if (time > drivenTo_) drivenFrom_ = time;
  const unsigned char heard = Resampled(character->byte, character->frame, host_.LineFrame());
  outgoing_ = {heard, time + CharacterTime(character->frame, character->stopBits), time};
}

void Line::EndCharacter(Time time, std::string& toHost) {
  const Time begin = outgoing_->begin;
  const bool hostSends = hostEnd_ > begin || (FrontEnd() && FrontBegin() < time);
  const unsigned char heard = Clashed(outgoing_->byte, hostSends && turnAround_ > Time::zero());
  if (heard == kXon || heard == kXoff) xoff_ = heard == kXoff;
  toHost += static_cast<char>(heard);
  terminalEnd_ = time;
  drivenTo_ = time + turnAround_;
  outgoing_.reset();
}

void Line::FollowHandshake(Time time) {
  const bool hold = (host_.handshake == HostHandshake::XonXoff && xoff_) ||
                    (host_.handshake == HostHandshake::RtsCts && !bus_.ReadyToReceive());
  if (hold == heldSince_.has_value()) return;
  // A character that was under way is not begun anew.
  if (!hold && FrontBegin() >= *heldSince_) hostEnd_ = std::max(hostEnd_, time);
  heldSince_ = hold ? std::optional(time) : std::nullopt;
}

}  // namespace kelvo::sim
