#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <stdexcept>
#include <utility>

#include "cli/options.h"
#include "interfaces/port_control.h"
#include "settings/status.h"

namespace kelvo::cli {
namespace {

constexpr char kCommands[] = "Befehle";
constexpr char kOptions[] = "Optionen";
constexpr char kLine[] = "Anschluss (sonst gilt der gespeicherte)";
constexpr char kOutput[] = "Ausgabe";

constexpr char kOneFile[] = "Es gehört genau eine DATEI dazu.";

/// What was typed does not make sense; what() says why, UTF-8.
struct Misunderstood : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct VerbRow {
  Verb verb;
  const char* name;
  const char* help;
};
constexpr VerbRow kVerbs[] = {
    {Verb::Check, "check", "prüft Texte, Bereiche und Größen"},
    {Verb::Scan, "scan", "sucht Terminals am Bus; jedes gefundene zeigt seine Adresse an"},
    {Verb::Info, "info", "fragt Version, Info und Zustand einzelner Terminals ab"},
    {Verb::Write, "write", "schreibt in das EEPROM eines oder vieler Terminals"},
    {Verb::Render, "render", "zeichnet, was ein Makro, eine Zeichnung oder ein Bild zeigt"},
    {Verb::Compare, "compare", "vergleicht, was Terminals halten, mit der Datenbank"},
    {Verb::Export, "export", "schreibt das Projekt aus der Datenbank in eine Textdatei"},
    {Verb::Import, "import", "übernimmt ein Projekt aus einer Textdatei in die Datenbank"}};

int NumberOf(const std::string& text, const char* option, int least, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end && number >= least && number <= most) return number;
  throw Misunderstood(std::string(option) + " braucht eine Zahl von " + std::to_string(least) +
                      " bis " + std::to_string(most) + ", nicht \"" + text + "\".");
}

bool IsEntry(ComList list, const std::string& text) {
  const auto entries = ComEntries(list);
  return std::any_of(entries.begin(), entries.end(),
                     [&text](const ListEntry& entry) { return entry.text == text; });
}

DisplaySizeChoice SizeOf(const std::string& text) {
  const std::size_t x = std::min(text.find('x'), text.size());
  const std::string height = text.substr(std::min(x + 1, text.size()));
  return {NumberOf(text.substr(0, x), "--display BREITE", kSmallestDisplay, kLargestDisplayX),
          NumberOf(height, "--display HÖHE", kSmallestDisplay, kLargestDisplayY)};
}

bool TakesOneFile(Verb verb) {
  return verb == Verb::Render || verb == Verb::Export || verb == Verb::Import;
}

/// Shows what is needed exactly once without brackets.
class UsageFormatter : public CLI::Formatter {
 public:
  std::string make_option_usage(const CLI::Option* option) const override {
    const bool once = option->get_expected_max() == 1;
    return once ? option->get_name() : Formatter::make_option_usage(option);
  }
};

/// The command line as it was typed, taken apart.
class CommandLine {
 public:
  CommandLine();
  ParsedArguments Read(std::vector<std::string> arguments);

 private:
  void MakeVerb(const VerbRow& row);
  void AddFileOptions(CLI::App& sub, Verb verb);
  void AddLine(CLI::App& sub);
  void AddOutput(CLI::App& sub);
  void AddText(CLI::App& sub, const char* name, const char* value, const char* help,
               std::string& text);
  void AddScan(CLI::App& sub);
  void AddWrite(CLI::App& sub);
  void AddRender(CLI::App& sub);
  void AddCheck(CLI::App& sub);
  void AddImport(CLI::App& sub);
  void AddExport(CLI::App& sub);
  void AddTo(CLI::App& sub);

  Options Understood();
  void TakeNumbers();
  void TakeLine() const;
  void TakeTo();
  void CheckVerb() const;
  void CheckFiles() const;
  void CheckExtras() const;

  CLI::App app_{"kelvo-cli: richtet Terminals ohne Fenster ein, am Werktisch und aus Skripten."};
  Options options_;
  bool json_ = false;
  bool csv_ = false;
  std::string to_;
  std::string from_;
  std::string eeprom_;
  std::string display_;
  std::string scale_;
  std::string differing_;
};

CommandLine::CommandLine() {
  app_.name("kelvo-cli");
  app_.option_defaults()->group(kOptions);
  app_.set_help_flag("-h,--help", "diese Übersicht; hinter einem Befehl: seine Optionen");
  app_.set_version_flag("--version", "kelvo-cli " KELVO_VERSION, "die Version");
  app_.allow_extras();  // what is not known is refused in German
  const auto formatter = std::make_shared<UsageFormatter>();
  app_.formatter(formatter);
  formatter->label("Usage", "Aufruf");
  formatter->label("OPTIONS", "OPTIONEN");
  formatter->label("SUBCOMMAND", "BEFEHL");
  formatter->label("Positionals", "Angaben");
  formatter->column_width(34);
  app_.footer(
      "Status am Ende: 0 alles in Ordnung, 1 etwas ist misslungen, 2 falsch aufgerufen.\n"
      "Strg+C hält zwischen zwei Befehlen an; \"write --continue\" setzt fort.");
  for (const VerbRow& row : kVerbs) MakeVerb(row);
}

void CommandLine::MakeVerb(const VerbRow& row) {
  CLI::App& sub = *app_.add_subcommand(row.name, row.help);
  sub.group(kCommands);
  sub.footer("");
  sub.get_help_ptr()->group(kOptions);
  sub.callback([this, verb = row.verb] { options_.verb = verb; });
  AddFileOptions(sub, row.verb);
  if (row.verb == Verb::Check) AddCheck(sub);
  if (row.verb == Verb::Scan) AddScan(sub);
  if (row.verb == Verb::Write) AddWrite(sub);
  if (row.verb == Verb::Render) AddRender(sub);
  if (row.verb == Verb::Export) AddExport(sub);
  if (row.verb == Verb::Import) AddImport(sub);
  if (row.verb == Verb::Info || row.verb == Verb::Compare) AddTo(sub);
  if (row.verb == Verb::Compare) {
    sub.add_flag("--read", options_.read, "fragt die Terminals vorher ab");
    sub.add_flag("--all", options_.all, "zeigt auch, was gleich ist oder nicht gelesen wurde");
  }
  const bool speaks = row.verb == Verb::Scan || row.verb == Verb::Info || row.verb == Verb::Write ||
                      row.verb == Verb::Compare;
  if (speaks) AddLine(sub);
  if (row.verb != Verb::Render && row.verb != Verb::Export) AddOutput(sub);
  AddText(sub, "--data", "ORDNER", "der Datenordner mit der Datenbank (der von kelvo)",
          options_.data);
}

void CommandLine::AddText(CLI::App& sub, const char* name, const char* value, const char* help,
                          std::string& text) {
  sub.add_option(name, text, help)->option_text(value);
}

// What can be in a file can also be a stored text.
void CommandLine::AddFileOptions(CLI::App& sub, Verb verb) {
  const bool texts = verb == Verb::Check || verb == Verb::Write || verb == Verb::Render;
  if (!texts && verb != Verb::Export && verb != Verb::Import) return;
  const char* const help = texts ? "Text eines Makros, einer Zeichnung oder Tabelle,\nBild (bmp), "
                                   "Zeichnung (wmf), Bestand oder "
                                   "Projekt\n(.kelvo); \"7=gruss.txt\" nennt die Nummer im Terminal"
                                 : "das Projekt (.kelvo)";
  CLI::Option* const files =
      sub.add_option("DATEI", options_.files, help)->option_text(texts ? "..." : " ");
  if (!texts) files->expected(1)->allow_extra_args(false);
  if (!texts) return;
  sub.add_option(
         "--record", options_.records,
         "nur dieser Text, nach Namen oder Nummer:\naus DATEI, ohne DATEI aus der Datenbank")
      ->option_text("NAME")
      ->allow_extra_args(false);
}

void CommandLine::AddLine(CLI::App& sub) {
  const auto add = [&](const char* name, const char* value, const char* help, std::string& text) {
    sub.add_option(name, text, help)->option_text(value)->group(kLine);
  };
  add("--port", "NAME", "das Gerät (/dev/ttyUSB0) oder \"Com 1\" bis \"Com 6\"",
      options_.line.port);
  add("--rate", "BAUD", "Bit je Sekunde, 1200 bis 19200", options_.line.rate);
  add("--frame", "8N1", "Datenbits, Parität (N, S, O, E) und Stoppbits", options_.line.frame);
  add("--handshake", "xon|rts", "XOn / XOff oder RTS / CTS", options_.line.handshake);
}

void CommandLine::AddOutput(CLI::App& sub) {
  sub.add_flag("--json", json_, "das Ergebnis als JSON")->group(kOutput);
  sub.add_flag("--csv", csv_, "das Ergebnis als CSV, mit Kopf und Komma")->group(kOutput);
}

void CommandLine::AddTo(CLI::App& sub) {
  AddText(sub, "--to", "LISTE", "Adressen wie 1,3,7..12, oder \"aktiv\" für\ndie aktiven der Liste",
          to_);
}

void CommandLine::AddScan(CLI::App& sub) {
  AddText(sub, "--from", "N", "erste Adresse (0)", from_);
  AddText(sub, "--to", "N", "letzte Adresse (253)", to_);
  sub.add_flag("--quick", options_.quick, "wartet bei Schweigen kürzer; immer ab Adresse 0");
  sub.add_flag("--all", options_.all, "nennt auch die Adressen, an denen niemand ist");
}

void CommandLine::AddWrite(CLI::App& sub) {
  AddTo(sub);
  sub.add_flag("--prove", options_.prove,
               "verlangt von jedem Terminal eine Prüfsumme\nüber das Empfangene");
  sub.add_flag("--continue", options_.goOn, "setzt das letzte Schreiben an diesem Anschluss fort");
}

void CommandLine::AddCheck(CLI::App& sub) {
  AddText(sub, "--eeprom", "BYTE", "so viel Platz hat das EEPROM", eeprom_);
  AddText(sub, "--display", "BxH", "Auflösung des Terminals (die gespeicherte)", display_);
}

void CommandLine::AddRender(CLI::App& sub) {
  AddText(sub, "--png", "BILD", "in diese Datei; \"-\" schreibt auf die Standardausgabe",
          options_.png);
  AddText(sub, "--display", "BxH", "Auflösung des Terminals (die gespeicherte)", display_);
  AddText(sub, "--scale", "N", "jeder Punkt wird N mal N Punkte groß (1)", scale_);
}

void CommandLine::AddExport(CLI::App& sub) {
  sub.add_option("--kind", options_.kinds, "nur diese Art, wie sie im Text heißt: Makros, …")
      ->option_text("ART")
      ->allow_extra_args(false);
}

void CommandLine::AddImport(CLI::App& sub) {
  AddText(sub, "--base", "DATEI", "der gemeinsame Stand, von dem beide Seiten kommen",
          options_.base);
  AddText(sub, "--different", "take|leave",
          "was hier anders ist: übernehmen oder lassen\n(sonst wird nichts geändert)", differing_);
  sub.add_flag("--dry-run", options_.tryOnly, "zeigt nur, was geschähe");
}

ParsedArguments CommandLine::Read(std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
  try {
    app_.parse(arguments);
    return {Understood()};
  } catch (const CLI::CallForHelp&) {
    return {{}, app_.help()};
  } catch (const CLI::CallForVersion& version) {
    return {{}, std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    const std::string what = error.what();
    const std::string option = what.substr(0, what.find(':'));
    const bool value = option.starts_with("--") && option.size() < what.size();
    return {{}, value ? option + " braucht genau einen Wert.\n" : what + "\n", WrongUse};
  } catch (const Misunderstood& error) {
    return {{}, std::string(error.what()) + "\n", WrongUse};
  }
}

Options CommandLine::Understood() {
  CheckExtras();
  if (json_ && csv_) throw Misunderstood("--json und --csv schließen einander aus.");
  options_.form = json_ ? Form::Json : csv_ ? Form::Csv : Form::Table;
  TakeNumbers();
  TakeLine();
  TakeTo();
  CheckVerb();
  CheckFiles();
  return options_;
}

void CommandLine::CheckExtras() const {
  const std::vector<std::string> extras = app_.remaining(true);
  if (!extras.empty()) {
    if (TakesOneFile(options_.verb) && !extras.front().starts_with('-'))
      throw Misunderstood(kOneFile);
    throw Misunderstood("\"" + extras.front() + "\" ist hier nicht bekannt; siehe --help.");
  }
  const std::size_t verbs = app_.get_subcommands().size();
  if (verbs != 1) throw Misunderstood("Es gehört genau ein Befehl dazu; siehe --help.");
}

void CommandLine::TakeNumbers() {
  if (!eeprom_.empty()) options_.eeprom = NumberOf(eeprom_, "--eeprom", 0, 1 << 24);
  if (!display_.empty()) options_.display = SizeOf(display_);
  if (!scale_.empty()) options_.scale = NumberOf(scale_, "--scale", 1, 16);
  if (!from_.empty()) options_.first = NumberOf(from_, "--from", 0, 255);
  if (differing_ == "take") {
    options_.differing = Differing::Take;
  } else if (differing_ == "leave") {
    options_.differing = Differing::Leave;
  } else if (!differing_.empty()) {
    throw Misunderstood("--different kennt take und leave, nicht \"" + differing_ + "\".");
  }
}

void CommandLine::TakeLine() const {
  const LineChoice& line = options_.line;
  if (!line.rate.empty() && !IsEntry(ComBaud1, line.rate)) {
    throw Misunderstood("--rate kennt \"" + line.rate + "\" nicht.");
  }
  const std::string& frame = line.frame;
  const bool isFrame = frame.size() == 3 && IsEntry(ComBits1, frame.substr(0, 1)) &&
                       std::string_view("NSOE").find(frame[1]) != std::string_view::npos &&
                       IsEntry(ComStopBit1, frame.substr(2));
  if (!frame.empty() && !isFrame) {
    throw Misunderstood("--frame sieht aus wie 8N1 oder 7E2, nicht \"" + frame + "\".");
  }
  const std::string& shake = line.handshake;
  if (!shake.empty() && shake != "xon" && shake != "rts") {
    throw Misunderstood("--handshake kennt xon und rts, nicht \"" + shake + "\".");
  }
}

void CommandLine::TakeTo() {
  if (options_.verb == Verb::Scan) {
    if (!to_.empty()) options_.last = NumberOf(to_, "--to", 0, 255);
    if (options_.last < options_.first) throw Misunderstood("--from liegt hinter --to.");
    const bool half = options_.quick && options_.first > 0;
    if (half) throw Misunderstood("--quick sucht immer ab Adresse 0, ohne --from.");
    return;
  }
  if (to_.empty()) return;
  options_.to = AddressChoice{to_ == "aktiv"};
  if (options_.to->active) return;
  auto addresses = AddressesIn(to_);
  if (!addresses) {
    throw Misunderstood(
        "--to braucht Adressen von 0 bis 254 wie 1,3,7..12 oder \"aktiv\", nicht \"" + to_ + "\".");
  }
  options_.to->addresses = *std::move(addresses);
}

void CommandLine::CheckVerb() const {
  const Verb verb = options_.verb;
  const bool needsTo = verb == Verb::Info || (verb == Verb::Write && !options_.goOn);
  if (needsTo && !options_.to) throw Misunderstood("--to fehlt: an welche Terminals ?");
  if (verb == Verb::Render && options_.png.empty()) {
    throw Misunderstood("--png fehlt: in welche Datei ?");
  }
  if (verb != Verb::Write || !options_.goOn) return;
  if (options_.to || !options_.files.empty() || !options_.records.empty()) {
    throw Misunderstood(
        "--continue setzt fort, was begonnen war; DATEI, --record und --to gehören "
        "nicht dazu.");
  }
}

void CommandLine::CheckFiles() const {
  const Verb verb = options_.verb;
  const std::size_t given = options_.files.size() + options_.records.size();
  const bool needs = verb == Verb::Check || verb == Verb::Render || verb == Verb::Export ||
                     verb == Verb::Import || (verb == Verb::Write && !options_.goOn);
  if (needs && given == 0) throw Misunderstood("DATEI fehlt.");
  if (TakesOneFile(verb) && (options_.files.size() > 1 || options_.records.size() > 1)) {
    throw Misunderstood(kOneFile);
  }
}

}  // namespace

ParsedArguments ReadArguments(const std::vector<std::string>& arguments) {
  return CommandLine().Read(arguments);
}

}  // namespace kelvo::cli
