#pragma once

#include <sqlite3.h>

#include <stdexcept>
#include <string>

namespace kelvo::testing_world {

/// Another connection that holds the database: "shared" as a reader that does not come to an end,
/// "immediate" or "exclusive" as one that writes.
class ForeignLock {
 public:
  ForeignLock(const std::string& path, const std::string& lock) {
    sqlite3_open(path.c_str(), &connection_);
    const bool reads = lock == "shared";
    sqlite3_exec(connection_, reads ? "begin" : ("begin " + lock).c_str(), nullptr, nullptr,
                 nullptr);
    sqlite3_prepare_v2(connection_, "select * from Makro", -1, &reading_, nullptr);
    if (sqlite3_step(reading_) != SQLITE_ROW) throw std::runtime_error("no lock");
  }
  ~ForeignLock() { Release(); }
  ForeignLock(const ForeignLock&) = delete;
  ForeignLock& operator=(const ForeignLock&) = delete;

  void Release() {
    sqlite3_finalize(reading_);
    sqlite3_close(connection_);  // gives up what it has begun
    reading_ = nullptr;
    connection_ = nullptr;
  }

 private:
  sqlite3* connection_ = nullptr;
  sqlite3_stmt* reading_ = nullptr;
};

}  // namespace kelvo::testing_world
