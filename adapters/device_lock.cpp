#include "adapters/device_lock.h"

#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace kelvo {
namespace {

struct Holder {
  pid_t process = 0;   // 0 for none
  bool alone = false;  // its number is all that the lock holds
};

Holder HolderOf(const std::string& file) {
  std::ifstream lock(file);
  Holder holder;
  std::string rest;
  if (!(lock >> holder.process)) return {};
  std::getline(lock, rest);
  holder.alone = !std::getline(lock, rest);
  return holder;
}

bool Runs(pid_t process) { return process > 0 && (kill(process, 0) == 0 || errno == EPERM); }

}  // namespace

bool DeviceLock::Take(const std::string& device) {
  const std::string file = FileOf(device);
  const Holder holder = HolderOf(file);
  const bool runs = Runs(holder.process);
  // Most programs write one line; QLockFile, which adds lines of its own, would take a lock without
  // them for abandoned, or for held for ever.
  if (holder.alone && runs) return false;
  std::error_code ignored;
  if (holder.alone) std::filesystem::remove(file, ignored);
  lock_ = std::make_unique<QLockFile>(QString::fromStdString(file));
  lock_->setStaleLockTime(0);
  if (lock_->tryLock() || lock_->error() != QLockFile::LockFailedError) return true;
  // An abandoned lock that may not be removed keeps nobody off.
  return holder.process != 0 && !runs;
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
