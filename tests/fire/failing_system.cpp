#include "tests/fire/failing_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <string_view>

// In place of the system's own, which they call: SQLite, the toolkit and the program itself reach
// these.

namespace {

struct State {
  std::string folder;  // empty: nothing fails
  int left = 0;
  int error = 0;
  std::string failed;
  bool inside = false;
};
State& Now() {
  static State state;
  return state;
}

bool Fails(std::string_view call, std::string_view path) {
  State& now = Now();
  if (now.folder.empty() || now.inside || !path.starts_with(now.folder) || --now.left != 0) {
    return false;
  }
  now.inside = true;
  now.failed = std::string(call) + ' ' + std::string(path.substr(path.rfind('/') + 1));
  now.inside = false;
  errno = now.error;
  return true;
}
bool Fails(std::string_view call, int file) {
  if (Now().folder.empty()) return false;
  std::array<char, 4096> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const long size = syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), path.data(), path.size());
  return size > 0 && Fails(call, std::string_view(path.data(), static_cast<std::size_t>(size)));
}
int Opened(const char* path, int flags, mode_t mode) {
  if ((flags & O_ACCMODE) != O_RDONLY && Fails("open", path)) return -1;
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
mode_t ModeOf(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Opened(path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Opened(path, flags, mode);
}
ssize_t write(int file, const void* bytes, size_t size) {
  return Fails("write", file) ? -1 : syscall(SYS_write, file, bytes, size);
}
ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
  return Fails("write", file) ? -1 : syscall(SYS_pwrite64, file, bytes, size, at);
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t at) {
  return Fails("write", file) ? -1 : syscall(SYS_pwrite64, file, bytes, size, at);
}
int fsync(int file) {
  return Fails("sync", file) ? -1 : static_cast<int>(syscall(SYS_fsync, file));
}
int fdatasync(int file) {
  return Fails("sync", file) ? -1 : static_cast<int>(syscall(SYS_fdatasync, file));
}
int ftruncate(int file, off_t size) noexcept {
  return Fails("cut", file) ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int ftruncate64(int file, off64_t size) noexcept {
  return Fails("cut", file) ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int rename(const char* from, const char* to) noexcept {
  return Fails("rename", to) ? -1 : static_cast<int>(syscall(SYS_rename, from, to));
}
int unlink(const char* path) noexcept {
  return Fails("remove", path) ? -1 : static_cast<int>(syscall(SYS_unlink, path));
}

}  // extern "C"

namespace kelvo::testing_world {

FailingSystem::FailingSystem(const std::string& folder, int call, int error) {
  Now() = {folder + '/', call, error, {}, false};
}
FailingSystem::~FailingSystem() { Now().folder.clear(); }
const std::string& FailingSystem::Failed() { return Now().failed; }

}  // namespace kelvo::testing_world
