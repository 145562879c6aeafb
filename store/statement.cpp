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

}  // namespace

Statement::Statement(const Database& database, const std::string& sql) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  const int result = database.Patiently(Access::Read, [&] {
    return sqlite3_prepare_v2(database.Handle(), sql.data(), static_cast<int>(sql.size()),
                              &statement, nullptr);
  });
  if (result != SQLITE_OK) database.Fail(Access::Read);
  statement_.reset(statement);
}

void Statement::Bind(int index, const Value& value) {
  if (std::visit(Binder{statement_.get(), index}, value) != SQLITE_OK) {
    database_.Fail(Access::Read);
  }
}

// Another program can be in the way at the first step only: from then on the file is locked here.
bool Statement::Step() {
  sqlite3_stmt* const statement = statement_.get();
  const Access access = sqlite3_stmt_readonly(statement) != 0 ? Access::Read : Access::Change;
  const int result = database_.Patiently(access, [statement] {
    const int step = sqlite3_step(statement);
    if (step == SQLITE_BUSY) sqlite3_reset(statement);
    return step;
  });
  if (result != SQLITE_ROW && result != SQLITE_DONE) database_.Fail(access);
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
    case SQLITE_TEXT: {  // as UTF-8, whatever the database's encoding is
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
      const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
      return text == nullptr ? std::string() : std::string(text, length);
    }
    default: {
      const void* text = sqlite3_column_blob(statement, index);
      const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
      return text == nullptr ? std::string() : std::string(static_cast<const char*>(text), length);
    }
  }
}

// All locks at once, so that whoever is in the way is waited for here, where nothing has been done
// yet and nothing is held. To commit would else wait for readers, and keep out new ones meanwhile.
Transaction::Transaction(const Database& database)
    : database_(database), open_(sqlite3_get_autocommit(database.Handle()) != 0) {
  if (open_) Statement(database_, "begin exclusive").Step();
}

Transaction::~Transaction() {
  if (open_) sqlite3_exec(database_.Handle(), "rollback", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  if (!open_) return;
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
