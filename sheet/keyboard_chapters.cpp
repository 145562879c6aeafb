#include "sheet/keyboard_chapters.h"

#include <algorithm>

#include "base/val.h"
#include "inventory/settings_trace.h"
#include "keyboards/key_codes.h"
#include "keyboards/read_table.h"
#include "sheet/characters.h"

namespace kelvo {
namespace {

constexpr int kAllLines = 255;
constexpr char kNoKey[] = "–";
constexpr char kNotWired[] = "·";

using Cell = SheetGrid::Cell;

// Row 0 hangs on the highest line of its port.
Cell RowTitle(int row) {
  return {"Zeile " + std::to_string(row), "P0, Leitung " + std::to_string(kMatrixLines - 1 - row)};
}
Cell ColumnTitle(int column) {
  return {"Spalte " + std::to_string(column), "P1, Leitung " + std::to_string(column)};
}

Cell KeyCell(const std::string& cell) {
  if (cell.empty()) return {kNoKey};
  const int code = RoundToEven(HexField(CellCode(cell)));
  return {CharacterName(code), CodeText(code)};
}

SheetGrid GridOf(const MatrixTable& table) {
  SheetGrid grid;
  for (int column = 0; column < kMatrixLines; ++column) {
    grid.columns.push_back(ColumnTitle(column));
  }
  for (int row = 0; row < kMatrixLines; ++row) {
    std::vector<Cell> cells;
    for (int column = 0; column < kMatrixLines; ++column) {
      const bool wired = table.rows[static_cast<std::size_t>(row)] &&
                         table.columns[static_cast<std::size_t>(column)];
      const auto key = static_cast<std::size_t>(KeyIndex(row, column));
      const bool hidden = !wired && table.cells[key].empty();
      cells.push_back(hidden ? Cell{kNotWired} : KeyCell(table.cells[key]));
    }
    grid.rows.emplace_back(RowTitle(row), std::move(cells));
  }
  return grid;
}

std::string Listed(const WiredLines& wired, const std::function<int(int)>& line) {
  std::string text;
  for (int i = 0; i < kMatrixLines; ++i) {
    if (!wired[static_cast<std::size_t>(i)]) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(i) + " (Leitung " +
            std::to_string(line(i)) + ")";
  }
  return text.empty() ? "keine" : text;
}

std::vector<SheetBlock> WiringWords(const MatrixTable& table, const std::string& basis) {
  const auto reversed = [](int row) { return kMatrixLines - 1 - row; };
  return {SheetText{"Zeilen an den Ausgängen P0: " + Listed(table.rows, reversed) + "."},
          SheetText{"Spalten an den Eingängen P1: " +
                    Listed(table.columns, [](int column) { return column; }) + "."},
          SheetText{"Verdrahtung: " + basis + ". „" + kNotWired + "“ heißt nicht verdrahtet, „" +
                        kNoKey + "“ eine Kreuzung ohne Taste (Code 255).",
                    true}};
}

// What the saved configuration tells the Terminal of its lines.
std::optional<SheetWiring> ConfiguredWiring(const SheetSubject& subject) {
  const Held* const config = subject.inventory.At({ItemKind::Config, 0});
  if (config == nullptr) return std::nullopt;
  std::optional<SheetWiring> wiring;
  WalkCommands(Settings(config->item.command).Text(), [&wiring](const SentCommand& command) {
    if (command.row->name != CommandName::SetMatrixConfig) return true;
    const std::vector<std::string_view> fields = TableFields(command.parameters);
    constexpr std::size_t kInputs = 3;
    constexpr std::size_t kOutputs = 4;
    if (fields.size() <= kOutputs) return true;
    wiring = {kAllLines - Val(fields[kOutputs]), kAllLines - Val(fields[kInputs])};
    return true;
  });
  return wiring;
}

std::string TableText(const Held& held) {
  return std::to_string(held.item.key.number) + "," + std::string(ItemContent(held.item));
}

void AddHeldKeypad(std::vector<SheetBlock>& blocks, const SheetSubject& subject, const Held& held) {
  for (SheetBlock& block : ItemHead(subject, held)) blocks.push_back(std::move(block));
  const Against against = AgainstDatabase(subject.inventory, held, subject.sources.records);
  const auto stored = subject.sources.wiring.find(against.record);
  const bool same = against.kind == Against::Kind::Same && stored != subject.sources.wiring.end();
  const auto wiring = same ? std::optional(stored->second) : ConfiguredWiring(subject);
  const std::string basis =
      same ? "Datenbank, Satz mit demselben Inhalt" : "aus der gespeicherten Konfiguration";
  for (SheetBlock& block : KeypadBlocks(TableText(held), wiring, basis)) {
    blocks.push_back(std::move(block));
  }
}

void AddHeldRecoding(std::vector<SheetBlock>& blocks, const SheetSubject& subject,
                     const Held& held) {
  for (SheetBlock& block : ItemHead(subject, held)) blocks.push_back(std::move(block));
  for (SheetBlock& block : RecodingBlocks(TableText(held))) blocks.push_back(std::move(block));
}

// What a Terminal names in place of its active table.
constexpr std::string_view kNoTable = "leer";

// The table that the Terminal has told, or that nobody has asked for it.
void AddRead(std::vector<SheetBlock>& blocks, const SheetSubject& subject, CommandName query,
             const std::function<std::vector<SheetBlock>(const std::string& reply)>& show) {
  const Reading* const last = subject.sources.readings->Last(subject.terminal.id, query);
  blocks.emplace_back(SheetHeading{3, "Aktive Tabelle, wie das Terminal sie nennt"});
  if (last == nullptr) {
    blocks.emplace_back(SheetText{"Die aktive Tabelle ist nicht gelesen."});
    return;
  }
  blocks.emplace_back(SheetText{"Beruht auf: " + ReadBasis(last->time) + ".", true});
  if (last->reply == kNoTable) {
    blocks.emplace_back(SheetText{"Es ist keine Tabelle aktiv."});
    return;
  }
  for (SheetBlock& block : show(last->reply)) blocks.push_back(std::move(block));
}

// All tables of a keyboard, those in doubt too.
void AddTables(std::vector<SheetBlock>& blocks, const SheetSubject& subject, ItemKind kind,
               void (*add)(std::vector<SheetBlock>&, const SheetSubject&, const Held&)) {
  if (!KnowsAny(subject.inventory, kind)) {
    blocks.emplace_back(
        SheetText{"Von hier geschrieben liegt keine Tabelle dieser Tastatur dort."});
  } else {
    blocks.emplace_back(ItemTable(subject, {kind}));
  }
  blocks.emplace_back(SheetText{ElseWords(subject.inventory)});
  for (const auto& [key, held] : subject.inventory.Items()) {
    if (key.kind == kind) add(blocks, subject, held);
  }
}

}  // namespace

std::vector<SheetBlock> KeypadBlocks(std::string_view table,
                                     const std::optional<SheetWiring>& wiring,
                                     const std::string& wiringBasis) {
  std::optional<ReadMatrix> read = MatrixTableOf(table);
  if (!read) {
    return {SheetText{"Die Tabelle hat nicht die Form eines Tastenfelds; ihr Text ist „" +
                      PrintedText(table) + "“."}};
  }
  std::string basis = wiringBasis;
  if (wiring) {
    read->table.rows = RowsOf(wiring->outputMask);
    read->table.columns = ColumnsOf(wiring->inputMask);
  } else {
    basis = "aus den Codes errechnet, weil sie sonst nicht bekannt ist";
  }
  std::vector<SheetBlock> blocks{GridOf(read->table)};
  for (SheetBlock& block : WiringWords(read->table, basis)) blocks.push_back(std::move(block));
  return blocks;
}

std::vector<SheetBlock> RecodingBlocks(std::string_view table) {
  const std::optional<ReadAt> read = AtTableOf(table);
  if (!read) {
    return {
        SheetText{"Die Tabelle ändert keine Taste oder hat nicht die Form einer "
                  "Umkodierung; ihr Text ist „" +
                  PrintedText(table) + "“."}};
  }
  SheetTable keys{{{"Taste", 8}, {"Code", 6}, {"sendet", 8}, {"Code", 6}}, {}};
  for (const AtPair& pair : read->pairs) {
    keys.rows.push_back({CharacterName(pair.oldCode), CodeText(pair.oldCode),
                         CharacterName(pair.newCode), CodeText(pair.newCode)});
  }
  return {std::move(keys)};
}

std::vector<SheetBlock> MatrixChapter(const SheetSubject& subject) {
  std::vector<SheetBlock> blocks;
  AddTables(blocks, subject, ItemKind::MatrixTable, AddHeldKeypad);
  AddRead(blocks, subject, CommandName::AskMatrixTable, [&subject](const std::string& reply) {
    return KeypadBlocks(reply, ConfiguredWiring(subject), "aus der gespeicherten Konfiguration");
  });
  return blocks;
}

std::vector<SheetBlock> AtChapter(const SheetSubject& subject) {
  std::vector<SheetBlock> blocks;
  AddTables(blocks, subject, ItemKind::AtTable, AddHeldRecoding);
  AddRead(blocks, subject, CommandName::AskAtTable,
          [](const std::string& reply) { return RecodingBlocks(reply); });
  return blocks;
}

}  // namespace kelvo
