#pragma once

#include <cerrno>
#include <string>

#include "store/file_calls.h"

namespace kelvo::testing_world {

/// The system's files, but one call fails: the first is 0. It has no effect then.
class FailingFiles : public FileCalls {
 public:
  FailingFiles(int which, int error) : which_(which), error_(error) { SetFiles(this); }
  ~FailingFiles() override { SetFiles(nullptr); }

  bool HasFailed() const { return !failed_.empty(); }
  /// "open", "write", …
  const std::string& Failed() const { return failed_; }
  /// A file has taken another's place.
  bool Renamed() const { return renamed_; }
  int Calls() const { return calls_; }

  int Open(const std::string& path, int flags, mode_t mode) override {
    return Fails("open") ? -1 : FileCalls::Open(path, flags, mode);
  }
  ssize_t Read(int file, char* bytes, std::size_t size) override {
    return Fails("read") ? -1 : FileCalls::Read(file, bytes, size);
  }
  ssize_t Write(int file, const char* bytes, std::size_t size) override {
    return Fails("write") ? -1 : FileCalls::Write(file, bytes, size);
  }
  int Sync(int file) override { return Fails("sync") ? -1 : FileCalls::Sync(file); }
  int Close(int file) override {
    const int closed = FileCalls::Close(file);
    return Fails("close") ? -1 : closed;
  }
  int Rename(const std::string& from, const std::string& to) override {
    if (Fails("rename")) return -1;
    renamed_ = true;
    return FileCalls::Rename(from, to);
  }
  int Remove(const std::string& path) override {
    return Fails("remove") ? -1 : FileCalls::Remove(path);
  }

 private:
  bool Fails(const char* call) {
    if (calls_++ != which_) return false;
    failed_ = call;
    errno = error_;
    return true;
  }

  const int which_;
  const int error_;
  int calls_ = 0;
  std::string failed_;
  bool renamed_ = false;
};

}  // namespace kelvo::testing_world
