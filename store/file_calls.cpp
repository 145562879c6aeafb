#include "store/file_calls.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kelvo {
namespace {

constexpr std::size_t kBlock = 65536;

FileCalls* others = nullptr;

}  // namespace

int FileCalls::Open(const std::string& path, int flags, mode_t mode) {
  return open(path.c_str(), flags, mode);
}
ssize_t FileCalls::Read(int file, char* bytes, std::size_t size) { return read(file, bytes, size); }
ssize_t FileCalls::Write(int file, const char* bytes, std::size_t size) {
  return write(file, bytes, size);
}
int FileCalls::Sync(int file) { return fsync(file); }
int FileCalls::Close(int file) { return close(file); }
int FileCalls::Rename(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str());
}
int FileCalls::Remove(const std::string& path) { return unlink(path.c_str()); }

FileCalls& Files() {
  static FileCalls system;
  return others != nullptr ? *others : system;
}

void SetFiles(FileCalls* calls) { others = calls; }

OpenFile::OpenFile(const std::string& path, int flags, mode_t mode)
    : file_(Files().Open(path, flags | O_CLOEXEC | O_NOCTTY, mode)) {}

OpenFile::~OpenFile() { Close(); }

int OpenFile::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = Files().Write(file_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    if (written == 0) return ENOSPC;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int OpenFile::Sync() const { return Files().Sync(file_) == 0 ? 0 : errno; }

int OpenFile::Close() {
  const int file = std::exchange(file_, -1);
  return file < 0 || Files().Close(file) == 0 ? 0 : errno;
}

int OpenFile::ReadUpTo(std::size_t limit, std::string& bytes) const {
  while (bytes.size() <= limit) {
    const std::size_t had = bytes.size();
    bytes.resize(had + std::min(kBlock, limit + 1 - had));
    const ssize_t count = Files().Read(file_, bytes.data() + had, bytes.size() - had);
    const int error = count < 0 ? errno : 0;
    bytes.resize(had + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return 0;
    if (error != 0 && error != EINTR) return error;
  }
  return 0;
}

bool IsThere(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

int SyncFolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const OpenFile opened(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
  if (!opened.IsOpen()) return errno == EACCES ? 0 : errno;  // a folder may be closed to readers
  const int error = opened.Sync();
  return error == EINVAL ? 0 : error;  // not every file system knows it
}

}  // namespace kelvo
