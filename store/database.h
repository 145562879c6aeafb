#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "store/patience.h"

struct sqlite3;

namespace kelvo {

/// What went wrong with the database: a German text for the operator, UTF-8.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A record is not as it was when it was read: another program, or another page, came first.
class StoreConflict : public StoreError {
 public:
  enum class Kind { Changed, Gone };
  explicit StoreConflict(Kind kind);

  Kind kind;
};

/// Another program holds the database, and the wait for it was given up.
class StoreLocked : public StoreError {
 public:
  using StoreError::StoreError;
};

/// What a database is opened for: to be written where that is allowed, or in no case.
enum class Opening { ToWrite, ToRead };

/// The open database file. It is delivered with the program; nothing here creates a file or a
/// table, and a file that is refused is left as it was.
class Database {
 public:
  /// Opens an existing file and checks that it is this program's and whole. Throws StoreError,
  /// naming the file and what is wrong, when it is missing, foreign or damaged.
  explicit Database(std::string path, Opening opening = Opening::ToWrite);

  const std::string& Path() const { return path_; }
  /// The file cannot be written, or nobody is allowed to; every change then throws StoreError.
  bool ReadOnly() const { return readOnly_; }

  /// Who waits while another program holds the database; without one the thread sleeps for two
  /// seconds at most. It outlives the database.
  void SetPatience(Patience& patience) { patience_ = &patience; }
  /// Nothing waits as long as this lives.
  class Impatience {
   public:
    explicit Impatience(const Database& database);
    ~Impatience() { database_.waiting_ = before_; }
    Impatience(const Impatience&) = delete;
    Impatience& operator=(const Impatience&) = delete;

   private:
    const Database& database_;
    bool before_;
  };
  /// Attempts something, again and again as long as another program holds the database and the
  /// patience lasts. Gives SQLite's last result. What a wait's own events attempt is not waited
  /// for.
  int Patiently(Access access, const std::function<int()>& attempt) const;
  /// Throws what went wrong last, in German.
  [[noreturn]] void Fail(Access access) const;

  sqlite3* Handle() const { return handle_.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };

  void OpenFile(Opening opening);
  void CheckContents() const;
  [[noreturn]] void Refuse(const std::string& what) const;

  std::string path_;
  bool readOnly_ = false;
  Patience* patience_ = nullptr;
  mutable bool waiting_ = false;
  std::unique_ptr<LockHolder> holder_;
  std::unique_ptr<sqlite3, Closer> handle_;
};

}  // namespace kelvo
