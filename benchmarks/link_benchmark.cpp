#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <thread>

#include "benchmarks/real_line.h"
#include "link/traffic_record.h"
#include "tour/simulator_process.h"

// How much of the line's time the exchange itself takes. Speeds are told as ratios, because the
// machine's own speed is not this program's.

namespace kelvo {
namespace {

constexpr std::string_view kCommand =
    "\x1b"
    "EWC";

// Answers the last letter of the command with ACK, at once: the other end of an unpaced
// pseudo-terminal.
class Responder {
 public:
  Responder() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    termios raw{};
    tcgetattr(master_, &raw);
    cfmakeraw(&raw);
    tcsetattr(master_, TCSANOW, &raw);
    slave_ = open(Path().c_str(), O_RDWR | O_NOCTTY);
    thread_ = std::thread([this] { Serve(); });
  }
  ~Responder() {
    stop_ = true;
    thread_.join();
    close(slave_);
    close(master_);
  }
  std::string Path() const { return ptsname(master_); }

 private:
  void Serve() {
    while (!stop_) {
      pollfd entry{master_, POLLIN, 0};
      if (poll(&entry, 1, 50) <= 0) continue;
      char buffer[256];
      const ssize_t count = read(master_, buffer, sizeof buffer);
      if (count <= 0) continue;
      const bool complete = buffer[count - 1] == kCommand.back();
      if (complete && write(master_, "\x06", 1) != 1) return;
    }
  }

  int master_;
  int slave_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

void BareRoundTrip(benchmark::State& state) {
  Responder responder;
  const int handle = open(responder.Path().c_str(), O_RDWR | O_NOCTTY);
  for (auto _ : state) {
    char answer = 0;
    if (write(handle, kCommand.data(), kCommand.size()) < 0 || read(handle, &answer, 1) != 1) {
      state.SkipWithError("no answer");
      break;
    }
  }
  close(handle);
}
BENCHMARK(BareRoundTrip)->UseRealTime();

// At 4 Mbit/s the line's own time for the four characters is 10 µs.
void ExchangeRoundTrip(benchmark::State& state) {
  Responder responder;
  Host host(responder.Path(), "4000000,N,8,1");
  for (auto _ : state) {
    if (host.Send(kCommand)) {
      state.SkipWithError("no acknowledge");
      break;
    }
  }
}
BENCHMARK(ExchangeRoundTrip)->UseRealTime();

// What recording the traffic adds to an exchange, as a share of that exchange's own time, on a line
// that is 200 times as fast as a Terminal's.
void RecordingShare(benchmark::State& state) {
  using std::chrono::system_clock;
  Responder responder;
  Host host(responder.Path(), "4000000,N,8,1");
  TrafficRecord record;
  const Reply reply = AcknowledgeReply("\x06", true);
  const auto now = [] {
    return std::chrono::time_point_cast<std::chrono::milliseconds>(system_clock::now());
  };
  std::chrono::nanoseconds exchanged{0};
  std::chrono::nanoseconds recorded{0};
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (host.Send(kCommand)) state.SkipWithError("no acknowledge");
    const auto between = std::chrono::steady_clock::now();
    record.Add(now(), Direction::ToTerminal, kCommand);
    record.Add(now(), Direction::FromTerminal, reply.received);
    record.Note(now(), {kCommand, reply, {}});
    recorded += std::chrono::steady_clock::now() - between;
    exchanged += between - start;
  }
  state.counters["share_%"] =
      100 * static_cast<double>(recorded.count()) / static_cast<double>(exchanged.count());
  // The same work beside the time that the five characters take on the fastest line of a Terminal.
  const double exchange = 1e9 * 10 * static_cast<double>(kCommand.size() + 1) / 19200;
  state.counters["share_at_19200_%"] = 100 * static_cast<double>(recorded.count()) /
                                       (static_cast<double>(state.iterations()) * exchange);
}
BENCHMARK(RecordingShare)->UseRealTime();

// The share of the line rate that a stream of acknowledged 64-byte commands reaches.
void ShareOfLineRate(benchmark::State& state) {
  const SimulatedFolder folder;
  const QString baud = QString::number(state.range(0));
  SimulatorProcess simulator(folder.Path(), {QStringLiteral("--baud"), baud});
  Host host(folder.Port(), baud.toStdString() + ",N,8,1");
  const std::string macro =
      "\x1b"
      "EWM7," +
      std::string(57, 'x') + "\x03";
  const double ideal =
      10.0 * (static_cast<double>(macro.size()) + 1) / static_cast<double>(state.range(0));
  double seconds = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (host.Send(macro)) {
      state.SkipWithError("no acknowledge");
      break;
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
    seconds += taken.count();
  }
  state.counters["share_%"] = 100 * ideal * static_cast<double>(state.iterations()) / seconds;
}
BENCHMARK(ShareOfLineRate)
    ->Arg(1200)
    ->Arg(9600)
    ->Arg(19200)
    ->UseManualTime()
    ->MinTime(8)
    ->Unit(benchmark::kMillisecond);

// Waiting for an answer that does not come: how late the time-out is, and what it costs.
void Waiting(benchmark::State& state) {
  Responder responder;
  Host host(responder.Path(), "19200,N,8,1");
  const std::chrono::milliseconds interval(state.range(0));
  host.exchange.SetInterval(interval);
  double latest = 0;
  double earliest = 1e9;
  const std::clock_t processor = std::clock();
  double seconds = 0;
  for (auto _ : state) {
    std::string reply;
    host.exchange.RestartTimeout();
    const auto start = std::chrono::steady_clock::now();
    // Without a pause behind it, so that only the time-out itself is measured.
    host.Send("x");
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - start;
    const double late = taken.count() - static_cast<double>(interval.count()) - 10 / 19.2;
    latest = std::max(latest, late);
    earliest = std::min(earliest, late);
    seconds += taken.count() / 1000;
  }
  state.counters["latest_ms"] = latest;
  state.counters["earliest_ms"] = earliest;
  state.counters["processor_%"] =
      100 * static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC / seconds;
}
BENCHMARK(Waiting)->Arg(100)->Iterations(40)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Waiting)->Arg(10000)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
