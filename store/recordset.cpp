#include "store/recordset.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace kelvo {
namespace {

constexpr std::string_view kSelectAll = "select * from ";

bool IsQuery(std::string_view source) { return source.starts_with(kSelectAll); }

std::string TableOf(std::string_view source) {
  if (IsQuery(source)) {
    source.remove_prefix(kSelectAll.size());
    source = source.substr(0, source.find(' '));
  }
  return Quoted(std::string(source));
}

// The statement that yields the record's keys in the order of the source.
std::string KeyQuery(std::string_view source, const std::string& table) {
  std::string sql = "select rowid from " + table;
  if (!IsQuery(source)) return sql + " order by rowid";
  source.remove_prefix(kSelectAll.size());
  const std::size_t rest = source.find(' ');
  return rest == std::string_view::npos ? sql : sql.append(source.substr(rest));
}

// Both ways without the C library, whose decimal separator follows the desktop's language.
std::string RealText(double number) {
  std::array<char, 40> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

double RealNumber(const std::string& text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::optional<std::string> ValueText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* number = std::get_if<double>(&value)) return RealText(*number);
  return std::nullopt;
}

}  // namespace

Recordset::Recordset(Database& database, std::string source)
    : database_(database), source_(std::move(source)), table_(TableOf(source_)) {
  ReadKeys();
}

void Recordset::ReadKeys() {
  Statement statement(database_, KeyQuery(source_, table_));
  std::vector<std::int64_t> keys;
  while (statement.Step()) keys.push_back(std::get<std::int64_t>(statement.Column(0)));
  keys_ = std::move(keys);
}

void Recordset::SetSource(std::string source) {
  source_ = std::move(source);
  table_ = TableOf(source_);
  ReadKeys();
  Go(0);
}

void Recordset::Refresh() {
  const std::int64_t current = Bookmark();
  ReadKeys();
  if (!MoveToBookmark(current)) Go(0);
}

void Recordset::Go(std::size_t position) {
  position_ = std::min(position, keys_.size());
  deleted_ = false;
  if (repositioned_) repositioned_();
}

void Recordset::MoveFirst() { Go(0); }
void Recordset::MoveNext() { Go(deleted_ ? position_ : position_ + 1); }
void Recordset::MovePrevious() { Go(position_ == 0 ? 0 : position_ - 1); }
void Recordset::MoveLast() { Go(keys_.empty() ? 0 : keys_.size() - 1); }
void Recordset::MoveTo(std::size_t position) { Go(position); }

bool Recordset::MoveToBookmark(std::int64_t bookmark) {
  const auto found = std::find(keys_.begin(), keys_.end(), bookmark);
  if (found == keys_.end()) return false;
  Go(static_cast<std::size_t>(found - keys_.begin()));
  return true;
}

bool Recordset::FindFirst(const std::string& field, const Value& value) {
  Statement statement(
      database_, "select 1 from " + table_ + " where rowid = ?1 and " + Quoted(field) + " = ?2");
  statement.Bind(2, value);
  for (std::size_t position = 0; position < keys_.size(); ++position) {
    statement.Bind(1, keys_[position]);
    if (statement.Step()) {
      statement.Reset();
      Go(position);
      return true;
    }
    statement.Reset();
  }
  return false;
}

Value Recordset::Field(const std::string& field) const {
  if (!HasCurrent()) return {};
  Statement statement(database_,
                      "select " + Quoted(field) + " from " + table_ + " where rowid = ?");
  statement.Bind(1, keys_[position_]);
  return statement.Step() ? statement.Column(0) : Value();
}

std::optional<std::string> Recordset::Text(const std::string& field) const {
  return ValueText(Field(field));
}

double Recordset::Number(const std::string& field) const {
  const Value value = Field(field);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return RealNumber(*text);
  return 0;
}

std::vector<std::string> Recordset::Column(const std::string& field) const {
  Statement statement(database_,
                      "select " + Quoted(field) + " from " + table_ + " where rowid = ?");
  std::vector<std::string> column;
  column.reserve(keys_.size());
  for (const std::int64_t key : keys_) {
    statement.Bind(1, key);
    column.push_back(ValueText(statement.Step() ? statement.Column(0) : Value()).value_or(""));
    statement.Reset();
  }
  return column;
}

void Recordset::Begin(bool adding) {
  adding_ = adding;
  changes_.clear();
}

void Recordset::Update() {
  if (!adding_ && !HasCurrent()) throw StoreError("Kein aktueller Datensatz.");
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
  if (index == 0) return;
  Statement statement(database_,
                      adding_ ? "insert into " + table_ + " (" + names + ") values (" + marks + ")"
                              : "update " + table_ + " set " + pairs + " where rowid = ?" +
                                    std::to_string(index + 1));
  index = 0;
  for (const auto& [field, value] : changes_) statement.Bind(++index, value);
  if (!adding_) statement.Bind(index + 1, keys_[position_]);
  statement.Step();
  if (adding_) keys_.push_back(sqlite3_last_insert_rowid(database_.Handle()));
  Begin(false);
}

void Recordset::Delete() {
  if (!HasCurrent()) throw StoreError("Kein aktueller Datensatz.");
  Statement statement(database_, "delete from " + table_ + " where rowid = ?");
  statement.Bind(1, keys_[position_]);
  statement.Step();
  keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(position_));
  deleted_ = true;
}

}  // namespace kelvo
