#pragma once

#include <QLockFile>
#include <memory>
#include <string>

namespace kelvo {

/// The lock file by which serial programs since the days of UUCP leave a device to each other.
class DeviceLock {
 public:
  explicit DeviceLock(std::string folder = "/run/lock") : folder_(std::move(folder)) {}

  /// `device`: the device's path. False when a program that runs holds the lock. Where no lock can
  /// be made, for want of the folder or of permission, there is nothing to be had and nothing held.
  bool Take(const std::string& device);
  void Release() { lock_.reset(); }

 private:
  std::string FileOf(const std::string& device) const;

  std::string folder_;
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace kelvo
