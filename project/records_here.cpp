#include <algorithm>
#include <string_view>

#include "project/project_store.h"
#include "store/single_records.h"

namespace kelvo {
namespace {

// What the table does not have is as delivered.
Value FieldOf(const Statement& statement, const KindRow& kind, const char* column) {
  for (int i = 1; i < statement.ColumnCount(); ++i) {
    if (statement.ColumnName(i) == column) return statement.Column(i);
  }
  const auto& delivered = DeliveredRecord(kind.table);
  const auto found = delivered.find(column);
  return found != delivered.end() ? found->second : Value();
}

RecordHere RecordOf(const Statement& statement, const KindRow& kind) {
  RecordHere here{{kind.kind, {}}, std::get<std::int64_t>(statement.Column(0)), {}};
  for (const ProjectField& field : kind.fields) {
    here.record.values.push_back(FieldOf(statement, kind, field.column));
  }
  for (int i = 1; i < statement.ColumnCount(); ++i) here.row.push_back(statement.Column(i));
  return here;
}

const KindRow& KindOfTyp(const Value& typ) {
  const auto* const text = std::get_if<std::string>(&typ);
  for (const KindRow& row : ProjectKindTable()) {
    if (text != nullptr && *row.typ != '\0' && *text == row.typ) return row;
  }
  return RowOf(ProjectKind::Other);
}

void ReadTable(const Database& database, const KindRow& kind, std::vector<RecordHere>& records) {
  Statement statement(database, "select rowid, * from " + Quoted(kind.table) + " order by rowid");
  while (statement.Step()) {
    const bool content = std::string_view(kind.table) == RowOf(ProjectKind::Other).table;
    records.push_back(
        RecordOf(statement, content ? KindOfTyp(FieldOf(statement, kind, "typ")) : kind));
    if (kind.identity == KindRow::Identity::Single) return;
  }
}

}  // namespace

std::vector<RecordHere> RecordsHere(const Database& database) {
  std::vector<RecordHere> records;
  for (const ProjectKind kind : {ProjectKind::Other, ProjectKind::Terminal, ProjectKind::Line,
                                 ProjectKind::Port, ProjectKind::Options, ProjectKind::Display}) {
    ReadTable(database, RowOf(kind), records);
  }
  std::stable_sort(records.begin(), records.end(),
                   [](const RecordHere& one, const RecordHere& two) {
                     return StandsBefore(one.record, two.record);
                   });
  return records;
}

Project ProjectOf(const std::vector<RecordHere>& records, const std::vector<JournalEntry>& journal,
                  const std::set<ProjectKind>& kinds) {
  Project project;
  project.kinds = kinds;
  for (const RecordHere& here : records) {
    if (kinds.count(here.record.kind) > 0) project.records.push_back(here.record);
  }
  if (kinds.count(ProjectKind::Inventory) > 0) project.inventory = journal;
  return project;
}

Project EverythingOf(const std::vector<RecordHere>& records,
                     const std::vector<JournalEntry>& journal) {
  std::set<ProjectKind> kinds;
  for (const KindRow& row : ProjectKindTable()) {
    if (*row.table != '\0') kinds.insert(row.kind);
  }
  if (!journal.empty()) kinds.insert(ProjectKind::Inventory);
  return ProjectOf(records, journal, kinds);
}

}  // namespace kelvo
