#include "simulator/bus.h"

#include <algorithm>
#include <utility>

namespace kelvo::sim {
namespace {

std::optional<Time> Earlier(std::optional<Time> a, std::optional<Time> b) {
  if (a && b) return std::min(*a, *b);
  return a ? a : b;
}

// Two drivers on one pair: a 0 of either wins. Drivers are never in step with each other, so the
// bits of each further one are taken to lie one bit later, and even equal answers do not survive.
unsigned char Collide(unsigned char line, unsigned char byte, int driver) {
  const int late = byte << (driver % 7 + 1);
  return static_cast<unsigned char>(line & (late | late >> 8));
}

}  // namespace

Terminal* Bus::Add(TerminalSetup setup, const DeviceFonts& fonts) {
  if (terminals_.size() >= kMost) return nullptr;
  terminals_.push_back(std::make_unique<Terminal>(std::move(setup), fonts));
  drivers_.emplace_back();
  return terminals_.back().get();
}

void Bus::Receive(unsigned char byte, const Frame& frame, Time now) {
  for (std::size_t i = 0; i < terminals_.size(); ++i) {
    Terminal& terminal = *terminals_[i];
    if (!terminal.OutputReady()) drivers_[i].on = false;
    terminal.Receive(Resampled(byte, frame, terminal.Interface1().LineFrame()), now);
  }
}

bool Bus::ReadyToReceive() const {
  return std::all_of(terminals_.begin(), terminals_.end(),
                     [](const auto& terminal) { return terminal->ReadyToReceive(); });
}

void Bus::Advance(Time now) {
  for (const auto& terminal : terminals_) terminal->Advance(now);
}

std::optional<Time> Bus::NextEvent() const {
  std::optional<Time> next;
  for (const auto& terminal : terminals_) next = Earlier(next, terminal->NextEvent());
  return next;
}

std::optional<Time> Bus::OutputReady() const {
  std::optional<Time> ready;
  for (const auto& terminal : terminals_) ready = Earlier(ready, terminal->OutputReady());
  return ready;
}

std::optional<Bus::Character> Bus::Take(Time now) {
  std::optional<Character> character;
  int before = 0;
  for (std::size_t i = 0; i < terminals_.size(); ++i) {
    Terminal& terminal = *terminals_[i];
    Driver& driver = drivers_[i];
    const std::optional<Time> ready = terminal.OutputReady();
    if (!ready || *ready > now) {
      driver.on = false;
      continue;
    }
    // No two Terminals are equally quick: where several answer, each begins a character later
    // than the one before it, and so the end of the last one's answer stands alone.
    if (!driver.on) driver = {true, before};
    const int position = before++;
    if (driver.slotsToWait > 0) {
      --driver.slotsToWait;
      continue;
    }
    const unsigned char byte = terminal.TakeOutput();
    if (!character) {
      character = {byte, terminal.Interface1().LineFrame(), terminal.Interface1().stopBits};
    } else {
      character->byte = Collide(character->byte, byte, position);
    }
  }
  return character;
}

}  // namespace kelvo::sim
