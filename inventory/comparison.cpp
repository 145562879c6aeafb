#include "inventory/comparison.h"

#include <algorithm>
#include <map>
#include <set>

#include "inventory/setting_check.h"
#include "inventory/statement_words.h"
#include "link/commands.h"
#include "settings/macros.h"
#include "settings/text_mode.h"

namespace kelvo {
namespace {

ComparisonRow RowFor(const TerminalId& terminal, std::string what) {
  ComparisonRow row;
  row.terminal = terminal;
  row.what = std::move(what);
  return row;
}

// What was read before it was set tells nothing of it.
void CompareWithSent(ComparisonRow& row, const SettingSent& sent) {
  row.sent = sent.value;
  if (*row.readAt < sent.time) {
    row.words = "seit dem Lesen neu gesendet";
    return;
  }
  row.compared = sent.agrees ? Compared::Same : Compared::Different;
  row.words = sent.agrees ? "wie zuletzt gesendet" : "anders als zuletzt gesendet";
}

// The free bytes may have been asked elsewhere since, or there alone.
void TakeKnownRoom(ComparisonRow& row, const Room& room) {
  const auto& known = room.LastReading();
  if (!known || (row.readAt && known->time <= *row.readAt)) return;
  row.read = std::to_string(known->bytes);
  row.readAt = known->time;
  if (row.silentAt && known->time <= *row.silentAt) return;
  row.silentAt.reset();
  row.words.clear();
}

ComparisonRow ReadRow(const TerminalId& terminal, const Question& question,
                      const Readings& readings, const Settings& settings) {
  ComparisonRow row = RowFor(terminal, question.what);
  const Reading* const last = readings.Last(terminal, question.query);
  const Silence* const silence = readings.SilenceOf(terminal, question.query);
  row.words = last == nullptr ? "hier nicht gelesen" : "";
  if (last != nullptr) row.read = last->reply;
  if (last != nullptr) row.readAt = last->time;
  if (silence != nullptr) {
    row.silentAt = silence->time;
    row.words = silence->why;
  }
  if (last == nullptr || silence != nullptr) return row;
  const Reading* const cursor = readings.Last(terminal, CommandName::AskCursor);
  const int kind = cursor == nullptr ? 0 : ReadDigit(cursor->reply);
  const auto sent = LastSet(settings, question.query, last->reply, kind);
  if (sent) CompareWithSent(row, *sent);
  const Reading* const before = readings.Before(terminal, question.query);
  if (!question.lasting || before == nullptr) return row;
  const bool other = before->reply != last->reply;
  if (other) row.readBefore = before->reply;
  row.compared = other ? Compared::Different : Compared::Same;
  row.words = other ? "anders als zuvor gelesen" : "wie zuvor gelesen";
  return row;
}

const StoredRecord* RecordOf(const std::vector<StoredRecord>& records, std::int64_t id) {
  const auto record = std::find_if(records.begin(), records.end(),
                                   [id](const StoredRecord& some) { return some.id == id; });
  return record == records.end() ? nullptr : &*record;
}

ComparisonRow HeldRow(const TerminalId& terminal, const Inventory& inventory, const Held& held,
                      const std::vector<StoredRecord>& records) {
  ComparisonRow row = RowFor(terminal, ItemText(held.item.key));
  row.written = held;
  const Against against = AgainstDatabase(inventory, held, records);
  const StoredRecord* const record = RecordOf(records, against.record);
  if (record != nullptr) row.database = record->name;
  row.words = AgainstText(against.kind);
  switch (against.kind) {
    case Against::Kind::Same:
      row.compared = Compared::Same;
      break;
    case Against::Kind::Changed:
      row.order = OrderOf(*record, held.item.key);
      [[fallthrough]];
    case Against::Kind::NotInDatabase:
      row.compared = Compared::Different;
      break;
    case Against::Kind::Unknown:
      row.compared = Compared::Unknown;
      break;
  }
  return row;
}

// A record that has a number, of a kind that lies in the Terminal as it is.
std::optional<ItemKey> KnownKeyOf(const StoredRecord& record) {
  const std::optional<ItemKind> kind = KindOfRecord(record.typ);
  if (!kind || record.number < 0 || record.number > 255) return std::nullopt;
  return ItemKey{*kind, record.number};
}

const StoredRecord* FirstOf(const std::vector<StoredRecord>& records, const ItemKey& key) {
  const auto record =
      std::find_if(records.begin(), records.end(),
                   [&key](const StoredRecord& some) { return KnownKeyOf(some) == key; });
  return record == records.end() ? nullptr : &*record;
}

ComparisonRow RecordRow(const TerminalId& terminal, const Inventory& inventory,
                        const StoredRecord& record, const ItemKey& key) {
  ComparisonRow row = RowFor(terminal, ItemText(key));
  row.database = record.name;
  const bool absent = StateOf(inventory, record) == InTerminal::Absent;
  row.compared = absent ? Compared::Different : Compared::Unknown;
  row.words = absent ? "nicht im Terminal" : "unbekannt";
  row.offer = OrderOf(record, key);
  return row;
}

// Writing it anew is what takes the doubt away. What was written last stands there with its record,
// and without one the first record of that number.
ComparisonRow DoubtRow(const TerminalId& terminal, const Inventory& inventory, const ItemKey& key,
                       const Doubt& doubt, const std::vector<StoredRecord>& records) {
  ComparisonRow row = RowFor(terminal, ItemText(key));
  row.compared = Compared::Unknown;
  row.uncertain = true;
  row.words = "ungewiss: " + RestsWords(doubt);
  row.written = doubt.before;
  const StoredRecord* record =
      doubt.before ? RecordOf(records, AgainstDatabase(inventory, *doubt.before, records).record)
                   : nullptr;
  if (record == nullptr) record = FirstOf(records, key);
  if (record == nullptr) return row;
  row.record = record->id;
  row.database = record->name;
  row.offer = OrderOf(*record, key);
  return row;
}

// By kind and number, whatever is known of them.
std::vector<ComparisonRow> ItemRows(const TerminalId& terminal, const Inventory& inventory,
                                    const std::vector<StoredRecord>& records) {
  std::multimap<ItemKey, ComparisonRow> sorted;
  for (const auto& [key, held] : inventory.Items()) {
    sorted.emplace(key, HeldRow(terminal, inventory, held, records));
  }
  for (const auto& [key, doubt] : inventory.Doubtful()) {
    sorted.emplace(key, DoubtRow(terminal, inventory, key, doubt, records));
  }
  std::set<std::int64_t> shown;
  for (const auto& [key, row] : sorted) shown.insert(row.record);
  for (const StoredRecord& record : records) {
    const std::optional<ItemKey> key = KnownKeyOf(record);
    if (!key || shown.contains(record.id)) continue;
    // Where something lies, a record that is another one may be wanted in its place.
    const bool other = StateOf(inventory, record) == InTerminal::Absent;
    if (inventory.Items().contains(*key) && !other) continue;
    sorted.emplace(*key, RecordRow(terminal, inventory, record, *key));
  }
  std::vector<ComparisonRow> rows;
  for (auto& [key, row] : sorted) rows.push_back(std::move(row));
  return rows;
}

}  // namespace

std::vector<ComparisonRow> Compare(const TerminalId& terminal, const Inventory& inventory,
                                   const Readings& readings,
                                   const std::vector<StoredRecord>& records,
                                   const Settings& settings) {
  std::vector<ComparisonRow> rows;
  for (const Question& question : Questions()) {
    rows.push_back(ReadRow(terminal, question, readings, settings));
    if (question.query == CommandName::AskFreeBytes) {
      TakeKnownRoom(rows.back(), inventory.FreeBytes());
      const bool known = rows.back().readAt && !rows.back().silentAt;
      if (known && inventory.FreeBytes().Changed()) rows.back().words = "seither geschrieben";
    }
  }
  for (ComparisonRow& row : ItemRows(terminal, inventory, records)) rows.push_back(std::move(row));
  return rows;
}

std::optional<WriteOrder> OrderOf(const StoredRecord& record, const ItemKey& key) {
  WriteOrder order;
  if (key.kind == ItemKind::Macro) {
    if (record.wire.size() > kLongestMakro || EtxPosition(record.wire) != 0) return std::nullopt;
    order.item = {key, WriteMakro(key.number, record.wire).Text(), record.name};
    order.frame.room = record.wire.size();
    return order;
  }
  const std::optional<Item> item = ItemOf(record.wire, record.name, key.kind);
  if (!item || item->key != key) return std::nullopt;
  order.item = *item;
  order.frame.room = 0;  // the Terminal itself refuses a table that is too large
  return order;
}

}  // namespace kelvo
