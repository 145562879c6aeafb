#include "store/recordset.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "store/single_records.h"

namespace kelvo {
namespace {

constexpr std::string_view kSelectAll = "select * from ";
constexpr char kRowid[] = "rowid";

bool IsQuery(std::string_view source) { return source.starts_with(kSelectAll); }

std::string NameOf(std::string_view source) {
  if (IsQuery(source)) {
    source.remove_prefix(kSelectAll.size());
    source = source.substr(0, source.find(' '));
  }
  return std::string(source);
}

std::string TableOf(std::string_view source) { return Quoted(NameOf(source)); }

// The statement that yields keys and contents in the order of the source.
std::string RowQuery(std::string_view source, const std::string& table) {
  std::string sql = "select rowid, * from " + table;
  if (!IsQuery(source)) return sql + " order by rowid";
  source.remove_prefix(kSelectAll.size());
  const std::size_t rest = source.find(' ');
  return rest == std::string_view::npos ? sql : sql.append(source.substr(rest));
}

Recordset::Row RowOf(const Statement& statement) {
  Recordset::Row row;
  for (int column = 1; column < statement.ColumnCount(); ++column) {
    row.push_back(statement.Column(column));
  }
  return row;
}

// Without the C library, whose decimal separator follows the desktop's language.
std::string RealText(double number) {
  std::array<char, 40> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

// A foreign field of this name hides it.
std::int64_t KeyOf(const Statement& statement, const std::string& table) {
  const Value key = statement.Column(0);
  if (const auto* number = std::get_if<std::int64_t>(&key)) return *number;
  throw StoreError("Die Tabelle " + table + " der Datenbank ist verändert: Sie hat ein Feld \"" +
                   kRowid + "\".");
}

std::optional<std::string> ValueText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* number = std::get_if<double>(&value)) return RealText(*number);
  return std::nullopt;
}

}  // namespace

Recordset::Recordset(Database& database, std::string source)
    : database_(database),
      source_(std::move(source)),
      table_(TableOf(source_)),
      delivered_(DeliveredRecord(NameOf(source_))) {
  ReadRecords();
}

void Recordset::ReadRecords() {
  Statement statement(database_, RowQuery(source_, table_));
  fields_.clear();
  for (int column = 1; column < statement.ColumnCount(); ++column) {
    fields_.push_back(statement.ColumnName(column));
  }
  std::vector<Record> records;
  while (statement.Step()) {
    records.push_back({KeyOf(statement, table_), RowOf(statement)});
  }
  if (records == records_) return;
  records_ = std::move(records);
  ++revision_;
}

void Recordset::SetSource(std::string source) {
  source_.swap(source);
  table_ = TableOf(source_);
  try {
    ReadRecords();
  } catch (const StoreError&) {
    source_ = std::move(source);
    table_ = TableOf(source_);
    throw;
  }
  delivered_ = DeliveredRecord(NameOf(source_));
  Go(0);
}

void Recordset::Refresh() {
  const std::int64_t current = Bookmark();
  ReadRecords();
  if (!MoveToBookmark(current)) Go(0);
}

void Recordset::TryRefresh() {
  const Database::Impatience now(database_);
  try {
    Refresh();
  } catch (const StoreError&) {
    // As it says.
  }
}

void Recordset::Go(std::size_t position) {
  position_ = std::min(position, records_.size());
  deleted_ = false;
  if (repositioned_) repositioned_();
}

void Recordset::MoveFirst() { Go(0); }
void Recordset::MoveNext() { Go(deleted_ ? position_ : position_ + 1); }
void Recordset::MovePrevious() { Go(position_ == 0 ? 0 : position_ - 1); }
void Recordset::MoveLast() { Go(records_.empty() ? 0 : records_.size() - 1); }
void Recordset::MoveTo(std::size_t position) { Go(position); }

std::vector<Recordset::Record>::iterator Recordset::RecordOf(std::int64_t bookmark) {
  return std::find_if(records_.begin(), records_.end(),
                      [bookmark](const Record& record) { return record.key == bookmark; });
}

bool Recordset::MoveToBookmark(std::int64_t bookmark) {
  const auto found = RecordOf(bookmark);
  if (found == records_.end()) return false;
  Go(static_cast<std::size_t>(found - records_.begin()));
  return true;
}

bool Recordset::FindFirst(const std::string& field, const Value& value) {
  const std::size_t index = IndexOf(field);
  const auto found = std::find_if(records_.begin(), records_.end(), [&](const Record& record) {
    const auto text = ValueText(record.row[index]);
    return text && text == ValueText(value);
  });
  if (found == records_.end()) return false;
  Go(static_cast<std::size_t>(found - records_.begin()));
  return true;
}

bool Recordset::Has(const std::string& field) const {
  return std::find(fields_.begin(), fields_.end(), field) != fields_.end();
}

std::size_t Recordset::IndexOf(const std::string& field) const {
  const auto found = std::find(fields_.begin(), fields_.end(), field);
  if (found == fields_.end()) {
    throw StoreError("Das Feld \"" + field + "\" der Tabelle " + table_ + " fehlt.");
  }
  return static_cast<std::size_t>(found - fields_.begin());
}

Value Recordset::Field(const std::string& field) const {
  if (HasCurrent() && Has(field)) return records_[position_].row[IndexOf(field)];
  if (const auto found = delivered_.find(field); found != delivered_.end()) return found->second;
  return HasCurrent() ? records_[position_].row[IndexOf(field)] : Value();
}

std::optional<std::string> Recordset::Text(const std::string& field) const {
  return ValueText(Field(field));
}

double Recordset::Number(const std::string& field) const {
  const std::optional<double> stored = NumberIn(Field(field));
  const SingleField* const single = FindSingleField(NameOf(source_), field);
  if (single == nullptr) return stored.value_or(0);
  const double used = stored ? *stored : NumberIn(single->delivered).value_or(0);
  return std::clamp(used, single->lowest, single->highest);
}

std::vector<OddValue> Recordset::OddValues() const {
  std::vector<OddValue> odd;
  for (const SingleField& single : SingleFields(NameOf(source_))) {
    if (!HasCurrent() || !Has(single.field)) continue;
    const Value stored = Field(single.field);
    const double used = Number(single.field);
    if (NumberIn(stored) == used) continue;
    odd.push_back({single.field, ValueText(stored).value_or("nichts"), *ValueText(used)});
  }
  return odd;
}

std::int64_t Recordset::Whole(const std::string& field, std::int64_t lowest,
                              std::int64_t highest) const {
  const double number = std::nearbyint(Number(field));
  if (!(number > static_cast<double>(lowest))) return lowest;
  return number < static_cast<double>(highest) ? static_cast<std::int64_t>(number) : highest;
}

std::vector<std::string> Recordset::Column(const std::string& field) const {
  const std::size_t index = IndexOf(field);
  std::vector<std::string> column;
  column.reserve(records_.size());
  for (const Record& record : records_) column.push_back(ValueText(record.row[index]).value_or(""));
  return column;
}

Recordset::Row Recordset::Stored(std::int64_t key) const {
  Statement statement(database_, "select rowid, * from " + table_ + " where rowid = ?");
  statement.Bind(1, key);
  return statement.Step() ? RowOf(statement) : Row();
}

// Inside the change's own transaction, so that nobody comes between.
void Recordset::CheckUnchanged(std::int64_t key, const Row& asRead) const {
  const Row stored = Stored(key);
  if (stored.empty()) throw StoreConflict(StoreConflict::Kind::Gone);
  if (stored != asRead) throw StoreConflict(StoreConflict::Kind::Changed);
}

void Recordset::Edit(Row asRead) {
  asRead_ = std::move(asRead);
  changes_.clear();
  adding_ = records_.empty() && !delivered_.empty();
  if (!adding_) return;
  for (const auto& [field, value] : delivered_) {
    if (Has(field)) changes_[field] = value;
  }
}

void Recordset::AddNew() {
  adding_ = true;
  changes_.clear();
}

std::string Recordset::UpdateText() const {
  std::string names;
  std::string marks;
  std::string pairs;
  int index = 0;
  for (const auto& [field, value] : changes_) {
    const std::string mark = "?" + std::to_string(++index);
    const char* comma = index > 1 ? ", " : "";
    names += comma + Quoted(field);
    marks += comma + mark;
    pairs += comma + Quoted(field) + " = " + mark;
  }
  return adding_ ? "insert into " + table_ + " (" + names + ") values (" + marks + ")"
                 : "update " + table_ + " set " + pairs + " where rowid = ?" +
                       std::to_string(index + 1);
}

void Recordset::Update() {
  if (!adding_ && !HasCurrent()) throw StoreError("Kein aktueller Datensatz.");
  if (changes_.empty()) return;
  for (const auto& [field, value] : changes_) {
    if (field != kRowid) IndexOf(field);
  }
  const std::int64_t edited = Bookmark();  // a wait for the database may move on
  Transaction transaction(database_);
  if (!adding_) CheckUnchanged(edited, asRead_);
  Statement statement(database_, UpdateText());
  int index = 0;
  for (const auto& [field, value] : changes_) statement.Bind(++index, value);
  if (!adding_) statement.Bind(index + 1, edited);
  statement.Step();
  const std::int64_t key = adding_ ? sqlite3_last_insert_rowid(database_.Handle()) : edited;
  Row stored = Stored(key);
  transaction.Commit();
  ++revision_;
  if (adding_) {
    records_.push_back({key, std::move(stored)});
  } else if (const auto record = RecordOf(key); record != records_.end()) {
    record->row = std::move(stored);
  }
  Edit({});
}

void Recordset::Delete() {
  if (!HasCurrent()) throw StoreError("Kein aktueller Datensatz.");
  const Record doomed = records_[position_];
  Transaction transaction(database_);
  CheckUnchanged(doomed.key, doomed.row);
  Statement statement(database_, "delete from " + table_ + " where rowid = ?");
  statement.Bind(1, doomed.key);
  statement.Step();
  transaction.Commit();
  ++revision_;
  const auto gone = RecordOf(doomed.key);
  if (gone == records_.end()) return;
  position_ = static_cast<std::size_t>(gone - records_.begin());
  records_.erase(gone);
  deleted_ = true;
}

void Recordset::SetAll(const Row& row) {
  for (std::size_t i = 0; i < fields_.size() && i < row.size(); ++i) Set(fields_[i], row[i]);
}

void Recordset::Restore(std::int64_t bookmark, const Row& row) {
  AddNew();
  if (!Exists(bookmark)) Set(kRowid, bookmark);
  SetAll(row);
  Update();
  MoveLast();
}

}  // namespace kelvo
