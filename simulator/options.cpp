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

bool ReadPath(std::string_view text, std::string& path) {
  path = text;
  return !text.empty();
}

bool ReadFault(std::string_view text, Options& options) {
  options.unplugged = text == "unplugged";
  const std::optional<Fault> fault = FaultNamed(options.unplugged ? "none" : text);
  if (fault) options.terminal.fault = *fault;
  return fault.has_value();
}

bool ReadP1(std::string_view text, unsigned char& lines) {
  int number = 0;
  if (!ReadNumber(text, 0, 255, number)) return false;
  lines = static_cast<unsigned char>(number);
  return true;
}

using O = Options;
using V = std::string_view;

constexpr OptionRow kRows[] = {
    {"--version", "TEXT", "Version des Terminals, mit F am Ende: mit Flash (2.10F)",
     [](O& o, V v) { return ReadVersion(v, o.terminal); }},
    {"--flash", "on|off", "Flash vorhanden (on)",
     [](O& o, V v) { return ReadSwitch(v, o.terminal.flash); }},
    {"--checksum", "on|off", "Terminal kann Prüfsummen bilden (on)",
     [](O& o, V v) { return ReadSwitch(v, o.terminal.checksum); }},
    {"--address", "N", "Adresse am Bus, 0 bis 255 (0)",
     [](O& o, V v) { return ReadNumber(v, 0, 255, o.terminal.address); }},
    {"--echo", "off|query|line", "Terminal wiederholt Abfragen; Leitung wiederholt alles (off)",
     [](O& o, V v) { return ReadEcho(v, o.terminal.echoQueries, o.lineEcho); }},
    {"--baud", "N", "Baudrate des Terminals, solange keine gespeichert ist (19200)",
     [](O& o, V v) { return ReadBaud(v, o.terminal.baud); }},
    {"--display", "BxH", "Auflösung, solange keine gespeichert ist (240x128)",
     [](O& o, V v) { return ReadSize(v, o.terminal.width, o.terminal.height); }},
    {"--p1", "N", "Eingänge von Port P1, 0 bis 255 (0)", [](O& o, V v) { return ReadP1(v, o.p1); }},
    {"--eeprom", "DATEI", "Datei des EEPROMs (simulator.eeprom neben dem Programm)",
     [](O& o, V v) { return ReadPath(v, o.eepromFile); }},
    {"--eeprom-size", "N", "Größe des EEPROMs in Byte, 256 bis 65536 (8192)",
     [](O& o, V v) { return ReadNumber(v, 256, 65536, o.terminal.eepromBytes); }},
    {"--fault", "ART", "none, silent, nak, garbled, late, drops, unplugged (none)",
     [](O& o, V v) { return ReadFault(v, o); }},
    {"--no-pacing", "", "Zeichen brauchen auf der Leitung keine Zeit",
     [](O& o, V) { return !(o.paced = false); }},
    {"--port", "PFAD", "unter diesem Pfad erscheint die Schnittstelle (simulator.tty)",
     [](O& o, V v) { return ReadPath(v, o.port); }},
    {"--display-png", "DATEI", "ohne Fenster: die Anzeige als Bild in diese Datei schreiben",
     [](O& o, V v) {
       o.window = false;
       return ReadPath(v, o.displayPng);
     }},
    {"--no-window", "", "ohne Fenster", [](O& o, V) { return !(o.window = false); }},
    {"--commands", "", "Befehle zeilenweise von der Standardeingabe (help zeigt sie)",
     [](O& o, V) { return o.commands = true; }},
    {"--help", "", "diese Übersicht", [](O& o, V) { return o.help = true; }},
};

constexpr std::pair<std::string_view, Fault> kFaults[] = {
    {"none", Fault::None},       {"silent", Fault::Silent}, {"nak", Fault::Nak},
    {"garbled", Fault::Garbled}, {"late", Fault::Late},     {"drops", Fault::Drops},
};

}  // namespace

std::optional<std::string> ReadOptions(std::span<const std::string> arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&name](const OptionRow& r) { return r.name == name; });
    if (row == std::end(kRows)) return "unbekannte Option: " + name;
    std::string_view value;
    if (!row->value.empty()) {
      if (++i == arguments.size()) return name + " braucht einen Wert: " + std::string(row->value);
      value = arguments[i];
    }
    if (!row->apply(options, value)) {
      return "ungültiger Wert für " + name + ": " + std::string(value);
    }
  }
  return std::nullopt;
}

std::string OptionHelp() {
  std::string text = "kelvo-simulator: ein simuliertes Terminal an einer Pseudo-Schnittstelle\n\n";
  for (const OptionRow& row : kRows) {
    std::string left = "  " + std::string(row.name) + " " + std::string(row.value);
    left.resize(std::max<std::size_t>(left.size() + 1, 26), ' ');
    text += left + std::string(row.help) + "\n";
  }
  return text;
}

std::optional<Fault> FaultNamed(std::string_view name) {
  for (const auto& [word, fault] : kFaults) {
    if (word == name) return fault;
  }
  return std::nullopt;
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
