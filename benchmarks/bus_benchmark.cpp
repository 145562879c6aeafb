// How long a search of the bus and a transfer take, held against the sum of the time-outs, pauses
// and line times that their steps prescribe. The counter "ratio" is the one by the other.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>

#include "bus/terminal_search.h"
#include "bus/transfer.h"
#include "shell/qt_event_loop.h"
#include "shell/qt_serial_port.h"
#include "tests/fakes/bus_world.h"
#include "tour/simulator_process.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using testing_world::BusWorld;

constexpr double CharacterMs = 10 * 1000.0 / 19200;
constexpr double PauseMs = 20;
constexpr double QueryMs = 500;

double Milliseconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Selection, "?A" and its silence for each address. The pause ends with the next tick, which runs
// freely: with the first tick that follows in that row of ticks.
double PrescribedSilence(int last) {
  double ms = 0;
  for (int address = 0; address <= last; ++address) {
    const auto characters = 4 + std::to_string(address).size() + 3;
    ms += static_cast<double>(characters) * CharacterMs + QueryMs;
    ms = (std::floor(ms / PauseMs) + 1) * PauseMs;
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
    measured = world.Duration([&] { search.Run(LastBusAddress, 2.0, [](const auto&) {}); });
  }
  Report(state, measured, PrescribedSilence(LastBusAddress));
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
    const double answers = 10 * 5 * CharacterMs;
    const double waits = 10 * static_cast<double>(TransferPayload(drawing).size()) / 3;
    prescribed = static_cast<double>(world.port.written.size()) * CharacterMs + answers + waits +
                 10 * PauseMs / 2;
  }
  Report(state, measured, prescribed);
}
BENCHMARK(TransferToTenTerminalsInVirtualTime)->Unit(benchmark::kMillisecond);

// The simulator in a folder of its own.
class SimulatedBus {
 public:
  SimulatedBus() {
    const QString program = QStringLiteral(KELVO_PROGRAM_DIR "/");
    QFile::copy(program + QStringLiteral("kelvo-simulator"),
                folder_.filePath(QStringLiteral("kelvo-simulator")));
    QFile::link(program + QStringLiteral("fonts"), folder_.filePath(QStringLiteral("fonts")));
    simulator_ = std::make_unique<SimulatorProcess>(
        folder_.path(), QStringList{QStringLiteral("--fault"), QStringLiteral("silent")});
  }
  std::string Port() const {
    return folder_.filePath(QStringLiteral("simulator.tty")).toStdString();
  }

 private:
  QTemporaryDir folder_;
  std::unique_ptr<SimulatorProcess> simulator_;
};

// The argument is the highest address; 255 takes more than two minutes.
void SearchOnThePacedLine(benchmark::State& state) {
  const SimulatedBus bus;
  QtEventLoop loop;
  QtTimer tmrTimeout(loop, milliseconds(1000), true);
  QtTimer tmrRS485(loop, milliseconds(20), true, QtTimer::Ticks::OnDemand);
  QtSerialPort com1(loop);
  Exchange exchange(com1, loop, tmrTimeout, tmrRS485);
  tmrTimeout.SetHandler([&exchange] { exchange.tmrTimeout_Timer(); });
  tmrRS485.SetHandler([&exchange] { exchange.tmrRS485_Timer(); });
  com1.SetDevices([&bus](int) { return bus.Port(); });
  com1.SetPortNumber(1);
  TerminalState terminal;
  TerminalSearch search({exchange, terminal, [&com1] {
                           com1.Close();
                           if (com1.Open() != PortOk) return false;
                           com1.SetInputLen(1);
                           com1.SetUp("19200,N,8,1", Handshaking::XOnXOff);
                           com1.SetReceiveThreshold(1);
                           return true;
                         }});
  const int last = static_cast<int>(state.range(0));
  double measured = 0;
  for (auto _ : state) {
    const auto start = loop.Now();
    if (search.Run(last, 2.0, [](const auto&) {}) != TerminalSearch::End::Complete) {
      return state.SkipWithError("the line was lost");
    }
    measured = Milliseconds(loop.Now() - start);
  }
  Report(state, measured, PrescribedSilence(last));
}
BENCHMARK(SearchOnThePacedLine)
    ->Arg(15)
    ->Arg(LastBusAddress)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
