// What comes back from the database, the files beside it, a Terminal's tables and the command line:
// whatever is read is written and read again as the same.

#include "cli/options.h"
#include "inventory/equip_log.h"
#include "inventory/journal.h"
#include "inventory/journal_text.h"
#include "inventory/line_text.h"
#include "inventory/readings.h"
#include "keyboards/read_table.h"
#include "settings/macro_check.h"
#include "settings/macro_text.h"
#include "tests/fuzz/fuzz.h"

namespace kelvo::fuzz {
namespace {

// A table as it is kept, or as a Terminal tells it.
void ReadTables(Input input) {
  const std::string text(input.Rest());
  const AtPairs pairs = ReadAtTable(text);
  if (!pairs.empty()) Promise(ReadAtTable(CreateATTab(3, pairs).Text()) == pairs);
  const MatrixTable grid{
      .rows = RowsOf(255), .columns = ColumnsOf(255), .cells = ReadMatrixTable(text, RowsOf(255))};
  const std::string written = CreateTastTab(3, grid).Text();
  Promise(ReadMatrixTable(written, grid.rows) == grid.cells);
  const CheckedCell cell = CheckCell(text);
  Promise(cell.refusal != CellRefusal::None || CheckCell(cell.text).text == cell.text);
  if (const auto at = AtTableOf(text)) {
    Promise(ReadAtTable(CreateATTab(at->number, at->pairs).Text()) == at->pairs);
  }
  const auto matrix = MatrixTableOf(text);
  if (!matrix) return;
  std::string again = CreateTastTab(matrix->number, matrix->table).Text();
  again = again.substr(4, again.size() - 5);  // without ESC "EWK" and ";"
  Promise(MatrixTableOf(again) == matrix);
}

template <typename Value>
std::string WithoutEnd(std::string (*print)(const Value&), const Value& value) {
  std::string line = print(value);
  if (line.ends_with('\n')) line.pop_back();
  return line;
}

// What is read of a line gives a line that is read as the same.
template <typename Value>
void Repeat(std::optional<Value> (*read)(std::string_view), std::string (*print)(const Value&),
            const std::string& line, std::vector<Value>& values) {
  const auto value = read(line);
  if (!value) return;
  const std::string printed = WithoutEnd(print, *value);
  const auto again = read(printed);
  Promise(again && WithoutEnd(print, *again) == printed);
  values.push_back(*value);
}

void ReadFiles(Input input) {
  std::vector<JournalEntry> entries;
  std::vector<Reading> readings;
  Inventory inventory;
  for (const std::string& line : input.Lines()) {
    const std::string sealed = Sealed(line);
    Repeat(ReadJournalLine, JournalLine, sealed, entries);
    Repeat(ReadReadingLine, ReadingLine, sealed, readings);
  }
  for (const JournalEntry& entry : entries) {
    entry.terminal.address == 7 ? inventory.TakeUncertain(entry)
                                : inventory.Take(entry, entry.terminal.address == 255);
  }
}

void ReadRun(Input input) {
  const std::vector<std::string> lines = input.Lines();
  const std::vector<std::string_view> head(lines.begin(), lines.end());
  std::vector<EquipEntry> entries;
  for (const std::string& line : lines) Repeat(ReadEntryLine, EntryLine, line, entries);
  for (std::size_t length = 1; length <= head.size(); ++length) {
    const auto job =
        ReadJobLines({head.begin(), head.begin() + static_cast<std::ptrdiff_t>(length)});
    if (!job) continue;
    const std::vector<std::string> printed = JobLines(*job);
    const auto again = ReadJobLines({printed.begin(), printed.end()});
    Promise(again && JobLines(*again) == printed);
    EquipProgress progress(*job);
    for (const EquipEntry& entry : entries) progress.Take(entry);
  }
}

void ReadMakro(Input input) {
  const std::string text(input.Rest());
  std::size_t last = 0;
  for (const PlacedCommand& command : PlacedCommands(text)) {
    Promise(last <= command.begin && command.begin < command.next && command.next <= text.size());
    Promise(command.parameters <= command.end && command.end <= command.next);
    last = command.next;
    if (command.row != nullptr) PlacedValues(text, command);
  }
  last = 0;
  for (const Piece& piece : PiecesOf(text)) {
    Promise(last <= piece.begin && piece.begin + piece.length <= text.size());
    last = piece.begin + piece.length;
  }
  for (const Remark& remark : CheckMacro(text, {})) {
    Promise(remark.position + remark.length <= text.size());
  }
  CompletionAt(text, text.size() / 2);
  if (const auto item = ItemOf(text)) ItemBytes(*item);
}

void ReadCommandLine(Input input) {
  const std::vector<std::string> arguments = input.Lines();
  for (const std::string& list : arguments) {
    const auto addresses = cli::AddressesIn(list);
    if (!addresses) continue;
    std::string printed;
    for (const int address : *addresses) {
      Promise(address >= 0 && address <= 254);
      printed += (printed.empty() ? "" : ",") + std::to_string(address);
    }
    Promise(cli::AddressesIn(printed) == addresses);
  }
  const cli::ParsedArguments parsed = cli::ReadArguments(arguments);
  Promise(parsed.options || !parsed.text.empty());
}

}  // namespace
}  // namespace kelvo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo::fuzz;
  static constexpr decltype(&ReadTables) kParts[] = {ReadTables, ReadFiles, ReadRun, ReadMakro,
                                                     ReadCommandLine};
  Input input(data, size);
  const int part = input.Number(4);
  kParts[part](input);
  return 0;
}
