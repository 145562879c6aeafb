#include "adapters/device_lock.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "system/process_name.h"
#include "system/same_file.h"

namespace kelvo {
namespace {

constexpr int kAttempts = 10;  // against programs that come and go at the same time
// What a lock of this program says behind the number. The system holds such a one besides as long
// as its program lives, which a number that was given to another process since cannot feign.
constexpr std::string_view kOwn = "kelvo";

bool Runs(pid_t process) { return process > 0 && (kill(process, 0) == 0 || errno == EPERM); }

struct Said {
  pid_t process = 0;
  bool own = false;
};

// The number as text, with blanks before it and whatever behind it, or in the oldest form as the
// four bytes themselves. 0 for anything else.
Said WhatSays(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  Said said;
  if (text.size() == sizeof(said.process) && text.find_first_not_of("0123456789 \n") != text.npos) {
    std::memcpy(&said.process, text.data(), sizeof(said.process));
    return {std::max(said.process, 0), false};
  }
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
  const auto read = std::from_chars(text.data(), text.data() + end, said.process);
  if (read.ec != std::errc() || read.ptr != text.data() + end) return {};
  text.remove_prefix(end);
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return {std::max(said.process, 0), text.starts_with(kOwn)};
}

struct LockFile {
  int handle = -1;  // to be closed
  pid_t holder = 0;
};

// Who holds the lock that lies there. A link or a pipe is none; one that may not be looked at is
// somebody's.
LockFile Look(const std::string& file) {
  LockFile found{open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
  if (found.handle < 0) {
    if (errno == EACCES) found.holder = DeviceLock::kSomebody;
    return found;
  }
  std::array<char, 128> text{};
  const ssize_t size = read(found.handle, text.data(), text.size());
  const std::string_view says(text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  const bool held = flock(found.handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  const Said said = WhatSays(says);
  const bool doubtful = said.own || said.process == getpid();
  if (Runs(said.process) && (held || !doubtful)) found.holder = said.process;
  return found;
}

}  // namespace

std::string ProcessText(pid_t process) {
  if (process <= 0) return "ein Programm";
  const std::string number = "Prozess " + std::to_string(process);
  const std::string name = ProcessName(process);
  if (name.empty()) return number;
  return name + " (" + number + ")";
}

bool DeviceLock::Take(const std::string& device) {
  Release();
  const std::string file = FileOf(device);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (Make(file) || errno != EEXIST) return true;
    const LockFile found = Look(file);
    const bool same = found.handle < 0 || IsStillAt(file, found.handle);
    // An abandoned lock that may not be removed keeps nobody off.
    const bool stays = found.holder == 0 && same && unlink(file.c_str()) != 0 && errno != ENOENT;
    if (found.handle >= 0) close(found.handle);
    if (found.holder != 0) return false;
    if (stays) return true;
  }
  return true;
}

// Under a name of its own first: nobody sees it empty. errno says why it could not be made.
bool DeviceLock::Make(const std::string& file) {
  const std::string fresh = folder_ + "/LTMP." + std::to_string(getpid());
  unlink(fresh.c_str());
  const int handle = open(fresh.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
  if (handle < 0) return false;
  std::array<char, 32> text{};
  const int size = std::snprintf(text.data(), text.size(), "%10d kelvo\n", getpid());
  const bool made = flock(handle, LOCK_EX | LOCK_NB) == 0 &&
                    write(handle, text.data(), static_cast<std::size_t>(size)) == size &&
                    link(fresh.c_str(), file.c_str()) == 0;
  const int error = errno;
  unlink(fresh.c_str());
  if (made) {
    handle_ = handle;
    file_ = file;
    return true;
  }
  close(handle);
  errno = error;
  return false;
}

void DeviceLock::Release() {
  if (handle_ < 0) return;
  if (IsStillAt(file_, handle_)) unlink(file_.c_str());
  close(std::exchange(handle_, -1));
}

pid_t DeviceLock::HolderOf(const std::string& device) const {
  const LockFile found = Look(FileOf(device));
  if (found.handle >= 0) close(found.handle);
  return found.holder;
}

// "/dev/ttyUSB0" is locked by "LCK..ttyUSB0", whatever link has led there.
std::string DeviceLock::FileOf(const std::string& device) const {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(device, error);
  std::string name = (error ? std::filesystem::path(device) : real).lexically_relative("/dev");
  std::replace(name.begin(), name.end(), '/', '_');
  return folder_ + "/LCK.." + name;
}

}  // namespace kelvo
