#include <algorithm>

#include "inventory/journal.h"
#include "project/project_store.h"

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

// Numbered as a record is that the operator saves.
std::int64_t InsertRecord(const Database& database, const ProjectRecord& record) {
  const KindRow& kind = RowOf(record.kind);
  Assignments assignments = AssignmentsOf(record);
  if (*kind.typ != '\0') {
    assignments.emplace_back("typ", std::string(kind.typ));
    assignments.emplace_back("lfdnr",
                             Asked(database, "select count(*) from Makro where typ = ?", kind.typ));
  }
  return Insert(database, kind.table, assignments);
}

// What comes beside another one is told from it: by its name, or, of settings, by its number.
ProjectRecord BesideRecord(const Database& database, const ImportItem& item) {
  ProjectRecord record = *item.there;
  const KindRow& kind = RowOf(item.kind);
  if (kind.name) {
    record.values[*kind.name] = item.besideName;
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

// The key of the record that is there then.
std::int64_t Store(const Database& database, const ImportItem& item) {
  const char* const table = RowOf(item.kind).table;
  if (item.choice == ImportChoice::Beside) {
    return InsertRecord(database, BesideRecord(database, item));
  }
  if (!item.here) return InsertRecord(database, *item.result);
  CheckUnchanged(database, *item.here);
  if (item.result) {
    Update(database, table, AssignmentsOf(*item.result), item.here->key);
  } else {
    Delete(database, table, item.here->key);
  }
  return item.here->key;
}

Change Applied(const Database& database, const ImportItem& item) {
  const std::int64_t key = Store(database, item);
  const bool replaced = item.choice == ImportChoice::Take && item.here;
  return {item.kind, key, replaced ? item.here->row : Row(),
          StoredRow(database, RowOf(item.kind).table, key),
          RecordText(item.there ? *item.there : item.here->record)};
}

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
  ImportDone done;
  for (const ImportItem& item : plan.items) {
    if (item.choice != ImportChoice::Take && item.choice != ImportChoice::Beside) continue;
    done.changes.push_back(Applied(database, item));
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
