#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>

namespace kelvo::testing_world {

/// A serial device that can be pulled out and plugged in again, with the test itself at its other
/// end. It has one name all the time.
class PulledLine {
 public:
  explicit PulledLine(std::string name) : name_(std::move(name)) { Plug(); }
  ~PulledLine() { Pull(); }
  PulledLine(const PulledLine&) = delete;
  PulledLine& operator=(const PulledLine&) = delete;

  void Plug() {
    if (handle_ >= 0) return;
    handle_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle_ < 0 || grantpt(handle_) != 0 || unlockpt(handle_) != 0) {
      throw std::runtime_error("no pseudo-terminal");
    }
    termios raw{};
    tcgetattr(handle_, &raw);
    cfmakeraw(&raw);
    tcsetattr(handle_, TCSANOW, &raw);
    char device[64];  // NOLINT(modernize-avoid-c-arrays)
    ptsname_r(handle_, device, sizeof device);
    std::remove(name_.c_str());
    if (symlink(device, name_.c_str()) != 0) throw std::runtime_error("no link " + name_);
  }
  void Pull() {
    if (handle_ < 0) return;
    std::remove(name_.c_str());
    close(std::exchange(handle_, -1));
  }
  /// All that has come until now.
  std::string Heard() {
    char bytes[4096];  // NOLINT(modernize-avoid-c-arrays)
    std::string text;
    for (ssize_t count = 0; (count = read(handle_, bytes, sizeof bytes)) > 0;) {
      text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
  }
  /// Nothing more is taken, as long as the device is set to listen to that.
  void Stop() { Say("\x13"); }
  void Say(const std::string& text) {
    if (write(handle_, text.data(), text.size()) < 0) throw std::runtime_error("line is full");
  }

 private:
  const std::string name_;
  int handle_ = -1;
};

}  // namespace kelvo::testing_world
