#include <grp.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "adapters/port_device.h"

namespace kelvo {
namespace {

// A line of /proc/locks reads "1: FLOCK  ADVISORY  WRITE 1234 00:18:5 0 EOF"; its sixth word names
// the file by device and inode.
bool IsLocked(const struct stat& device) {
  std::ostringstream wanted;
  wanted << std::hex;
  for (const unsigned number : {major(device.st_dev), minor(device.st_dev)}) {
    wanted << (number < 16 ? "0" : "") << number << ':';
  }
  wanted << std::dec << device.st_ino;
  std::ifstream locks("/proc/locks");
  std::string line;
  while (std::getline(locks, line)) {
    std::istringstream words(line);
    std::string word;
    for (int i = 0; i < 6 && words >> word; ++i) {
    }
    if (word == wanted.str()) return true;
  }
  return false;
}

// Whether a process that may be looked into has the device open.
bool IsOpenSomewhere(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path device = fs::canonical(path, error);
  for (const fs::directory_entry& process : fs::directory_iterator("/proc", error)) {
    std::error_code closed;
    for (const fs::directory_entry& file : fs::directory_iterator(process.path() / "fd", closed)) {
      if (fs::read_symlink(file.path(), closed) == device) return true;
    }
  }
  return false;
}

}  // namespace

DeviceState StateOfDevice(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) {
    return errno == EACCES ? DeviceState::NoPermission : DeviceState::Missing;
  }
  if (!S_ISCHR(device.st_mode)) return DeviceState::Missing;
  return access(path.c_str(), R_OK | W_OK) == 0 ? DeviceState::Ready : DeviceState::NoPermission;
}

std::string GroupOfDevice(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) return {};
  if ((device.st_mode & S_IRGRP) == 0 || (device.st_mode & S_IWGRP) == 0) return {};
  const group* owner = getgrgid(device.st_gid);
  return owner == nullptr ? std::string() : owner->gr_name;
}

bool IsDeviceInUse(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) return false;
  // The simulated Terminal holds its own end of a pseudo-terminal open; only the lock tells there.
  return IsLocked(device) || (!IsPseudoTerminal(path) && IsOpenSomewhere(path));
}

bool IsPseudoTerminal(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real != nullptr && std::string(real.get()).starts_with("/dev/pts/");
}

// The exclusive mode of a terminal does not stop the administrator; a file lock does.
bool LockDevice(int handle) { return flock(handle, LOCK_EX | LOCK_NB) == 0; }

bool HungUp(int handle) {
  pollfd entry{handle, 0, 0};
  return poll(&entry, 1, 0) > 0 && (entry.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

std::size_t DriverQueue(int handle) {
  int queued = 0;
  return ioctl(handle, TIOCOUTQ, &queued) == 0 && queued > 0 ? static_cast<std::size_t>(queued) : 0;
}

std::string ReadAvailable(int handle, bool& gone) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t count = read(handle, buffer.data(), buffer.size());
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
      if (static_cast<std::size_t>(count) == buffer.size()) continue;
      return text;
    }
    gone = count == 0 ? HungUp(handle) : errno != EAGAIN && errno != EINTR;
    return text;
  }
}

}  // namespace kelvo
