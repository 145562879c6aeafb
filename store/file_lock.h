#pragma once

#include <memory>
#include <string>

#include "store/file_calls.h"

namespace kelvo {

/// A lock that lasts as long as its program lives: the system takes it back, in whatever way that
/// ends. A file that lies there without one holds nothing, whatever stands in it.
class FileLock {
 public:
  enum class Result {
    Held,        ///< by this object
    Taken,       ///< by another one
    Impossible,  ///< nobody has it, and nobody can: the folder cannot be written
  };
  FileLock() = default;
  ~FileLock() { Release(); }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  Result Take(const std::string& path);
  /// The file goes too.
  void Release();

 private:
  std::string path_;
  std::unique_ptr<OpenFile> file_;
};

}  // namespace kelvo
