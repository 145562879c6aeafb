#include "adapters/device_lock.h"

#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace kelvo {
namespace {

// Most programs write their process's number alone, in one line; QLockFile, which adds lines of its
// own, would take a lock without them for abandoned, or for held for ever.
bool AnotherFamilyHolds(const std::string& file) {
  std::ifstream lock(file);
  pid_t holder = 0;
  std::string rest;
  if (!(lock >> holder) || holder <= 0) return false;
  std::getline(lock, rest);
  if (std::getline(lock, rest)) return false;
  if (kill(holder, 0) == 0 || errno == EPERM) return true;
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  return false;
}

}  // namespace

bool DeviceLock::Take(const std::string& device) {
  const std::string file = FileOf(device);
  if (AnotherFamilyHolds(file)) return false;
  lock_ = std::make_unique<QLockFile>(QString::fromStdString(file));
  lock_->setStaleLockTime(0);
  return lock_->tryLock() || lock_->error() != QLockFile::LockFailedError;
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
