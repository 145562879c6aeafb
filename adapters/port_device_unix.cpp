#include <grp.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

#include "adapters/device_lock.h"
#include "adapters/port_device.h"

namespace kelvo {
namespace {

pid_t NumberOf(const std::string& process) {
  const int number = std::atoi(process.c_str());
  return number > 0 ? number : DeviceLock::kSomebody;
}

// A line of /proc/locks reads "1: FLOCK  ADVISORY  WRITE 1234 00:18:5 0 EOF"; its fifth word is the
// process, its sixth names the file by device and inode. 0 for nobody.
pid_t LockerOf(const struct stat& device) {
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
    std::string process;
    for (int i = 0; i < 6 && words >> word; ++i) {
      if (i == 4) process = word;
    }
    if (word == wanted.str()) return NumberOf(process);
  }
  return 0;
}

// The system knows the device, and not as a terminal line; a pseudo-terminal it does not list.
bool IsOfAnotherKind(const struct stat& device) {
  const std::string number =
      std::to_string(major(device.st_rdev)) + ':' + std::to_string(minor(device.st_rdev));
  std::error_code error;
  const auto kind =
      std::filesystem::read_symlink("/sys/dev/char/" + number + "/subsystem", error).filename();
  return !error && kind != "tty";
}

// A link that was made for a pseudo-terminal which has gone; its number has been given to another
// since, which is none of ours. Traffic leaves this time as it is.
bool IsLeftBehind(const std::string& path, const struct stat& device) {
  struct stat link {};
  if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return false;
  const auto made = [](const struct stat& file) {
    return std::pair(file.st_ctim.tv_sec, file.st_ctim.tv_nsec);
  };
  return IsPseudoTerminal(path) && made(device) > made(link);
}

// A process that may be looked into and has the device open; 0 for none.
pid_t OpenerOf(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path device = fs::canonical(path, error);
  for (const fs::directory_entry& process : fs::directory_iterator("/proc", error)) {
    std::error_code closed;
    for (const fs::directory_entry& file : fs::directory_iterator(process.path() / "fd", closed)) {
      if (fs::read_symlink(file.path(), closed) == device) {
        return NumberOf(process.path().filename());
      }
    }
  }
  return 0;
}

}  // namespace

std::string DevicePath(const std::string& name) {
  return name.starts_with('/') ? name : "/dev/" + name;
}

DeviceState StateOfDevice(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) {
    return errno == EACCES ? DeviceState::NoPermission : DeviceState::Missing;
  }
  if (!S_ISCHR(device.st_mode)) return DeviceState::NotSerial;
  if (IsLeftBehind(path, device)) return DeviceState::Missing;
  if (IsOfAnotherKind(device)) return DeviceState::NotSerial;
  return access(path.c_str(), R_OK | W_OK) == 0 ? DeviceState::Ready : DeviceState::NoPermission;
}

std::string GroupOfDevice(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) return {};
  if ((device.st_mode & S_IRGRP) == 0 || (device.st_mode & S_IWGRP) == 0) return {};
  const group* owner = getgrgid(device.st_gid);
  return owner == nullptr ? std::string() : owner->gr_name;
}

pid_t UserOfDevice(const std::string& path) {
  struct stat device {};
  if (stat(path.c_str(), &device) != 0) return 0;
  const pid_t locker = LockerOf(device);
  // The simulated Terminal holds its own end of a pseudo-terminal open; only the lock tells there.
  if (locker != 0 || IsPseudoTerminal(path)) return locker;
  const pid_t holder = DeviceLock().HolderOf(path);
  return holder != 0 ? holder : OpenerOf(path);
}

bool IsPseudoTerminal(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real != nullptr && std::string(real.get()).starts_with("/dev/pts/");
}

}  // namespace kelvo
