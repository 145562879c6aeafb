#include "store/statement.h"

namespace kelvo {
namespace {

struct Binder {
  sqlite3_stmt* statement;
  int index;
  int operator()(std::monostate) const { return sqlite3_bind_null(statement, index); }
  int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement, index, number); }
  int operator()(double number) const { return sqlite3_bind_double(statement, index, number); }
  int operator()(const std::string& text) const {
    return sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  }
};

[[noreturn]] void Fail(const Database& database) {
  const int code = sqlite3_errcode(database.Handle());
  std::string text = "Die Datenbank \"" + database.Path() + "\" ";
  switch (code) {
    case SQLITE_READONLY:
      text += "ist schreibgeschützt; es wurde nichts gespeichert.";
      break;
    case SQLITE_FULL:
      text += "kann nicht wachsen, der Datenträger ist voll; es wurde nichts gespeichert.";
      break;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      text += "wird gerade von einem anderen Programm benutzt; es wurde nichts gespeichert.";
      break;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      text += "ist beschädigt (" + std::string(sqlite3_errmsg(database.Handle())) + ").";
      break;
    default:
      text += "meldet einen Fehler: " + std::string(sqlite3_errmsg(database.Handle()));
  }
  throw StoreError(text);
}

}  // namespace

Statement::Statement(const Database& database, const std::string& sql) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database.Handle(), sql.data(), static_cast<int>(sql.size()), &statement,
                         nullptr) != SQLITE_OK) {
    Fail(database);
  }
  statement_.reset(statement);
}

void Statement::Bind(int index, const Value& value) {
  if (std::visit(Binder{statement_.get(), index}, value) != SQLITE_OK) Fail(database_);
}

bool Statement::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) Fail(database_);
  return result == SQLITE_ROW;
}

Value Statement::Column(int index) const {
  sqlite3_stmt* statement = statement_.get();
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(statement, index)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, index);
    case SQLITE_NULL:
      return std::monostate{};
    default: {
      const void* text = sqlite3_column_blob(statement, index);
      const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
      return text == nullptr ? std::string() : std::string(static_cast<const char*>(text), length);
    }
  }
}

Transaction::Transaction(const Database& database) : database_(database) {
  Statement(database_, "begin immediate").Step();
}

Transaction::~Transaction() {
  if (open_) sqlite3_exec(database_.Handle(), "rollback", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  Statement(database_, "commit").Step();
  open_ = false;
}

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  quoted += '"';
  return quoted;
}

}  // namespace kelvo
