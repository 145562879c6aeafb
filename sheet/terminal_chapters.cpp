#include "sheet/terminal_chapters.h"

#include <limits>

#include "inventory/equipment.h"
#include "inventory/settings_trace.h"
#include "inventory/statement_words.h"
#include "link/command_words.h"
#include "sheet/characters.h"

namespace kelvo {
namespace {

std::string YesNo(bool yes) { return yes ? "ja" : "nein"; }

SheetTable PropertyTable() { return {{{"Eigenschaft", 13}, {"Wert", 13}, {"Beruht auf", 12}}, {}}; }

// The address and the version are of interest beside the settings, too.
std::vector<std::string> ReadRow(const SheetSubject& subject, const Question& question) {
  const TerminalId& id = subject.terminal.id;
  const Reading* const last = subject.sources.readings->Last(id, question.query);
  const Silence* const silence = subject.sources.readings->SilenceOf(id, question.query);
  std::string basis = last != nullptr ? ReadBasis(last->time) : kNotRead;
  if (silence != nullptr) {
    basis = silence->why + " " + LocalMoment(silence->time) +
            (last != nullptr ? ", zuletzt " + basis : "");
  }
  return {question.what, last != nullptr ? PrintedText(last->reply) : kNotRead, basis};
}

void AddStored(SheetTable& table, const SheetTerminal& terminal) {
  const bool known = terminal.id.address != kUnknownAddress;
  const std::string list = terminal.stored ? "Datenbank, Liste der Terminals" : "Wahl am Bus";
  table.rows.push_back({"Adresse", known ? std::to_string(terminal.id.address) : "nicht bekannt",
                        known ? list : "keine Adresse gewählt"});
  const std::string name = PrintedWords(terminal.name);
  table.rows.push_back({"Name", name.empty() ? "ohne Namen" : name,
                        terminal.stored ? list : "nicht in der Liste der Terminals"});
  if (!terminal.stored) return;
  table.rows.push_back({"aktiv (an es wird gesendet)", YesNo(terminal.stored->active), list});
  table.rows.push_back({"kann Prüfsumme", YesNo(terminal.stored->checksum), list});
}

SheetTable SettingsTable(const std::string& settings, const std::string& basis) {
  SheetTable table{{{"Einstellung", 20}, {"Zeichen", 10, true}, {"Beruht auf", 14}}, {}};
  WalkCommands(settings, [&](const SentCommand& command) {
    std::string wire("\x1B");
    wire.append(command.row->letters).append(command.parameters);
    if (command.row->ending == Ending::Semicolon) wire += ';';
    table.rows.push_back({PrintedWords(CommandWords(wire, std::numeric_limits<int>::max())),
                          PrintedText(wire), basis});
    return true;
  });
  return table;
}

void AddConfig(std::vector<SheetBlock>& blocks, const SheetSubject& subject) {
  const ItemKey key{ItemKind::Config, 0};
  blocks.emplace_back(SheetHeading{3, "Gespeicherte Konfiguration"});
  if (const Doubt* const doubt = subject.inventory.DoubtAt(key)) {
    blocks.emplace_back(SheetText{"Was sie enthält, ist " + DoubtBasis(*doubt) + "."});
    return;
  }
  const Held* const held = subject.inventory.At(key);
  if (held == nullptr) {
    blocks.emplace_back(SheetText{
        subject.inventory.KnownEmpty(key)
            ? "Keine: Sie wurde von hier gelöscht, und seither wurde keine gespeichert."
            : "Nicht bekannt: Von hier wurde keine gespeichert, und ein Terminal gibt sie nicht "
              "zurück."});
    return;
  }
  const std::string settings = Settings(held->item.command).Text();
  const std::string basis = HeldBasis(subject.inventory, *held);
  blocks.emplace_back(SheetText{
      settings.empty()
          ? "Das Terminal hat seine damaligen Einstellungen gespeichert; welche das waren, ist "
            "nicht bekannt (" +
                basis + ")."
          : "Gesendet, bevor das Terminal sie gespeichert hat; andere sind nicht bekannt."});
  if (!settings.empty()) blocks.emplace_back(SettingsTable(settings, basis));
}

std::string RoomWords(const Room& room) {
  const auto& read = room.LastReading();
  if (!read) return "Freier Platz: nicht gelesen.";
  return "Freier Platz: " + std::to_string(read->bytes) + " Byte, " + ReadBasis(read->time) +
         (room.Changed() ? "; seither wurde geschrieben oder gelöscht." : ".");
}

std::string DisagreementWords(const Room::Disagreement& disagreement) {
  return "Achtung: Am " + LocalMoment(disagreement.read.time) + " meldete das Terminal " +
         std::to_string(disagreement.read.bytes) +
         " Byte frei; das passt nicht zu dem, was von hier geschrieben wurde. Was davor "
         "geschrieben "
         "wurde, gilt als unbekannt.";
}

}  // namespace

std::vector<SheetBlock> InterfacesChapter(const SheetSubject& subject) {
  SheetTable table = PropertyTable();
  AddStored(table, subject.terminal);
  for (const Question& question : Questions()) {
    if (question.query == CommandName::AskVersion || question.query == CommandName::AskFlash) {
      table.rows.push_back(ReadRow(subject, question));
    }
  }
  table.rows.push_back({"Display",
                        std::to_string(subject.sources.width) + " x " +
                            std::to_string(subject.sources.height) + " Punkte",
                        kDatabaseBasis});
  SheetTable line = PropertyTable();
  for (const SheetValue& value : subject.sources.line) {
    line.rows.push_back({value.what, PrintedWords(value.value), kDatabaseBasis});
  }
  const std::string device = PrintedWords(subject.terminal.id.device);
  line.rows.push_back({"Gerät am PC", device.empty() ? "nicht bekannt" : device,
                       device.empty() ? "kein Anschluss gewählt" : "Anschluss, Aufzeichnung"});
  std::vector<SheetBlock> blocks{
      std::move(table), SheetHeading{3, "Schnittstellen, wie am PC gewählt"}, std::move(line)};
  AddConfig(blocks, subject);
  return blocks;
}

std::vector<SheetBlock> EepromChapter(const SheetSubject& subject) {
  const Inventory& inventory = subject.inventory;
  std::vector<SheetBlock> blocks{SheetText{RoomWords(inventory.FreeBytes())}};
  if (const auto& disagreement = inventory.FreeBytes().LastDisagreement()) {
    blocks.emplace_back(SheetText{DisagreementWords(*disagreement)});
  }
  std::vector<Item> items;
  for (const auto& [key, held] : inventory.Items()) items.push_back(held.item);
  if (!items.empty()) {
    blocks.emplace_back(SheetText{"Was von hier geschrieben wurde, belegt mindestens " +
                                  std::to_string(LeastBytes(items)) + " Byte (errechnet)."});
  }
  SheetTable table = ItemTable(subject, {ItemKind::Config, ItemKind::Macro, ItemKind::MatrixTable,
                                         ItemKind::AtTable, ItemKind::Bitmap});
  if (table.rows.empty()) {
    blocks.emplace_back(SheetText{"Von hier geschrieben liegt dort nichts."});
  } else {
    blocks.emplace_back(std::move(table));
  }
  blocks.emplace_back(SheetText{ElseWords(inventory)});
  return blocks;
}

std::vector<SheetBlock> ReadingsChapter(const SheetSubject& subject) {
  SheetTable table{{{"Frage", 10}, {"Antwort", 16, true}, {"Beruht auf", 12}}, {}};
  for (const Question& question : Questions()) table.rows.push_back(ReadRow(subject, question));
  return {std::move(table)};
}

}  // namespace kelvo
