#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "link/line_watch.h"
#include "tests/fakes/bus_world.h"
#include "tests/test_fonts.h"
#include "twin/twins.h"

namespace kelvo::testing_world {

/// A line of simulated Terminals with whoever models them from what crosses it.
struct TwinWorld : BusWorld {
  explicit TwinWorld(std::initializer_list<sim::TerminalSetup> setups = {}) : BusWorld(setups) {
    fonts = TestFonts();
    port.characterTime = nanoseconds(520'833);
    twins.PortIs(1);
  }

  void Say(const std::string& text) { exchange.SendString(text); }
  void Write(const std::string& text) { Send(text); }
  /// Which tells its size.
  void AskInfo() {
    Say("\x1B??");
    Collect("");
  }
  void Settle() {
    exchange.WaitUntilSent();
    loop.RunFor(milliseconds(250));
    twins.CatchUp();
  }
  sim::Terminal* Real(int address) {
    for (std::size_t i = 0; i < line.bus.Count(); ++i) {
      if (At(i).Setup().address == address) return &At(i);
    }
    return nullptr;
  }
  /// What is said of this one, after everything has arrived.
  const Twin& Of(int address) {
    Settle();
    return *twins.Of(address);
  }
  /// If its size is the one assumed.
  bool Certain(int address) { return Of(address).Certain() || Of(address).OnlySizeAssumed(); }
  /// It is certain, and as it says.
  void ExpectRight(int address, const std::string& what) {
    EXPECT_TRUE(Certain(address)) << what << ": doubt "
                                  << static_cast<int>(Of(address).knowledge.Why());
    EXPECT_EQ(Of(address).terminal.Display().Pixels(), Real(address)->Display().Pixels()) << what;
  }

  std::pair<int, int> assumed{240, 128};
  KnownMemory memory;
  LineWatch watch{com1, exchange};
  Twins twins{
      watch, com1, loop, {fonts, [this] { return assumed; }, [this](auto) { return memory; }}};
};

}  // namespace kelvo::testing_world
