#pragma once

#include <string>

#include "simulator/line.h"
#include "tests/fakes/virtual_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// The simulated Terminal at the other end of a virtual port. The port's characterTime is the
/// host's direction; answers take the time of the Terminal's own rate.
class SimulatedTerminal {
 public:
  /// `fonts` may be empty where no text is looked at; everything must outlive this.
  SimulatedTerminal(VirtualLoop& loop, VirtualPort& port, const DeviceFonts& fonts,
                    const sim::TerminalSetup& setup = {})
      : loop_(loop), port_(port) {
    bus.Add(setup, fonts)->PowerOn(loop.Now());
    port.onCharacter = [this](char character) {
      line.FromHost({&character, 1}, loop_.Now());
      Pass();
    };
    loop.Add(
        {[this] { return line.NextEvent().value_or(VirtualLoop::never); }, [this] { Pass(); }});
  }

  sim::Terminal& Terminal() { return bus.At(0); }

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
