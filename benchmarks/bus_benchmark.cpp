// How long a search of the bus and a transfer take, held against the sum of the time-outs, pauses
// and line times that their steps prescribe. The counter "ratio" is the one by the other.

#include <benchmark/benchmark.h>

#include <cmath>

#include "benchmarks/real_line.h"
#include "bus/terminal_search.h"
#include "bus/transfer.h"
#include "tests/fakes/bus_world.h"
#include "tour/simulator_process.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;

constexpr double kCharacterMs = 10 * 1000.0 / 19200;
constexpr double kPauseMs = 20;
constexpr double kQueryMs = 500;

double Milliseconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Selection, "?A" and its silence for each address. The pause ends with the next tick, which runs
// freely: with the first tick that follows in that row of ticks.
double PrescribedSilence(int last) {
  double ms = 0;
  for (int address = 0; address <= last; ++address) {
    const auto characters = 4 + std::to_string(address).size() + 3;
    ms += static_cast<double>(characters) * kCharacterMs + kQueryMs;
    ms = (std::floor(ms / kPauseMs) + 1) * kPauseMs;
  }
  return ms;
}

void Report(benchmark::State& state, double measured, double prescribed) {
  state.counters["measured_ms"] = measured;
  state.counters["prescribed_ms"] = prescribed;
  state.counters["ratio"] = measured / prescribed;
}

void SearchOfTheWholeBusInVirtualTime(benchmark::State& state) {
  double measured = 0;
  for (auto _ : state) {
    BusWorld world;
    TerminalState terminal;
    TerminalSearch search({world.exchange, terminal, [&world] {
                             world.port.Close();
                             return world.port.Open() == PortOk;
                           }});
    measured = world.Duration([&] { search.Run(kLastBusAddress, 2.0, [](const auto&) {}); });
  }
  Report(state, measured, PrescribedSilence(kLastBusAddress));
}
BENCHMARK(SearchOfTheWholeBusInVirtualTime)->Unit(benchmark::kMillisecond);

// 20 kB to ten Terminals, one after the other: the line's time for all that is sent and answered,
// the wait for each Terminal and the pause behind each answer.
void TransferToTenTerminalsInVirtualTime(benchmark::State& state) {
  std::string drawing;
  while (drawing.size() < 20'000) drawing += "\x1bGP 10, 20;\x1bGL 30, 40;";
  double measured = 0;
  double prescribed = 0;
  for (auto _ : state) {
    BusWorld world;
    std::vector<TransferEntry> entries(11);  // one is not ticked, so that it is no broadcast
    for (int i = 0; i < 10; ++i) {
      world.Add({.address = i});
      entries[static_cast<std::size_t>(i)] = {.address = i, .checksum = true, .ticked = true};
    }
    Transfer transfer(world.exchange, world.loop);
    measured = world.Duration([&] { transfer.SendRS485(entries, drawing, [](std::size_t) {}); });
    for (int i = 0; i < 10; ++i) {
      if (entries[static_cast<std::size_t>(i)].state != TransferState::Good) {
        return state.SkipWithError("a transfer failed");
      }
    }
    const double answers = 10 * 5 * kCharacterMs;
    const double waits = 10 * static_cast<double>(TransferPayload(drawing).size()) / 3;
    prescribed = static_cast<double>(world.port.written.size()) * kCharacterMs + answers + waits +
                 10 * kPauseMs / 2;
  }
  Report(state, measured, prescribed);
}
BENCHMARK(TransferToTenTerminalsInVirtualTime)->Unit(benchmark::kMillisecond);

// The argument is the highest address; 255 takes more than two minutes.
void SearchOnThePacedLine(benchmark::State& state) {
  const SimulatedFolder folder;
  const SimulatorProcess silent(folder.Path(),
                                {QStringLiteral("--fault"), QStringLiteral("silent")});
  Host host(folder.Port(), "19200,N,8,1");
  TerminalState terminal;
  TerminalSearch search({host.exchange, terminal, [&host] {
                           host.com1.Close();
                           return host.Open();
                         }});
  const int last = static_cast<int>(state.range(0));
  double measured = 0;
  for (auto _ : state) {
    const auto start = host.loop.Now();
    if (search.Run(last, 2.0, [](const auto&) {}) != TerminalSearch::End::Complete) {
      return state.SkipWithError("the line was lost");
    }
    measured = Milliseconds(host.loop.Now() - start);
  }
  Report(state, measured, PrescribedSilence(last));
}
BENCHMARK(SearchOnThePacedLine)
    ->Arg(15)
    ->Arg(kLastBusAddress)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
