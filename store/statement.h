#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "store/database.h"

namespace kelvo {

/// A field's value as the database holds it; monostate is NULL.
using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

/// One prepared SQL statement. Every failure throws StoreError.
class Statement {
 public:
  Statement(const Database& database, const std::string& sql);

  /// Binds parameter `index` (from 1).
  void Bind(int index, const Value& value);
  /// True while there is a row.
  bool Step();
  void Reset() { sqlite3_reset(statement_.get()); }

  Value Column(int index) const;
  int ColumnCount() const { return sqlite3_column_count(statement_.get()); }
  std::string ColumnName(int index) const { return sqlite3_column_name(statement_.get(), index); }

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  const Database& database_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// All or nothing: what is not committed has not happened. Nobody else changes the database between
/// begin and end. One inside another is part of it.
class Transaction {
 public:
  explicit Transaction(const Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  const Database& database_;
  bool open_;
};

/// A name as SQL writes it.
std::string Quoted(const std::string& name);

}  // namespace kelvo
