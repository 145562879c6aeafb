#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "simulator/line.h"
#include "tests/fakes/virtual_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// A line of simulated Terminals, none at first, at the other end of a virtual port. The port's
/// characterTime is the host's direction; answers take the time of the Terminal's own rate.
class SimulatedLine {
 public:
  /// Both must outlive this.
  SimulatedLine(VirtualLoop& loop, VirtualPort& port) : loop_(loop), port_(port) {
    port.onCharacter = [this](char character) {
      towardsTerminals ? towardsTerminals({&character, 1}) : ToTerminals({&character, 1});
    };
    loop.Add(
        {[this] { return line.NextEvent().value_or(VirtualLoop::kNever); }, [this] { Pass(); }});
  }

  sim::Bus bus;
  sim::Line line{bus};

  /// What stands between, in each direction: gets what was sent, and passes on what comes of it,
  /// now or later. Nothing, as at first, changes nothing.
  using Between = std::function<void(std::string_view)>;
  Between towardsTerminals;
  Between towardsHost;
  void ToTerminals(std::string_view characters) {
    line.FromHost(characters, loop_.Now());
    Pass();
  }
  void ToHost(std::string_view characters) { port_.Arrive(std::string(characters)); }

 private:
  void Pass() {
    const std::string heard = line.Advance(loop_.Now());
    if (!heard.empty()) towardsHost ? towardsHost(heard) : ToHost(heard);
  }

  VirtualLoop& loop_;
  VirtualPort& port_;
};

}  // namespace kelvo::testing_world
