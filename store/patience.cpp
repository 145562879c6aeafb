#include "store/patience.h"

#include <fcntl.h>
#include <unistd.h>

#include "system/process_name.h"

namespace kelvo {
namespace {

// Where SQLite puts its locks, whatever the file's size is.
constexpr off_t kFirstLockedByte = 0x40000000;
constexpr off_t kLockedBytes = 512;

}  // namespace

LockHolder::LockHolder(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

LockHolder::~LockHolder() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::string LockHolder::Words() const {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kFirstLockedByte;
  lock.l_len = kLockedBytes;
  const bool told = descriptor_ >= 0 && fcntl(descriptor_, F_GETLK, &lock) == 0;
  if (!told || lock.l_type == F_UNLCK || lock.l_pid <= 0) return {};
  const std::string name = ProcessName(lock.l_pid);
  return " (" + (name.empty() ? "" : "\"" + name + "\", ") + "Prozess " +
         std::to_string(lock.l_pid) + ")";
}

}  // namespace kelvo
