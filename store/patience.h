#pragma once

#include <string>

namespace kelvo {

/// What is to be done with the database.
enum class Access { Read, Change };

/// How the program waits while another one holds the database. Nothing of what waits has been begun
/// yet, so that a wait may serve events. `Begin`, then `Wait` until it says no or the database is
/// free, then `End`.
class Patience {
 public:
  virtual ~Patience() = default;

  /// `holder` says who holds it, in brackets and behind a blank; empty when nobody knows.
  virtual void Begin(Access access, const std::string& holder) = 0;
  /// Lets a little time pass; false gives up.
  virtual bool Wait() = 0;
  virtual void End() = 0;
};

/// Which process holds a file, as POSIX locks tell it.
class LockHolder {
 public:
  explicit LockHolder(const std::string& path);
  ~LockHolder();
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

  /// ` ("sqlite3", Prozess 4711)`; empty when it is this process, or nobody knows.
  std::string Words() const;

 private:
  // Stays open as long as the database: a process that closes a file loses all its locks on it.
  int descriptor_;
};

}  // namespace kelvo
