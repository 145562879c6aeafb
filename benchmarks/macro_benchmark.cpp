// What is done with each character typed into a macro, and what the models of the Terminals cost
// beside the line.

#include <benchmark/benchmark.h>

#include "settings/macro_check.h"
#include "tests/twin_world.h"
#include "twin/preview.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::TwinWorld;

constexpr double kCharacterSeconds = 10.0 / 19200;
constexpr int kWrites = 200;

// Shapes and texts, as long as a macro can be at most.
std::string MakroOf(std::size_t characters) {
  static constexpr std::string_view kPiece = "\x1bGP10,20;\x1bGfR99,80;\x1bGL30,40;\x1bGTHallo\x04";
  std::string text;
  while (text.size() + kPiece.size() <= characters) text += kPiece;
  return text.append(characters - text.size(), 'x');
}

constexpr std::size_t kLongest = 1023;

void PreviewOfALongMakro(benchmark::State& state) {
  const std::string text = MakroOf(kLongest);
  const Preview preview(TestFonts());
  for (auto _ : state) benchmark::DoNotOptimize(preview.Run(text, {}));
}
BENCHMARK(PreviewOfALongMakro)->Unit(benchmark::kMicrosecond);

void CheckOfALongMakro(benchmark::State& state) {
  const std::string text = MakroOf(kLongest);
  for (auto _ : state) benchmark::DoNotOptimize(CheckMacro(text, {}));
}
BENCHMARK(CheckOfALongMakro)->Unit(benchmark::kMicrosecond);

// The processor's seconds for one acknowledged write in a world of virtual time.
template <typename World>
double SecondsOfAWrite(benchmark::State& state, const std::string& command) {
  World world{{.address = 5}};
  world.exchange.SendString("\x1b!A5;");
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kWrites; ++i) {
    if (world.Send(command)) state.SkipWithError("a write failed");
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  return took.count() / kWrites;
}

// With the models less without them, as a share of the time that the characters are on the line.
void TwinsBesideAnAcknowledgedWrite(benchmark::State& state) {
  const std::string command =
      "\x1b"
      "EWM7," +
      MakroOf(64 - 7) + "\x03";
  double with = 0;
  double without = 0;
  for (auto _ : state) {
    with += SecondsOfAWrite<TwinWorld>(state, command);
    without += SecondsOfAWrite<BusWorld>(state, command);
  }
  const auto rounds = static_cast<double>(state.iterations());
  const double line = static_cast<double>(command.size()) * kCharacterSeconds;
  state.counters["line_ms"] = line * 1000;
  state.counters["twins_us"] = (with - without) / rounds * 1e6;
  state.counters["share_of_line"] = (with - without) / rounds / line;
}
BENCHMARK(TwinsBesideAnAcknowledgedWrite)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
