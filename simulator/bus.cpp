#include "simulator/bus.h"

#include <algorithm>
#include <cstdint>
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

unsigned char Resampled(unsigned char byte, int senderBaud, int receiverBaud) {
  if (senderBaud == receiverBaud || senderBaud <= 0 || receiverBaud <= 0) return byte;
  // Start bit 0, eight data bits from the lowest, then the idle line.
  const auto bitOfSender = [byte](std::int64_t bit) {
    return bit == 0 ? 0 : bit <= 8 ? byte >> (bit - 1) & 1 : 1;
  };
  int received = 0;
  for (int bit = 0; bit < 8; ++bit) {
    // The middle of the receiver's data bit, in bits of the sender.
    const std::int64_t position = (2 * bit + 3) * std::int64_t{senderBaud} / 2 / receiverBaud;
    received |= bitOfSender(position) << bit;
  }
  return static_cast<unsigned char>(received);
}

Terminal* Bus::Add(TerminalSetup setup, const DeviceFonts& fonts) {
  if (terminals_.size() >= kMost) return nullptr;
  terminals_.push_back(std::make_unique<Terminal>(std::move(setup), fonts));
  drivers_.emplace_back();
  return terminals_.back().get();
}

void Bus::Receive(unsigned char byte, int baud, Time now) {
  for (const auto& terminal : terminals_) {
    terminal->Receive(Resampled(byte, baud, terminal->Interface1().baud), now);
  }
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
      character = {byte, terminal.Interface1().baud, terminal.Interface1().stopBits};
    } else {
      character->byte = Collide(character->byte, byte, position);
    }
  }
  return character;
}

}  // namespace kelvo::sim
