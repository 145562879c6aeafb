#pragma once

#include <string>

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
      line.FromHost({&character, 1}, loop_.Now());
      Pass();
    };
    loop.Add(
        {[this] { return line.NextEvent().value_or(VirtualLoop::kNever); }, [this] { Pass(); }});
  }

  sim::Bus bus;
  sim::Line line{bus};

 private:
  void Pass() {
    const std::string heard = line.Advance(loop_.Now());
    if (!heard.empty()) port_.Arrive(heard);
  }

  VirtualLoop& loop_;
  VirtualPort& port_;
};

}  // namespace kelvo::testing_world
