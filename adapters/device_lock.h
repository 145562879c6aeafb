#pragma once

#include <sys/types.h>

#include <string>

namespace kelvo {

/// A program that runs: "minicom (Prozess 4711)", or its number alone where it has no name for us;
/// "ein Programm" where not even that is known.
std::string ProcessText(pid_t process);

/// The lock file by which serial programs since the days of UUCP leave a device to each other. It
/// holds the number of a process, and counts as long as that runs; one that names none, whatever
/// stands in it, holds nothing.
class DeviceLock {
 public:
  explicit DeviceLock(std::string folder = "/run/lock") : folder_(std::move(folder)) {}
  ~DeviceLock() { Release(); }
  DeviceLock(const DeviceLock&) = delete;
  DeviceLock& operator=(const DeviceLock&) = delete;

  /// `device`: the device's path. False when a program that runs holds the lock. Where no lock can
  /// be made, for want of the folder or of permission, there is nothing to be had and nothing held.
  bool Take(const std::string& device);
  void Release();

  static constexpr pid_t kSomebody = -1;  ///< whose number is not to be had
  /// Who holds the lock of a device, this program included; 0 for nobody.
  pid_t HolderOf(const std::string& device) const;
  /// Where it lies.
  std::string FileOf(const std::string& device) const;

 private:
  bool Make(const std::string& file);

  std::string folder_;
  std::string file_;  // of the lock that is held
  int handle_ = -1;
};

}  // namespace kelvo
