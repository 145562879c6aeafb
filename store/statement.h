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

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  const Database& database_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// A name as SQL writes it.
std::string Quoted(const std::string& name);

}  // namespace kelvo
