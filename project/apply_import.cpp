#include <algorithm>
#include <map>

#include "inventory/journal.h"
#include "project/project_store.h"
#include "store/single_records.h"

namespace kelvo {
namespace {

using Change = ImportDone::Change;
using Row = std::vector<Value>;

std::string Named(const std::string& text, const std::string& what) { return text + " " + what; }

Row StoredRow(const Database& database, const char* table, std::int64_t key) {
  Statement statement(database, "select * from " + Quoted(table) + " where rowid = ?");
  statement.Bind(1, key);
  Row row;
  if (!statement.Step()) return row;
  for (int i = 0; i < statement.ColumnCount(); ++i) row.push_back(statement.Column(i));
  return row;
}

std::vector<std::string> ColumnsOf(const Database& database, const char* table) {
  const Statement statement(database, "select * from " + Quoted(table));
  std::vector<std::string> columns;
  columns.reserve(static_cast<std::size_t>(statement.ColumnCount()));
  for (int i = 0; i < statement.ColumnCount(); ++i) columns.push_back(statement.ColumnName(i));
  return columns;
}

using Assignments = std::vector<std::pair<std::string, Value>>;

Assignments AssignmentsOf(const ProjectRecord& record) {
  Assignments assignments;
  const auto fields = RowOf(record.kind).fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    assignments.emplace_back(fields[i].column, record.values[i]);
  }
  return assignments;
}

// What a database of another version has no field for must be as delivered. Only these records may
// lack one.
Assignments SingleAssignments(const Database& database, const ProjectRecord& record) {
  const KindRow& kind = RowOf(record.kind);
  const std::vector<std::string> columns = ColumnsOf(database, kind.table);
  const auto& delivered = DeliveredRecord(kind.table);
  Assignments assignments = AssignmentsOf(record);
  std::erase_if(assignments, [&](const auto& assigned) {
    if (std::count(columns.begin(), columns.end(), assigned.first) > 0) return false;
    const auto found = delivered.find(assigned.first);
    if (found != delivered.end() && found->second == assigned.second) return true;
    throw StoreError("Das Feld \"" + assigned.first + "\" der Tabelle \"" + kind.table +
                     "\" fehlt.");
  });
  return assignments;
}

Assignments AssignmentsOf(const Database& database, const ProjectRecord& record) {
  const bool single = RowOf(record.kind).identity == KindRow::Identity::Single;
  return single ? SingleAssignments(database, record) : AssignmentsOf(record);
}

// Of a record of which there is always one, what a project does not tell.
void AddDelivered(const Database& database, const KindRow& kind, Assignments& assignments) {
  const std::vector<std::string> columns = ColumnsOf(database, kind.table);
  for (const auto& [column, value] : DeliveredRecord(kind.table)) {
    const auto same = [&name = column](const auto& assigned) { return assigned.first == name; };
    if (std::any_of(assignments.begin(), assignments.end(), same)) continue;
    if (std::count(columns.begin(), columns.end(), column) > 0) {
      assignments.emplace_back(column, value);
    }
  }
}

void BindAll(Statement& statement, const Assignments& assignments) {
  int index = 0;
  for (const auto& [column, value] : assignments) statement.Bind(++index, value);
}

std::int64_t Insert(const Database& database, const char* table, const Assignments& assignments) {
  std::string columns;
  std::string marks;
  for (const auto& [column, value] : assignments) {
    columns += (columns.empty() ? "" : ", ") + Quoted(column);
    marks += marks.empty() ? "?" : ", ?";
  }
  Statement statement(database,
                      "insert into " + Quoted(table) + " (" + columns + ") values (" + marks + ")");
  BindAll(statement, assignments);
  statement.Step();
  return sqlite3_last_insert_rowid(database.Handle());
}

void Update(const Database& database, const char* table, const Assignments& assignments,
            std::int64_t key) {
  std::string pairs;
  for (const auto& [column, value] : assignments) {
    pairs += (pairs.empty() ? "" : ", ") + Quoted(column) + " = ?";
  }
  Statement statement(database, "update " + Quoted(table) + " set " + pairs + " where rowid = ?");
  BindAll(statement, assignments);
  statement.Bind(static_cast<int>(assignments.size()) + 1, key);
  statement.Step();
}

void Delete(const Database& database, const char* table, std::int64_t key) {
  Statement statement(database, "delete from " + Quoted(table) + " where rowid = ?");
  statement.Bind(1, key);
  statement.Step();
}

std::int64_t Asked(const Database& database, const std::string& query, const char* parameter) {
  Statement statement(database, query);
  if (parameter != nullptr) statement.Bind(1, std::string(parameter));
  statement.Step();
  const Value value = statement.Column(0);
  const auto* const number = std::get_if<std::int64_t>(&value);
  return number != nullptr ? *number : 0;
}

// What comes beside another one is told from it: by its name, or, of settings, by its number.
ProjectRecord BesideRecord(const Database& database, const ImportItem& item) {
  ProjectRecord record = *item.there;
  const KindRow& kind = RowOf(item.kind);
  if (kind.name) {
    record.values[*kind.name] = WithoutOuterBlanks(item.besideName);
  } else if (kind.number) {
    record.values[*kind.number] = Asked(database,
                                        "select max(" + Quoted(kind.fields[*kind.number].column) +
                                            ") from " + Quoted(kind.table),
                                        nullptr) +
                                  1;
  }
  return record;
}

void CheckUnchanged(const Database& database, const RecordHere& here) {
  const Row stored = StoredRow(database, RowOf(here.record.kind).table, here.key);
  if (stored.empty()) throw StoreConflict(StoreConflict::Kind::Gone);
  if (stored != here.row) throw StoreConflict(StoreConflict::Kind::Changed);
}

// A name stands for its record: what comes must not be the second that bears it.
void CheckNamesFree(const Database& database, const ImportPlan& plan) {
  std::multiset<NameKey> names;
  for (const RecordHere& one : RecordsHere(database)) names.insert(NameKeyOf(one.record));
  for (const ImportItem& item : plan.items) {
    const auto name = BroughtName(item);
    const NameKey key(item.kind, name.value_or(""));
    if (name && names.count(key) > plan.namesHere.count(key)) {
      throw StoreConflict(StoreConflict::Kind::Changed);
    }
  }
}

// Stores what was chosen, item by item.
class Importer {
 public:
  explicit Importer(const Database& database) : database_(database) {}

  Change Apply(const ImportItem& item) {
    const std::int64_t key = Store(item);
    const bool replaced = item.choice == ImportChoice::Take && item.here;
    return {item.kind, key, replaced ? item.here->row : Row(),
            StoredRow(database_, RowOf(item.kind).table, key),
            RecordText(item.there ? *item.there : item.here->record)};
  }

 private:
  // The key of the record that is there then.
  std::int64_t Store(const ImportItem& item) {
    const char* const table = RowOf(item.kind).table;
    if (item.choice == ImportChoice::Beside) return Add(BesideRecord(database_, item));
    if (!item.here) return Add(*item.result);
    CheckUnchanged(database_, *item.here);
    if (item.result) {
      Update(database_, table, AssignmentsOf(database_, *item.result), item.here->key);
    } else {
      Delete(database_, table, item.here->key);
    }
    return item.here->key;
  }

  std::int64_t Add(const ProjectRecord& record) {
    const KindRow& kind = RowOf(record.kind);
    Assignments assignments = AssignmentsOf(database_, record);
    if (*kind.typ != '\0') {
      assignments.emplace_back("typ", std::string(kind.typ));
      assignments.emplace_back("lfdnr", NextNumber(kind));
    }
    if (kind.identity == KindRow::Identity::Single) AddDelivered(database_, kind, assignments);
    return Insert(database_, kind.table, assignments);
  }

  // As of a record that the operator saves: how many there are. To count them each time would take
  // long.
  std::int64_t NextNumber(const KindRow& kind) {
    const auto known = counts_.find(kind.kind);
    if (known != counts_.end()) return ++known->second;
    const std::int64_t count =
        Asked(database_, "select count(*) from Makro where typ = ?", kind.typ);
    return counts_[kind.kind] = count;
  }

  const Database& database_;
  std::map<ProjectKind, std::int64_t> counts_;
};

void TakeBack(const Database& database, const Change& change) {
  const char* const table = RowOf(change.kind).table;
  if (StoredRow(database, table, change.key) != change.after) {
    throw StoreError(Named(
        change.text, change.after.empty()
                         ? "ist inzwischen durch einen anderen Satz ersetzt; der Import wurde "
                           "nicht zurückgenommen."
                         : "wurde seit dem Import geändert oder gelöscht; der Import wurde "
                           "nicht zurückgenommen."));
  }
  if (change.before.empty()) return Delete(database, table, change.key);
  Assignments assignments;
  const std::vector<std::string> columns = ColumnsOf(database, table);
  for (std::size_t i = 0; i < columns.size() && i < change.before.size(); ++i) {
    assignments.emplace_back(columns[i], change.before[i]);
  }
  if (!change.after.empty()) return Update(database, table, assignments, change.key);
  assignments.emplace_back("rowid", change.key);
  Insert(database, table, assignments);
}

using JournalStep = std::optional<std::string> (WriteJournal::*)(const std::vector<JournalEntry>&);

// The journal is no part of the database: it is changed last, and back where the database fails
// even then.
void CommitWith(Transaction& transaction, WriteJournal& journal,
                const std::vector<JournalEntry>& entries, JournalStep there, JournalStep back) {
  if (entries.empty()) return transaction.Commit();
  if (const auto reason = (journal.*there)(entries)) {
    throw StoreError("Der Bestand kann nicht geschrieben werden: " + *reason +
                     ". Es wurde nichts geändert.");
  }
  try {
    transaction.Commit();
  } catch (const StoreError&) {
    (journal.*back)(entries);
    throw;
  }
}

}  // namespace

ImportDone ApplyImport(const Database& database, WriteJournal& journal, const ImportPlan& plan) {
  Transaction transaction(database);
  CheckNamesFree(database, plan);
  Importer importer(database);
  ImportDone done;
  for (const ImportItem& item : plan.items) {
    if (item.choice != ImportChoice::Take && item.choice != ImportChoice::Beside) continue;
    done.changes.push_back(importer.Apply(item));
  }
  if (plan.takeInventory) done.inventory = plan.inventory;
  CommitWith(transaction, journal, done.inventory, &WriteJournal::Insert, &WriteJournal::Remove);
  return done;
}

void UndoImport(const Database& database, WriteJournal& journal, const ImportDone& done) {
  Transaction transaction(database);
  for (auto change = done.changes.rbegin(); change != done.changes.rend(); ++change) {
    TakeBack(database, *change);
  }
  CommitWith(transaction, journal, done.inventory, &WriteJournal::Remove, &WriteJournal::Insert);
}

}  // namespace kelvo
