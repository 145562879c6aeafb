#include "adapters/port_handle.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <thread>
#include <utility>

namespace kelvo {
namespace {

using std::chrono::nanoseconds;

// What the system adds to a sleep; a shorter wait looks again and again instead.
constexpr std::chrono::microseconds kTimerSlack{50};

PortError OpenError(int error) {
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
      return PortNotAvailable;
    case EACCES:
    case EPERM:
      return PortNoPermission;
    case EBUSY:
      return PortInUse;
    default:
      return PortDeviceError;
  }
}

int ErrorUnlessPassing() { return errno == EAGAIN || errno == EINTR ? 0 : errno; }

}  // namespace

PortError PortHandle::Open(const std::string& path) {
  handle_ = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (handle_ < 0) return OpenError(errno);
  // The exclusive mode of a terminal does not stop the administrator; a file lock does.
  const bool locked = flock(handle_, LOCK_EX | LOCK_NB) == 0;
  if (!locked || MakeRaw() != 0) {
    close(std::exchange(handle_, -1));
    return locked ? PortDeviceError : PortInUse;
  }
  ioctl(handle_, TIOCEXCL);
  // What was written before has been sent; a pseudo-terminal's reader may still have it to fetch.
  tcflush(handle_, TCIFLUSH);
  return PortOk;
}

void PortHandle::Close() {
  if (handle_ < 0) return;
  ioctl(handle_, TIOCNXCL);
  close(std::exchange(handle_, -1));
}

int PortHandle::RequestToSend() {
  const int line = TIOCM_RTS;
  const bool none = ioctl(handle_, TIOCMBIS, &line) != 0;
  return none && errno != ENOTTY && errno != EINVAL ? errno : 0;
}

std::string PortHandle::Read(int& error) {
  std::string text;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t count = read(handle_, buffer.data(), buffer.size());
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
    // Without a character to give, a line that is in order says so; it has no end.
    error = count == 0 ? EIO : count < 0 ? ErrorUnlessPassing() : 0;
    if (count < static_cast<ssize_t>(buffer.size())) return text;
  }
}

std::size_t PortHandle::Write(std::string_view text, int& error) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(handle_, text.data() + written, text.size() - written);
    error = count < 0 ? ErrorUnlessPassing() : 0;
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  return written;
}

std::size_t PortHandle::Queued() const {
  int queued = 0;
  const bool known = ioctl(handle_, TIOCOUTQ, &queued) == 0 && queued > 0;
  return known ? static_cast<std::size_t>(queued) : 0;
}

void PortHandle::DiscardOutput() { tcflush(handle_, TCOFLUSH); }

bool PortHandle::HungUp() const { return Wait({}, nanoseconds(0)); }

bool PortHandle::Wait(Events events, nanoseconds longest) const {
  const int wanted = (events.readable ? POLLIN : 0) | (events.writable ? POLLOUT : 0);
  pollfd entry{handle_, static_cast<short>(wanted), 0};
  const auto end = std::chrono::steady_clock::now() + longest;
  if (longest >= kTimerSlack) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(longest);
    const timespec time{seconds.count(), (longest - seconds).count()};
    return ppoll(&entry, 1, &time, nullptr) > 0;
  }
  while (poll(&entry, 1, 0) <= 0) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::yield();
  }
  return true;
}

}  // namespace kelvo
