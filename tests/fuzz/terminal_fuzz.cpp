// The simulator: whatever a Terminal hears, another one in the same state does the same, and its
// memory is read back as it was saved; captures, options and command lines are refused or carried
// out.

#include "graphics/pixel_map.h"
#include "simulator/console.h"
#include "simulator/options.h"
#include "simulator/replay.h"
#include "simulator/station.h"
#include "tests/fuzz/fuzz.h"

namespace kelvo::fuzz {
namespace {

using sim::Time;
using std::chrono::milliseconds;

const DeviceFonts& Fonts() {
  static const DeviceFonts fonts = [] {
    DeviceFonts loaded;
    loaded.Load(KELVO_PROGRAM_DIR "/fonts");
    return loaded;
  }();
  return fonts;
}

std::string Said(sim::Terminal& terminal) {
  std::string said;
  while (terminal.OutputReady()) said += static_cast<char>(terminal.TakeOutput());
  return said;
}

void PromiseSame(sim::Terminal& one, sim::Terminal& other) {
  Promise(Said(one) == Said(other));
  Promise(one.Display().Pixels() == other.Display().Pixels());
  Promise(one.Memory().Save() == other.Memory().Save());
}

void PromiseKept(const sim::Eeprom& memory) {
  Promise(memory.Free() >= 0 && memory.Free() <= memory.Capacity());
  sim::Eeprom again(memory.Capacity());
  Promise(again.Load(memory.Save()) && again.Records() == memory.Records());
}

void Hear(Input input) {
  const int size = 64 * input.Number(255);
  sim::Terminal terminal({.eepromBytes = size, .width = 64, .height = 48}, Fonts());
  Time now{0};
  terminal.PowerOn(now);
  const auto same = sim::Terminal::CopyOf(terminal);
  while (!input.Empty()) {
    const std::string_view text = input.Text(static_cast<std::size_t>(input.Number(255)));
    for (const char character : text) {
      now += milliseconds(1);
      for (sim::Terminal* each : {&terminal, same.get()}) {
        each->Receive(static_cast<unsigned char>(character), now);
      }
    }
    now += milliseconds(10 * input.Number(255));
    for (sim::Terminal* each : {&terminal, same.get()}) each->Advance(now);
    if (input.Number(7) == 0) terminal.SetPower(false, now), same->SetPower(false, now);
    if (input.Number(3) > 0) terminal.SetPower(true, now), same->SetPower(true, now);
  }
  PromiseSame(terminal, *same);
  PromiseKept(terminal.Memory());
}

void Load(Input input) {
  sim::Eeprom memory(256 * input.Number(32));
  memory.Load(input.Rest());
  PromiseKept(memory);
}

void Play(Input input) {
  sim::ReplayPlan plan;
  if (ReadReplay(input.Rest(), plan)) return;
  sim::Bus bus;
  sim::Line line(bus);
  bus.Add({.width = 64, .height = 48}, Fonts())->PowerOn(Time(0));
  sim::Replay replay(std::move(plan), bus, line, Time(0));
  while (const auto next = replay.NextEvent()) replay.Advance(*next);
  Promise(!ReplayText(replay.Report()).empty());
}

void Choose(Input input) {
  sim::Options options;
  const std::vector<std::string> arguments = input.Lines();
  const auto refused = ReadOptions(arguments, options);
  Promise(!refused || !refused->empty());
  std::vector<sim::TerminalOptions> terminals;
  std::string bus;
  for (const std::string& line : arguments) bus += line + '\n';
  if (ReadBus(bus, {}, terminals)) return;
  Promise(terminals.size() <= sim::Bus::kMost);
  for (std::size_t i = 0; i < terminals.size() && i < 4; ++i) {
    sim::Terminal(terminals[i].setup, Fonts()).PowerOn(Time(0));
  }
}

void Command(Input input) {
  sim::Station station({}, Fonts());
  for (int i = 0; i < 2; ++i) station.Add({.address = i, .width = 64, .height = 48});
  const sim::ConsoleActions actions{[](const std::string&, auto) { return false; }, [] {}};
  for (const std::string& line : input.Lines()) {
    const std::string answer = RunConsoleLine(line, station, actions);
    Promise(answer.starts_with("ok") || answer.starts_with("error "));
  }
}

}  // namespace
}  // namespace kelvo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo::fuzz;
  static constexpr decltype(&Hear) kParts[] = {Hear, Load, Play, Choose, Command};
  Input input(data, size);
  const int part = input.Number(4);
  kParts[part](input);
  return 0;
}
