#include "simulator/console.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "simulator/options.h"

namespace kelvo::sim {
namespace {

struct Context {
  std::string_view rest;                // the line behind its first word
  std::vector<std::string_view> words;  // of the rest
  std::optional<std::size_t> chosen;    // Terminal that the line names
  Station& station;
  const ConsoleActions& actions;

  std::string_view Word(std::size_t index) const {
    return index < words.size() ? words[index] : std::string_view();
  }
  Terminal& Of(Bus& bus) const { return bus.At(chosen.value_or(0)); }
};

const std::string kOk = "ok";

std::string Result(bool done) { return done ? kOk : "error value"; }

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::size_t blank = std::min(text.find(' '), text.size());
    if (blank > 0) words.push_back(text.substr(0, blank));
    text.remove_prefix(std::min(blank + 1, text.size()));
  }
  return words;
}

// UTF-8 to the Terminal's characters; nothing when one has no code there.
std::optional<std::string> Latin1(std::string_view utf8) {
  std::string text;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {
      text += utf8[i];
    } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < utf8.size()) {
      const auto second = static_cast<unsigned char>(utf8[++i]);
      text += static_cast<char>((byte & 3) << 6 | (second & 0x3F));
    } else {
      return std::nullopt;
    }
  }
  return text;
}

std::string SetP1(const Context& c) {
  int lines = 0;
  if (!ReadNumber(c.Word(0), 0, 255, lines)) return Result(false);
  c.station.With(
      [&c, lines](Bus& bus, Line&, Time) { c.Of(bus).SetP1(static_cast<unsigned char>(lines)); });
  return kOk;
}

// "press" is a touch, "hold" lasts until "release".
std::string PressKey(const Context& c) {
  int row = 0;
  int column = 0;
  const bool release = c.Word(2) == "release";
  const bool hold = c.Word(2) == "hold";
  if (!ReadNumber(c.Word(0), 0, 7, row) || !ReadNumber(c.Word(1), 0, 7, column) ||
      (!release && !hold && c.Word(2) != "press" && !c.Word(2).empty())) {
    return Result(false);
  }
  const bool wired = c.station.With([=, &c](Bus& bus, Line&, Time now) {
    const bool done = release || c.Of(bus).PressKey(row, column, now);
    if (!hold) c.Of(bus).ReleaseKey(now);
    return done;
  });
  return wired ? kOk : "error not wired";
}

std::string Type(const Context& c) {
  const std::optional<std::string> text = Latin1(c.rest);
  if (!text) return "error not Latin-1";
  c.station.With([&c, &text](Bus& bus, Line&, Time now) {
    for (const char key : *text) c.Of(bus).Type(static_cast<unsigned char>(key), now);
  });
  return kOk;
}

std::string SendFromInterface2(const Context& c) {
  const std::optional<std::string> text = Latin1(c.rest);
  if (!text) return "error not Latin-1";
  c.station.With(
      [&c, &text](Bus& bus, Line&, Time now) { c.Of(bus).ReceiveInterface2(*text, now); });
  return kOk;
}

std::string Power(const Context& c) {
  bool on = false;
  if (!ReadSwitch(c.Word(0), on)) return Result(false);
  c.station.With([&c, on](Bus& bus, Line&, Time now) { c.Of(bus).SetPower(on, now); });
  return kOk;
}

std::string Reset(const Context& c) {
  c.station.With([&c](Bus& bus, Line&, Time now) {
    c.Of(bus).PowerOff();
    c.Of(bus).PowerOn(now);
  });
  return kOk;
}

std::string SetFault(const Context& c) {
  TerminalSetup setup;
  if (!ReadFault(c.Word(0), setup)) return Result(false);
  c.station.With([&c, &setup](Bus& bus, Line&, Time) {
    c.Of(bus).SetFault(setup.fault);
    c.Of(bus).SetFaultEvery(setup.faultEvery);
  });
  return kOk;
}

std::string SetEcho(const Context& c) {
  bool queries = false;
  bool everything = false;
  if (!ReadEcho(c.Word(0), queries, everything)) return Result(false);
  c.station.With([&c, queries, everything](Bus& bus, Line& line, Time) {
    c.Of(bus).SetEchoQueries(queries);
    line.SetEcho(everything);
  });
  return kOk;
}

std::string SetFrame(const Context& c) {
  int bits = 0;
  int parity = 0;
  if (!ReadFrame(c.Word(0), bits, parity)) return Result(false);
  c.station.SetHostFrame(bits, parity);
  return kOk;
}

std::string SetVersion(const Context& c) {
  TerminalSetup setup;
  if (!ReadVersion(c.Word(0), setup)) return Result(false);
  c.station.With(
      [&c, &setup](Bus& bus, Line&, Time) { c.Of(bus).SetVersion(setup.version, setup.flash); });
  return kOk;
}

std::string SetAddress(const Context& c) {
  int address = 0;
  if (!ReadNumber(c.Word(0), 0, 255, address)) return Result(false);
  c.station.With([&c, address](Bus& bus, Line&, Time) { c.Of(bus).SetAddress(address); });
  return kOk;
}

std::string Unplug(const Context& c) {
  c.station.Unplug();
  return kOk;
}

std::string Plug(const Context& c) {
  try {
    c.station.Plug();
    return kOk;
  } catch (const std::runtime_error& error) {
    return std::string("error ") + error.what();
  }
}

std::string WritePng(const Context& c) {
  if (c.rest.empty()) return Result(false);
  return c.actions.writePng(std::string(c.rest), c.chosen) ? kOk : "error cannot write";
}

std::string Status(const Context& c) {
  return c.station.With([&c](Bus& bus, Line&, Time) {
    const Terminal& terminal = c.Of(bus);
    const PixelMap& pixels = terminal.Display().Pixels();
    return std::string("ok power=") + std::string(terminal.Powered() ? "on" : "off") +
           " selected=" + (terminal.Selected() ? "yes" : "no") +
           " p0=" + std::to_string(terminal.P0()) + " p1=" + std::to_string(terminal.P1()) +
           " free=" + std::to_string(terminal.Memory().Free()) +
           " display=" + std::to_string(pixels.Width()) + "x" + std::to_string(pixels.Height()) +
           " baud=" + std::to_string(terminal.Interface1().baud);
  });
}

std::string Count(const Context& c) {
  const std::size_t count = c.station.With([](Bus& bus, Line&, Time) { return bus.Count(); });
  return kOk + " " + std::to_string(count);
}

std::string Quit(const Context& c) {
  c.actions.quit();
  return kOk;
}

std::string Help(const Context& c);

constexpr std::pair<std::string_view, std::string (*)(const Context&)> kCommands[] = {
    {"p1", SetP1},           {"key", PressKey},
    {"type", Type},          {"com2", SendFromInterface2},
    {"power", Power},        {"reset", Reset},
    {"fault", SetFault},     {"echo", SetEcho},
    {"version", SetVersion}, {"address", SetAddress},
    {"frame", SetFrame},     {"unplug", Unplug},
    {"plug", Plug},          {"png", WritePng},
    {"status", Status},      {"count", Count},
    {"help", Help},          {"quit", Quit},
};

std::string Help(const Context&) {
  std::string names = kOk;
  for (const auto& command : kCommands) names.append(" ").append(command.first);
  return names;
}

// Takes "@n " off the line; nothing when there is no such Terminal.
std::optional<std::size_t> TakeTerminal(std::string_view& line, Station& station) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::size_t count = station.With([](Bus& bus, Line&, Time) { return bus.Count(); });
  int number = 0;
  if (!ReadNumber(line.substr(1, blank - 1), 1, static_cast<int>(count), number)) {
    return std::nullopt;
  }
  line.remove_prefix(std::min(blank + 1, line.size()));
  return static_cast<std::size_t>(number - 1);
}

}  // namespace

std::string RunConsoleLine(std::string_view line, Station& station, const ConsoleActions& actions) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  std::optional<std::size_t> chosen;
  if (line.starts_with('@')) {
    chosen = TakeTerminal(line, station);
    if (!chosen) return "error no such terminal";
  }
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view rest = line.substr(std::min(blank + 1, line.size()));
  for (const auto& [name, run] : kCommands) {
    if (name == line.substr(0, blank)) return run({rest, Words(rest), chosen, station, actions});
  }
  return "error unknown command";
}

}  // namespace kelvo::sim
