#include "sheet/statements.h"

#include <algorithm>
#include <map>

#include "inventory/statement_words.h"
#include "inventory/terminal_name.h"
#include "sheet/characters.h"

namespace kelvo {
namespace {

bool Contains(const std::vector<ItemKind>& kinds, ItemKind kind) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

using Cells = std::vector<std::string>;

Cells HeldCells(const SheetSubject& subject, const Held& held) {
  const bool config = held.item.key.kind == ItemKind::Config;
  return {config ? "–" : std::to_string(held.item.key.number),
          config                   ? "–"
          : held.item.name.empty() ? "ohne Namen"
                                   : PrintedWords(held.item.name),
          config ? "–" : std::to_string(ItemBytes(held.item)), HeldBasis(subject.inventory, held)};
}

Cells DoubtCells(const ItemKey& key, const Doubt& doubt) {
  const bool config = key.kind == ItemKind::Config;
  const bool named = doubt.before && !doubt.before->item.name.empty();
  return {config ? "–" : std::to_string(key.number),
          named ? PrintedWords(doubt.before->item.name) : "nicht bekannt",
          config || !doubt.before ? "–" : std::to_string(ItemBytes(doubt.before->item)),
          DoubtBasis(doubt)};
}

}  // namespace

std::string SheetName(const SheetTerminal& terminal) {
  if (terminal.id.address == kUnknownAddress) return "Terminal ohne Namen";
  return PrintedWords(TerminalName(terminal.name, terminal.id.address));
}

SheetSubject SubjectOf(const SheetSources& sources, std::size_t index) {
  return {sources, sources.terminals[index], sources.inventories[index]};
}

std::string HeldBasis(const Inventory& inventory, const Held& held) {
  std::string basis = held.broadcast ? "an alle geschrieben und " : "geschrieben und ";
  basis += ProofWords(held.proof) + " " + LocalMoment(held.written);
  if (!held.broadcast && !inventory.Trusts(held)) {
    basis += "; gilt als unbekannt, der gelesene freie Platz widerspricht";
  }
  return basis;
}

std::string DoubtBasis(const Doubt& doubt) {
  std::string basis = "ungewiss: " + RestsWords(doubt) + ", " + LocalMoment(doubt.time);
  if (doubt.before) {
    basis += "; davor geschrieben und " + ProofWords(doubt.before->proof) + " " +
             LocalMoment(doubt.before->written);
  }
  return basis;
}

std::string ReadBasis(JournalTime time) { return "gelesen " + LocalMoment(time); }

std::string QuotedName(const std::string& name) {
  return name.empty() ? std::string() : " „" + PrintedWords(name) + "“";
}

std::string AgainstWords(const SheetSubject& subject, const Held& held) {
  const std::vector<StoredRecord>& stored = subject.sources.records;
  const Against against = AgainstDatabase(subject.inventory, held, stored);
  const auto record = std::find_if(stored.begin(), stored.end(), [&](const StoredRecord& some) {
    return some.id == against.record;
  });
  const bool other = record != stored.end() && record->name != held.item.name;
  return AgainstText(against.kind) + (other ? QuotedName(record->name) : "");
}

SheetTable ItemTable(const SheetSubject& subject, const std::vector<ItemKind>& kinds) {
  SheetTable table{{{"Nr", 2}, {"Name", 8}, {"Zeichen", 4}, {"Beruht auf", 16}, {"Datenbank", 9}},
                   {}};
  const bool several = kinds.size() > 1;
  if (several) {
    table.columns.pop_back();
    table.columns.insert(table.columns.begin(), {"Art", 6});
  }
  std::map<ItemKey, Cells> rows;
  for (const auto& [key, held] : subject.inventory.Items()) {
    if (Contains(kinds, key.kind)) rows[key] = HeldCells(subject, held);
  }
  for (const auto& [key, doubt] : subject.inventory.Doubtful()) {
    if (Contains(kinds, key.kind)) rows[key] = DoubtCells(key, doubt);
  }
  for (auto& [key, cells] : rows) {
    if (several) {
      cells.insert(cells.begin(), ItemKindText(key.kind));
    } else {
      const Held* const held = subject.inventory.At(key);
      cells.push_back(held == nullptr ? "–" : AgainstWords(subject, *held));
    }
    table.rows.push_back(std::move(cells));
  }
  return table;
}

std::vector<SheetBlock> ItemHead(const SheetSubject& subject, const Held& held) {
  const bool starts = held.item.key.kind == ItemKind::Macro && held.item.key.number == 0;
  return {SheetHeading{3, ItemText(held.item.key) + QuotedName(held.item.name) +
                              (starts ? ", startet von selbst" : "")},
          SheetText{"Beruht auf: " + HeldBasis(subject.inventory, held) +
                        ". Datenbank: " + AgainstWords(subject, held) + ".",
                    true}};
}

bool KnowsAny(const Inventory& inventory, ItemKind kind) {
  const auto is = [kind](const auto& entry) { return entry.first.kind == kind; };
  return std::any_of(inventory.Items().begin(), inventory.Items().end(), is) ||
         std::any_of(inventory.Doubtful().begin(), inventory.Doubtful().end(), is);
}

std::string ElseWords(const Inventory& inventory) {
  if (inventory.KnownEmptyBefore() && inventory.Erased()) {
    return "Sonst liegt im EEPROM nichts: Es wurde von hier gelöscht (bestätigt " +
           LocalMoment(*inventory.Erased()) + ").";
  }
  return "Was sonst im EEPROM liegt, ist nicht bekannt: Ein Terminal gibt es nicht zurück.";
}

}  // namespace kelvo
