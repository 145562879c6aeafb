#include "simulator/replay.h"

#include <algorithm>

namespace kelvo::sim {

Replay::Replay(ReplayPlan plan, Bus& bus, Line& line, Time start)
    : plan_(std::move(plan)),
      bus_(bus),
      line_(line),
      start_(start + kLead),
      sentAt_(start),
      heard_(plan_.steps.size()) {}

// Whether more must come before the next text.
bool Replay::Waits() const {
  if (step_ == 0 || line_.Now() - sentAt_ > kPatience) return false;
  const ReplayStep& step = plan_.steps[step_];
  const std::string& heard = heard_[step_].characters;
  if (heard.size() < step.AwaitedLength()) return true;
  // What is answered differently is heard to its end; else what follows would be taken for wrong.
  return line_.Answering() && !heardLately_.starts_with(recordedLately_);
}

Time Replay::NextSend() const {
  const bool more = step_ + 1 < plan_.steps.size();
  const Time at = more ? plan_.steps[step_ + 1].at : plan_.end + kTrail;
  return std::max(line_.Now(), start_ + at);
}

std::optional<Time> Replay::NextEvent() const {
  if (done_) return std::nullopt;
  const std::optional<Time> line = line_.NextEvent();
  if (line && (*line <= NextSend() || Waits())) return line;
  return NextSend();
}

void Replay::Advance(Time now) {
  for (auto next = NextEvent(); next && *next <= now; next = NextEvent()) {
    const bool ofLine = line_.NextEvent() == next;
    Hear(*next);
    if (!ofLine) Send();
  }
  Hear(now);
}

void Replay::Hear(Time now) {
  const std::string heard = WithoutHandshake(line_.Advance(now));
  if (done_) return;  // a key that is pressed in the window
  ReplayHeard& here = heard_[step_];
  here.characters += heard;
  heardLately_ += heard;
  here.at.insert(here.at.end(), heard.size(), line_.Now() - start_);
}

void Replay::Send() {
  if (step_ + 1 == plan_.steps.size()) {
    done_ = true;
    return;
  }
  const ReplayStep& step = plan_.steps[++step_];
  sentAt_ = line_.Now();
  start_ = sentAt_ - step.at;
  FollowInterface();
  if (!line_.Answering()) {
    heardLately_.clear();
    recordedLately_.clear();
  }
  recordedLately_ += step.Received();
  line_.FromHost(step.sent, sentAt_);
}

// A capture does not say how the host's port was set: as that of the Terminals, for else they would
// not have understood each other.
void Replay::FollowInterface() {
  const InterfaceSettings& terminal = bus_.At(0).Interface1();
  HostFraming framing = line_.Framing();
  framing.baud = terminal.baud;
  framing.stopBits = terminal.stopBits;
  framing.handshake = terminal.handshake == 0 ? HostHandshake::XonXoff : HostHandshake::RtsCts;
  line_.SetHostFraming(framing);
}

}  // namespace kelvo::sim
