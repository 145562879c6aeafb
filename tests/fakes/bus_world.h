#pragma once

#include <initializer_list>

#include "tests/fakes/exchange_world.h"
#include "tests/fakes/simulated_terminal.h"

namespace kelvo::testing_world {

/// An exchange and a line with several simulated Terminals, in virtual time.
struct BusWorld : ExchangeWorld {
  explicit BusWorld(std::initializer_list<sim::TerminalSetup> setups = {}) {
    port.characterTime = nanoseconds(520'833);  // 19200 baud
    for (const sim::TerminalSetup& setup : setups) Add(setup);
  }
  sim::Terminal& Add(const sim::TerminalSetup& setup) {
    sim::Terminal& added = *line.bus.Add(setup, fonts);
    added.PowerOn(loop.Now());
    return added;
  }
  sim::Terminal& At(std::size_t index) { return line.bus.At(index); }

  DeviceFonts fonts;
  SimulatedLine line{loop, port};
};

}  // namespace kelvo::testing_world
