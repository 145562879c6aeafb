#include "store/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "system/same_file.h"

namespace kelvo {
namespace {

constexpr int kAttempts = 100;  // against whoever comes and goes at the same time

// Another user's lock may be looked at only; that is enough to ask whether it is held.
std::unique_ptr<OpenFile> Opened(const std::string& path) {
  constexpr int kAsItIs = O_NOFOLLOW | O_NONBLOCK;
  auto file = std::make_unique<OpenFile>(path, O_RDWR | O_CREAT | kAsItIs);
  if (!file->IsOpen()) file = std::make_unique<OpenFile>(path, O_RDONLY | kAsItIs);
  return file;
}

}  // namespace

FileLock::Result FileLock::Take(const std::string& path) {
  Release();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    auto file = Opened(path);
    if (!file->IsOpen()) {
      // A link is nobody's lock.
      if (errno == ELOOP && Files().Remove(path) == 0) continue;
      // One that may not even be looked at is another user's, who may be there.
      return errno == EACCES ? Result::Taken : Result::Impossible;
    }
    if (flock(file->Get(), LOCK_EX | LOCK_NB) != 0) {
      return errno == EWOULDBLOCK ? Result::Taken : Result::Impossible;
    }
    // Whoever has released it meanwhile has removed the file, too.
    if (!IsStillAt(path, file->Get())) continue;
    path_ = path;
    file_ = std::move(file);
    return Result::Held;
  }
  return Result::Taken;
}

void FileLock::Release() {
  if (file_ == nullptr) return;
  Files().Remove(path_);
  file_.reset();
}

}  // namespace kelvo
