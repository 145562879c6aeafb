#include "simulator/line.h"

#include <algorithm>
#include <cstdint>

namespace kelvo::sim {
namespace {

void Earliest(std::optional<Time>& earliest, std::optional<Time> time) {
  if (time && (!earliest || *time < *earliest)) earliest = time;
}

}  // namespace

Time Line::CharacterTime(int baud, int stopBits) const {
  constexpr std::int64_t kSecond = 1'000'000'000;
  if (!paced_ || baud <= 0) return Time::zero();
  return Time((9 + stopBits) * kSecond / baud);
}

void Line::FromHost(std::string_view bytes, Time now) {
  const Time length = CharacterTime(host_.baud, host_.stopBits);
  hostEnd_ = std::max(hostEnd_, now);
  for (const char byte : bytes) {
    hostEnd_ += length;
    incoming_.push_back({static_cast<unsigned char>(byte), host_.baud, length, hostEnd_});
  }
}

void Line::DiscardFromHost(Time now) {
  while (!incoming_.empty() && incoming_.back().end - incoming_.back().length >= now) {
    incoming_.pop_back();
  }
  hostEnd_ = incoming_.empty() ? now : incoming_.back().end;
}

// Half a character early: a host that empties its buffer when its last character has left must
// find the echo there, as with a real driver.
std::optional<Time> Line::EchoTime() const {
  if (!echo_ || frontEchoed_ || incoming_.empty()) return std::nullopt;
  return incoming_.front().end - incoming_.front().length / 2;
}

// When the next character of an answer can begin.
std::optional<Time> Line::SlotTime() const {
  const std::optional<Time> ready = bus_.OutputReady();
  if (outgoing_ || !ready) return std::nullopt;
  return std::max(*ready, terminalEnd_);
}

std::optional<Time> Line::NextEvent() const {
  std::optional<Time> next = EchoTime();
  if (!incoming_.empty()) Earliest(next, incoming_.front().end);
  if (outgoing_) Earliest(next, outgoing_->end);
  Earliest(next, SlotTime());
  Earliest(next, bus_.NextEvent());
  return next;
}

std::string Line::Advance(Time now) {
  std::string toHost;
  for (auto next = NextEvent(); next && *next <= now; next = NextEvent()) {
    now_ = std::max(now_, *next);
    Step(*next, toHost);
  }
  now_ = std::max(now_, now);
  bus_.Advance(now_);
  return toHost;
}

void Line::Step(Time time, std::string& toHost) {
  if (EchoTime() == time) {
    toHost += static_cast<char>(incoming_.front().byte);
    frontEchoed_ = true;
  } else if (!incoming_.empty() && incoming_.front().end == time) {
    DeliverToBus();
  } else if (outgoing_ && outgoing_->end == time) {
    toHost += static_cast<char>(outgoing_->byte);
    terminalEnd_ = time;
    outgoing_.reset();
  } else if (SlotTime() == time) {
    BeginCharacter(time);
  } else {
    bus_.Advance(time);
  }
}

void Line::DeliverToBus() {
  const Incoming character = incoming_.front();
  incoming_.pop_front();
  frontEchoed_ = false;
  bus_.Receive(character.byte, character.baud, character.end);
}

void Line::BeginCharacter(Time time) {
  const std::optional<Bus::Character> character = bus_.Take(time);
  if (!character) return;
  const unsigned char heard = Resampled(character->byte, character->baud, host_.baud);
  outgoing_ = {heard, time + CharacterTime(character->baud, character->stopBits)};
}

}  // namespace kelvo::sim
