#include "simulator/options.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace kelvo::sim {
namespace {

struct OptionRow {
  std::string_view name;
  std::string_view value;  // empty: the option has none
  std::string_view help;
  bool (*apply)(Options&, std::string_view);
};

// An option of one Terminal, which stands in a bus file as well.
struct TerminalRow {
  std::string_view name;  // without "--"
  std::string_view value;
  std::string_view help;
  bool (*apply)(TerminalOptions&, std::string_view);
};

bool ReadSize(std::string_view text, int& width, int& height) {
  const std::size_t x = text.find('x');
  return x != std::string_view::npos && ReadNumber(text.substr(0, x), 20, 640, width) &&
         ReadNumber(text.substr(x + 1), 20, 480, height);
}

bool ReadBaud(std::string_view text, int& baud) {
  int number = 0;
  if (!ReadNumber(text, 1200, 19200, number) || !IsRate(number)) return false;
  baud = number;
  return true;
}

bool Set(bool& option, bool value) {
  option = value;
  return true;
}

bool ReadPath(std::string_view text, std::string& path) {
  path = text;
  return !text.empty();
}

bool ReadP1(std::string_view text, unsigned char& lines) {
  int number = 0;
  if (!ReadNumber(text, 0, 255, number)) return false;
  lines = static_cast<unsigned char>(number);
  return true;
}

using O = Options;
using T = TerminalOptions;
using V = std::string_view;

constexpr TerminalRow kTerminalRows[] = {
    {"version", "TEXT", "Version des Terminals, mit F am Ende: mit Flash (2.10F)",
     [](T& t, V v) { return ReadVersion(v, t.setup); }},
    {"flash", "on|off", "Flash vorhanden (on)",
     [](T& t, V v) { return ReadSwitch(v, t.setup.flash); }},
    {"checksum", "on|off", "Terminal kann Prüfsummen bilden (on)",
     [](T& t, V v) { return ReadSwitch(v, t.setup.checksum); }},
    {"address", "N", "Adresse am Bus, 0 bis 255 (0)",
     [](T& t, V v) { return ReadNumber(v, 0, 255, t.setup.address); }},
    {"baud", "N", "Baudrate des Terminals, solange keine gespeichert ist (19200)",
     [](T& t, V v) { return ReadBaud(v, t.setup.baud); }},
    {"display", "BxH", "Auflösung, solange keine gespeichert ist (240x128)",
     [](T& t, V v) { return ReadSize(v, t.setup.width, t.setup.height); }},
    {"p1", "N", "Eingänge von Port P1, 0 bis 255 (0)", [](T& t, V v) { return ReadP1(v, t.p1); }},
    {"eeprom", "DATEI", "Datei des EEPROMs (simulator.eeprom im Datenordner)",
     [](T& t, V v) { return ReadPath(v, t.eepromFile); }},
    {"eeprom-size", "N", "Größe des EEPROMs in Byte, 256 bis 65536 (8192)",
     [](T& t, V v) { return ReadNumber(v, 256, 65536, t.setup.eepromBytes); }},
    {"fault", "ART", "none, silent, nak, garbled, late, slow, drops, doubles, flips (none)",
     [](T& t, V v) { return ReadFault(v, t.setup); }},
};

constexpr OptionRow kRows[] = {
    {"--bus", "DATEI", "viele Terminals: je Zeile eines, als address=5 version=1.9 fault=flips:500",
     [](O& o, V v) { return ReadPath(v, o.busFile); }},
    {"--echo", "off|query|line", "Terminal wiederholt Abfragen; Leitung wiederholt alles (off)",
     [](O& o, V v) { return ReadEcho(v, o.terminal.setup.echoQueries, o.lineEcho); }},
    {"--fault", "ART",
     "none, silent, nak, garbled, late, slow, drops, doubles, flips, unplugged (none)",
     [](O& o, V v) {
       o.unplugged = v == "unplugged";
       return ReadFault(o.unplugged ? "none" : v, o.terminal.setup);
     }},
    {"--no-pacing", "", "Zeichen brauchen auf der Leitung keine Zeit",
     [](O& o, V) { return Set(o.paced, false); }},
    {"--frame", "auto|8N|7E|…",
     "Datenbits und Parität (N, S, O, E) des PCs; auto: wie beim Terminal (auto)",
     [](O& o, V v) { return ReadFrame(v, o.hostBits, o.hostParity); }},
    {"--port", "PFAD",
     "unter diesem Pfad erscheint die Schnittstelle (simulator.tty im Datenordner)",
     [](O& o, V v) { return ReadPath(v, o.port); }},
    {"--turn-around", "MS",
     "ein Adernpaar für beide Richtungen, das die Terminals so schnell umschalten; 0: zwei (0)",
     [](O& o, V v) { return ReadNumber(v, 0, 1000, o.turnAround); }},
    {"--record", "DATEI", "den Verkehr als Mitschrift in diese Datei schreiben",
     [](O& o, V v) { return ReadPath(v, o.recordFile); }},
    {"--replay", "DATEI",
     "ohne Schnittstelle: diese Mitschrift abspielen und die Antworten mit ihr vergleichen",
     [](O& o, V v) {
       o.window = false;
       return ReadPath(v, o.replayFile);
     }},
    {"--fast", "", "beim Abspielen keine Zeit vergehen lassen",
     [](O& o, V) { return Set(o.atOnce, true); }},
    {"--window", "", "beim Abspielen ein Fenster, das danach offen bleibt",
     [](O& o, V) { return Set(o.window, true); }},
    {"--display-png", "DATEI", "ohne Fenster: die Anzeige als Bild in diese Datei schreiben",
     [](O& o, V v) {
       o.window = false;
       return ReadPath(v, o.displayPng);
     }},
    {"--no-window", "", "ohne Fenster", [](O& o, V) { return Set(o.window, false); }},
    {"--commands", "", "Befehle zeilenweise von der Standardeingabe (help zeigt sie)",
     [](O& o, V) { return Set(o.commands, true); }},
    {"--help", "", "diese Übersicht", [](O& o, V) { return Set(o.help, true); }},
};

constexpr std::pair<std::string_view, Fault> kFaults[] = {
    {"none", Fault::None},       {"silent", Fault::Silent},   {"nak", Fault::Nak},
    {"garbled", Fault::Garbled}, {"late", Fault::Late},       {"drops", Fault::Drops},
    {"slow", Fault::Slow},       {"doubles", Fault::Doubles}, {"flips", Fault::Flips},
};

template <typename Rows>
auto* FindRow(const Rows& rows, std::string_view name) {
  const auto* row = std::find_if(std::begin(rows), std::end(rows),
                                 [name](const auto& r) { return r.name == name; });
  return row == std::end(rows) ? nullptr : row;
}

// The reason when it does not go.
std::optional<std::string> Apply(const std::string& name, std::string_view value,
                                 TerminalOptions& options) {
  const TerminalRow* const row = FindRow(kTerminalRows, name);
  if (row == nullptr) return "unbekannte Option: " + name;
  if (row->apply(options, value)) return std::nullopt;
  return "ungültiger Wert für " + name + ": " + std::string(value);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::optional<std::string> ReadBusLine(std::string_view line, TerminalOptions& options) {
  for (const std::string_view word : Split(line, ' ')) {
    const std::size_t equals = std::min(word.find('='), word.size());
    const std::string_view value = word.substr(std::min(equals + 1, word.size()));
    if (auto error = Apply(std::string(word.substr(0, equals)), value, options)) return error;
  }
  return std::nullopt;
}

// Options that do not go together; otherwise nothing.
std::optional<std::string> Contradiction(const Options& options) {
  if (options.replayFile.empty()) {
    if (options.atOnce) return "--fast geht nur mit --replay";
    return std::nullopt;
  }
  if (!options.recordFile.empty()) return "--replay und --record gehen nicht zusammen";
  if (!options.port.empty()) return "--replay und --port gehen nicht zusammen";
  if (options.commands) return "--replay und --commands gehen nicht zusammen";
  if (options.unplugged) return "--replay und --fault unplugged gehen nicht zusammen";
  if (options.atOnce && options.window) return "--replay: --fast und --window gehen nicht zusammen";
  return std::nullopt;
}

std::string HelpLine(const std::string& name, std::string_view value, std::string_view help) {
  std::string left = "  " + name + " " + std::string(value);
  left.resize(std::max<std::size_t>(left.size() + 1, 26), ' ');
  return left + std::string(help) + "\n";
}

}  // namespace

std::optional<std::string> ReadOptions(std::span<const std::string> arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    const OptionRow* const row = FindRow(kRows, name);
    const TerminalRow* const terminalRow =
        name.starts_with("--") ? FindRow(kTerminalRows, name.substr(2)) : nullptr;
    if (row == nullptr && terminalRow == nullptr) return "unbekannte Option: " + name;
    const std::string_view expected = row != nullptr ? row->value : terminalRow->value;
    std::string_view value;
    if (!expected.empty()) {
      if (++i == arguments.size()) return name + " braucht einen Wert: " + std::string(expected);
      value = arguments[i];
    }
    const bool valid =
        row != nullptr ? row->apply(options, value) : terminalRow->apply(options.terminal, value);
    if (!valid) return "ungültiger Wert für " + name + ": " + std::string(value);
  }
  return Contradiction(options);
}

std::optional<std::string> ReadBus(std::string_view file, const TerminalOptions& common,
                                   std::vector<TerminalOptions>& terminals) {
  int number = 0;
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size());
    std::string_view line = file.substr(0, end);
    file.remove_prefix(std::min(end + 1, file.size()));
    ++number;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with('#') || line.find_first_not_of(' ') == std::string_view::npos) continue;
    TerminalOptions terminal = common;
    auto error = ReadBusLine(line, terminal);
    if (!error && terminals.size() == Bus::kMost) error = "zu viele Terminals";
    if (error) return "Zeile " + std::to_string(number) + ": " + *error;
    terminals.push_back(terminal);
  }
  if (terminals.empty()) return "kein Terminal beschrieben";
  return std::nullopt;
}

std::string OptionHelp() {
  std::string text = "kelvo-simulator: ein simuliertes Terminal an einer Pseudo-Schnittstelle\n\n";
  for (const TerminalRow& row : kTerminalRows) {
    const std::string name = "--" + std::string(row.name);
    if (FindRow(kRows, name) == nullptr) text += HelpLine(name, row.value, row.help);
  }
  for (const OptionRow& row : kRows) text += HelpLine(std::string(row.name), row.value, row.help);
  return text;
}

bool ReadFault(std::string_view text, TerminalSetup& setup) {
  const std::size_t colon = std::min(text.find(':'), text.size());
  for (const auto& [word, fault] : kFaults) {
    if (word != text.substr(0, colon)) continue;
    setup.fault = fault;
    setup.faultEvery = TerminalSetup().faultEvery;
    return colon == text.size() ||
           ReadNumber(text.substr(colon + 1), 1, 1'000'000, setup.faultEvery);
  }
  return false;
}

std::string_view NameOf(Fault fault) {
  for (const auto& [word, value] : kFaults) {
    if (value == fault) return word;
  }
  return {};
}

bool ReadVersion(std::string_view text, TerminalSetup& setup) {
  if (text.empty() || text.size() > 20 || text.find(';') != std::string_view::npos) return false;
  if (text.front() < '0' || text.front() > '9') return false;
  setup.flash = text.back() == 'F';
  if (setup.flash) text.remove_suffix(1);
  setup.version = text;
  return true;
}

bool ReadEcho(std::string_view text, bool& queries, bool& line) {
  queries = text == "query";
  line = text == "line";
  return queries || line || text == "off";
}

bool ReadFrame(std::string_view text, int& bits, int& parity) {
  const std::size_t letter = text.size() == 2 ? std::string_view("NSOE").find(text[1]) : 4;
  if (text != "auto" && (letter > 3 || (text[0] != '7' && text[0] != '8'))) return false;
  bits = text == "auto" ? 0 : text[0] - '0';
  parity = text == "auto" ? 0 : static_cast<int>(letter);
  return true;
}

bool ReadSwitch(std::string_view text, bool& on) {
  on = text == "on";
  return on || text == "off";
}

bool ReadNumber(std::string_view text, int least, int most, int& number) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  if (value < least || value > most) return false;
  number = value;
  return true;
}

}  // namespace kelvo::sim
