#include "inventory/equipment.h"

#include <algorithm>
#include <iterator>

#include "inventory/line_text.h"
#include "inventory/settings_trace.h"
#include "link/commands.h"
#include "link/control_characters.h"
#include "settings/macros.h"

namespace kelvo {
namespace {

constexpr std::string_view kFileHead = "kelvo-bestand 1";
constexpr std::string_view kOrigin = "herkunft";
constexpr std::string_view kSettings = "einstellungen";
constexpr std::string_view kItem = "posten";
constexpr std::string_view kMissing = "fehlt";
constexpr std::string_view kEnd = "ende";
constexpr std::size_t kItemFields = 5;
constexpr int kHighestNumber = 255;
constexpr int kAllSettings = 30;

int Rank(const ItemKey& key) {
  switch (key.kind) {
    case ItemKind::MatrixTable:
    case ItemKind::AtTable:
      return 0;
    case ItemKind::Macro:
      return key.number == 0 ? 2 : 1;
    case ItemKind::Bitmap:
      return 3;
    case ItemKind::Config:
      break;
  }
  return 4;
}

std::string Named(const Item& item) {
  return ItemText(item.key) + (item.name.empty() ? "" : " „" + item.name + "“");
}

std::string DoubtSentence(const ItemKey& key, const Doubt& doubt) {
  const std::string what = ItemText(key) + ": ";
  if (doubt.change != ItemChange::Kind::Written && doubt.event != Event::ByMacro) {
    return what + "Ob es gelöscht wurde, ist nicht bekannt.";
  }
  switch (doubt.event) {
    case Event::Refused:
      return what +
             "Das Terminal hat das letzte Schreiben abgelehnt; was dort liegt, ist nicht "
             "bekannt.";
    case Event::WrongSum:
      return what + "Beim letzten Schreiben ist etwas anderes angekommen.";
    case Event::ByMacro:
      return what + "Ein Makro hat es geändert; was dort liegt, ist nicht bekannt.";
    case Event::Acknowledged:
      return what + (doubt.at ? "Es wurde an Adresse " + std::to_string(*doubt.at) +
                                    " geschrieben; ob dieses Terminal sie hat, ist nicht bekannt."
                              : "Es wurde geschrieben, aber welches Terminal gewählt war, ist "
                                "nicht bekannt.");
    default:
      return what +
             "Das letzte Schreiben wurde nicht bestätigt; was dort liegt, ist nicht "
             "bekannt.";
  }
}

void TakeConfig(Equipment& equipment, const Item& item) {
  equipment.settings = Settings(item.command).Text();
  equipment.missing.emplace_back(
      equipment.settings.empty()
          ? "Konfiguration: Das Terminal hat seine damaligen Einstellungen gespeichert; welche das "
            "waren, ist nicht bekannt. Sie sind am neuen Terminal von Hand einzustellen und mit "
            "„Konfiguration speichern“ zu sichern."
          : "Konfiguration: Übertragen werden die Einstellungen, die von hier gesendet wurden, "
            "bevor "
            "das Terminal sie gespeichert hat (" +
                CommandMeaning(equipment.settings, kAllSettings) +
                "). Andere sind nicht bekannt, und ob es dazwischen aus war, auch nicht.");
}

// Nothing else may go out with an item.
bool IsOneCommand(std::string_view wire) {
  int commands = 0;
  bool alone = true;
  WalkCommands(wire, [&](const SentCommand& command) {
    alone = ++commands == 1 && command.text.empty();
    return alone;
  });
  return alone && commands == 1 && wire.starts_with(kEsc);
}

// The macro that a record would be written as; nothing, and why, when it cannot be.
std::optional<Item> MacroOf(const StoredRecord& record, std::string& why) {
  if (record.number < 0) {
    why = "hat keine Nummer im Terminal";
  } else if (record.number > kHighestNumber) {
    why = "hat die Nummer " + std::to_string(record.number) + "; im Terminal gehen sie von 0 bis " +
          std::to_string(kHighestNumber);
  } else if (record.wire.size() > kLongestMakro) {
    why = "ist zu lang für ein Makro";
  } else if (EtxPosition(record.wire) != 0) {
    why = "enthält das Zeichen 3, das ein Makro beendet";
  } else {
    return ItemOf(WriteMakro(record.number, record.wire).Text(), record.name);
  }
  return std::nullopt;
}

std::optional<Item> ItemOfRecord(const StoredRecord& record, std::string& why) {
  const bool matrix = record.typ == "MatrixTab";
  if (!matrix && record.typ != "ATTab") return MacroOf(record, why);
  auto item = ItemOf(record.wire, record.name, matrix ? ItemKind::MatrixTable : ItemKind::AtTable);
  const bool isTable =
      item && (item->key.kind == ItemKind::MatrixTable || item->key.kind == ItemKind::AtTable);
  if (!isTable || !IsOneCommand(record.wire)) {
    why = "enthält keine Tabelle mit einer Nummer von 0 bis 255";
    return std::nullopt;
  }
  return item;
}

std::string Line(std::string_view word, const std::string& field) {
  return std::string(word) + "\t" + field;
}

std::optional<ItemKind> KindNamed(std::string_view text) {
  using enum ItemKind;
  for (const ItemKind kind : {Config, Macro, MatrixTable, AtTable, Bitmap}) {
    if (ItemKindText(kind) == text) return kind;
  }
  return std::nullopt;
}

bool TakeLine(Equipment& equipment, std::string_view line) {
  const auto fields = SplitAt(line, '\t');
  if (fields.size() < 2) return false;
  if (fields[0] == kItem) {
    const std::optional<Item> item = ReadItemLine(fields);
    if (item) equipment.items.push_back(*item);
    return item.has_value();
  }
  const auto text = PlainText(fields[1]);
  if (!text) return false;
  if (fields[0] == kMissing) equipment.missing.push_back(*text);
  if (fields[0] == kOrigin) equipment.origin = *text;
  if (fields[0] != kSettings) return fields[0] == kMissing || fields[0] == kOrigin;
  const auto wire = PlainWire(fields[1]);
  equipment.settings = Settings(wire.value_or(std::string())).Text();
  return wire == equipment.settings;
}

}  // namespace

void SortForWriting(std::vector<Item>& items) {
  std::stable_sort(items.begin(), items.end(), [](const Item& one, const Item& other) {
    return std::pair(Rank(one.key), one.key) < std::pair(Rank(other.key), other.key);
  });
}

Equipment EquipmentOf(const Inventory& inventory, std::string origin) {
  Equipment equipment{std::move(origin), {}, {}, {}};
  for (const auto& [key, held] : inventory.Items()) {
    if (key.kind == ItemKind::Config) {
      TakeConfig(equipment, held.item);
      continue;
    }
    equipment.items.push_back(held.item);
    if (held.broadcast) {
      equipment.missing.push_back(Named(held.item) +
                                  ": Es wurde an alle zugleich geschrieben; ob dieses Terminal "
                                  "es bekommen hat, ist nicht bekannt.");
    }
  }
  for (const auto& [key, doubt] : inventory.Doubtful()) {
    equipment.missing.push_back(DoubtSentence(key, doubt));
  }
  if (!inventory.KnownEmptyBefore()) {
    equipment.missing.emplace_back(
        "Der Bestand ist nicht vollständig bekannt: Was im Terminal lag, bevor von hier "
        "geschrieben wurde, wird nicht übertragen.");
  }
  SortForWriting(equipment.items);
  return equipment;
}

Equipment EquipmentOf(const std::vector<StoredRecord>& records, std::string origin) {
  Equipment equipment{std::move(origin), {}, {}, {}};
  for (const StoredRecord& record : records) {
    std::string why;
    auto item = ItemOfRecord(record, why);
    if (item) {
      equipment.items.push_back(*std::move(item));
    } else {
      equipment.missing.push_back("„" + record.name + "“ " + why + ".");
    }
  }
  SortForWriting(equipment.items);
  return equipment;
}

std::vector<ItemConflict> Conflicts(const std::vector<Item>& items) {
  const auto indexOf = [&items](auto item) {
    return static_cast<std::size_t>(item - items.begin());
  };
  std::vector<ItemConflict> conflicts;
  for (auto one = items.begin(); one != items.end(); ++one) {
    const auto other = std::find_if(std::next(one), items.end(), [&one](const Item& item) {
      return SamePlace(one->key, item.key);
    });
    if (other == items.end()) continue;
    conflicts.push_back(
        {indexOf(one), indexOf(other),
         Named(*one) + " und " + Named(*other) + " haben denselben Platz im Terminal."});
  }
  return conflicts;
}

std::size_t LeastBytes(const Item& item) {
  const std::string_view content = ItemContent(item);
  switch (item.key.kind) {
    case ItemKind::Macro:
      return content.size();
    case ItemKind::Bitmap:
      return (content.size() - std::min(content.size(), content.rfind(',') + 1)) / 2;
    case ItemKind::Config:
      return 0;
    default:
      return 1 + static_cast<std::size_t>(std::count(content.begin(), content.end(), ','));
  }
}

std::size_t LeastBytes(const std::vector<Item>& items) {
  std::size_t bytes = 0;
  for (const Item& item : items) bytes += LeastBytes(item);
  return bytes;
}

std::string ItemLine(const Item& item) {
  return Line(kItem, ItemKindText(item.key.kind)) + "\t" + std::to_string(item.key.number) + "\t" +
         EscapedText(item.name) + "\t" + EscapedWire(item.command);
}

// What the command writes has to be what the line says.
std::optional<Item> ReadItemLine(const std::vector<std::string_view>& fields) {
  if (fields.size() != kItemFields || fields[0] != kItem) return std::nullopt;
  const auto kind = KindNamed(fields[1]);
  const auto name = PlainText(fields[3]);
  const auto command = PlainWire(fields[4]);
  if (!kind || !name || !command) return std::nullopt;
  auto item = ItemOf(*command, *name, kind);
  const bool same = item && item->key.kind == *kind && IsOneCommand(*command) &&
                    std::to_string(item->key.number) == fields[2];
  return same ? item : std::nullopt;
}

std::string EquipmentFile(const Equipment& equipment) {
  std::string file = Sealed(std::string(kFileHead)) + "\n";
  const auto add = [&file](const std::string& line) { file += Sealed(line) + "\n"; };
  add(Line(kOrigin, EscapedText(equipment.origin)));
  if (!equipment.settings.empty()) add(Line(kSettings, EscapedWire(equipment.settings)));
  for (const Item& item : equipment.items) add(ItemLine(item));
  for (const std::string& missing : equipment.missing) add(Line(kMissing, EscapedText(missing)));
  add(std::string(kEnd));
  return file;
}

std::optional<Equipment> ReadEquipmentFile(std::string_view file) {
  Equipment equipment;
  bool begun = false;
  for (std::string_view line : SplitAt(file, '\n')) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto inner = Unsealed(line);
    if (!inner) return std::nullopt;
    if (*inner == kEnd) return begun ? std::optional(equipment) : std::nullopt;
    if (begun ? !TakeLine(equipment, *inner) : *inner != kFileHead) return std::nullopt;
    begun = true;
  }
  return std::nullopt;  // its end is missing
}

}  // namespace kelvo
