#pragma once

#include <memory>
#include <stdexcept>
#include <string>

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

/// The open database file. It is delivered with the program; nothing here creates a file or a
/// table, and a file that is refused is left as it was.
class Database {
 public:
  /// Opens an existing file and checks that it is this program's and whole. Throws StoreError,
  /// naming the file and what is wrong, when it is missing, foreign or damaged.
  explicit Database(std::string path);

  const std::string& Path() const { return path_; }
  /// The file cannot be written, or nobody is allowed to; every change then throws StoreError.
  bool ReadOnly() const { return readOnly_; }

  sqlite3* Handle() const { return handle_.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };

  void OpenFile();
  void CheckContents() const;
  [[noreturn]] void Refuse(const std::string& what) const;

  std::string path_;
  bool readOnly_ = false;
  std::unique_ptr<sqlite3, Closer> handle_;
};

}  // namespace kelvo
