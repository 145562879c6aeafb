#include "sheet/record_chapters.h"

#include <algorithm>

#include "settings/macros.h"
#include "sheet/characters.h"
#include "sheet/keyboard_chapters.h"

namespace kelvo {
namespace {

constexpr char kDrawing[] = "Grafik";

std::string TypText(const StoredRecord& record) {
  const auto kind = KindOfRecord(record.typ);
  return kind ? ItemKindText(*kind) : record.typ == kDrawing ? "Zeichnung" : record.typ;
}

std::string NumberText(const StoredRecord& record) {
  return record.number < 0 ? "keine" : std::to_string(record.number);
}

bool LiesIn(const Inventory& inventory, const StoredRecord& record) {
  return StateOf(inventory, record) == InTerminal::Same;
}

std::string NameOf(const StoredRecord& record) {
  return record.name.empty() ? "ohne Namen" : PrintedWords(record.name);
}

// Other records' texts, for the macros that one calls.
MacroTexts TextsOf(const std::vector<StoredRecord>& records) {
  return [&records](int number) -> std::optional<std::string> {
    const auto found = std::find_if(records.begin(), records.end(), [&](const auto& record) {
      return record.number == number && record.typ == RecordTyp(ItemKind::Macro);
    });
    return found == records.end() ? std::nullopt : std::optional(found->wire);
  };
}

// "3,80,31,D" of the whole command.
std::string TableIn(const StoredRecord& record) {
  const auto item = ItemOf(record.wire);
  if (!item) return record.wire;
  return std::to_string(item->key.number) + "," + std::string(ItemContent(*item));
}

}  // namespace

std::vector<const StoredRecord*> RecordsElsewhere(const SheetSources& sources) {
  std::vector<const StoredRecord*> records;
  for (const StoredRecord& record : sources.records) {
    const bool known =
        std::any_of(sources.inventories.begin(), sources.inventories.end(),
                    [&record](const Inventory& inventory) { return LiesIn(inventory, record); });
    if (!known && record.typ != kDrawing) records.push_back(&record);
  }
  std::stable_sort(records.begin(), records.end(), [](const auto* one, const auto* other) {
    return std::pair(one->typ, one->number) < std::pair(other->typ, other->number);
  });
  return records;
}

std::vector<const StoredRecord*> DrawingsIn(const SheetSources& sources) {
  std::vector<const StoredRecord*> drawings;
  for (const StoredRecord& record : sources.records) {
    if (record.typ == kDrawing) drawings.push_back(&record);
  }
  return drawings;
}

SheetTable RecordTable(const std::vector<const StoredRecord*>& records) {
  SheetTable table{{{"Art", 6}, {"Nr", 3}, {"Name", 18}, {"Zeichen", 4}, {"Beruht auf", 6}}, {}};
  for (const StoredRecord* const record : records) {
    table.rows.push_back({TypText(*record), NumberText(*record), NameOf(*record),
                          std::to_string(record->wire.size()), kDatabaseBasis});
  }
  return table;
}

std::vector<SheetBlock> RecordBlocks(const SheetSources& sources, const StoredRecord& record,
                                     const TextPrinter& printer) {
  const auto kind = KindOfRecord(record.typ);
  const std::string number = record.number < 0 ? "" : " " + std::to_string(record.number);
  std::vector<SheetBlock> blocks{
      SheetHeading{3, TypText(record) + number + QuotedName(record.name)},
      SheetText{std::string("Beruht auf: ") + kDatabaseBasis + ".", true}};
  if (kind == ItemKind::Macro && record.wire.size() > kLongestMakro) {
    blocks.emplace_back(SheetText{"Zu lang für ein Makro; die Befehle stehen hier nicht."});
  }
  const MacroTexts macros = TextsOf(sources.records);
  std::vector<SheetBlock> content;
  if (kind == ItemKind::MatrixTable) {
    const auto wiring = sources.wiring.find(record.id);
    const bool wired = wiring != sources.wiring.end();
    content = KeypadBlocks(TableIn(record), wired ? std::optional(wiring->second) : std::nullopt,
                           "Datenbank, dieser Satz");
  } else if (kind == ItemKind::AtTable) {
    content = RecodingBlocks(TableIn(record));
  } else if (kind && record.wire.size() <= kLongestMakro) {
    content = printer.Macro(record.wire, macros);
  } else {
    content = printer.Drawing(record.wire, macros);
  }
  for (SheetBlock& block : content) blocks.push_back(std::move(block));
  return blocks;
}

std::vector<SheetBlock> CharactersChapter() {
  constexpr int kControls = 33;
  constexpr int kDeleteCode = 127;
  constexpr int kHardBlankCode = 160;
  constexpr int kSoftHyphenCode = 173;
  SheetTable table{{{"Zeichen", 4, true}, {"Code", 5}, {"Name", 8}}, {}};
  const auto add = [&table](int code) {
    table.rows.push_back({PrintedText(std::string(1, static_cast<char>(code))), CodeText(code),
                          CharacterName(code)});
  };
  for (int code = 0; code < kControls; ++code) add(code);
  for (const int code : {kDeleteCode, kHardBlankCode, kSoftHyphenCode}) add(code);
  return {SheetText{"Steuerzeichen in Texten stehen als diese Zeichen, die Codes 128 bis 159 als "
                    "<80> bis <9F>. Alle übrigen stehen, wie sie sind (Latin-1)."},
          std::move(table)};
}

}  // namespace kelvo
