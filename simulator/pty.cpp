#include "simulator/pty.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "store/data_folder.h"

namespace kelvo::sim {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::runtime_error("Ein Pseudo-Terminal kann nicht angelegt werden (" + std::string(what) +
                           "): " + FileReason(errno));
}

void MakeRaw(int fd) {
  termios settings{};
  if (tcgetattr(fd, &settings) != 0) Fail("tcgetattr");
  cfmakeraw(&settings);
  if (tcsetattr(fd, TCSANOW, &settings) != 0) Fail("tcsetattr");
}

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  if (this != &other) {
    Close();
    fd_ = other.Release();
  }
  return *this;
}

Handle::~Handle() { Close(); }

void Handle::Close() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

int Handle::Release() { return std::exchange(fd_, -1); }

Pty::Pty() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  if (!master_.Open()) Fail("posix_openpt");
  if (grantpt(master_.Get()) != 0 || unlockpt(master_.Get()) != 0) Fail("unlockpt");
  std::array<char, 64> name{};
  if (ptsname_r(master_.Get(), name.data(), name.size()) != 0) Fail("ptsname_r");
  hostPath_ = name.data();
  keeper_ = Handle(open(hostPath_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!keeper_.Open()) Fail(hostPath_.c_str());
  MakeRaw(keeper_.Get());
  // Packet mode tells when the host empties its output buffer or sets its handshake, which a real
  // port would take notice of too.
  int on = 1;
  if (ioctl(master_.Get(), TIOCPKT, &on) != 0) Fail("TIOCPKT");
}

Pty::Received Pty::Read() {
  std::array<char, 4096> packet;
  const ssize_t count = read(master_.Get(), packet.data(), packet.size());
  if (count <= 0) return {};
  const auto told = static_cast<unsigned char>(packet[0]);
  if (told != TIOCPKT_DATA) {
    return {{}, (told & TIOCPKT_FLUSHWRITE) != 0, (told & (TIOCPKT_DOSTOP | TIOCPKT_NOSTOP)) != 0};
  }
  return {std::string(packet.data() + 1, static_cast<std::size_t>(count - 1))};
}

void Pty::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(master_.Get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

PortLink::PortLink(std::string path, std::string target)
    : path_(std::move(path)), target_(std::move(target)) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_status there = fs::symlink_status(path_, error);
  error = {};
  if (fs::exists(there) && !fs::is_symlink(there)) {
    error = std::make_error_code(std::errc::file_exists);
  }
  const std::string fresh = path_ + "." + std::to_string(getpid());
  std::error_code ignored;
  if (!error) fs::remove(fresh, ignored);
  if (!error) fs::create_symlink(target_, fresh, error);
  if (!error) fs::rename(fresh, path_, error);  // a reader sees the old link or the new one
  if (!error) return;
  fs::remove(fresh, ignored);
  throw std::runtime_error("Der Anschluss \"" + path_ +
                           "\" kann nicht angelegt werden: " + FileReason(error.value()));
}

PortLink::~PortLink() {
  std::error_code error;
  if (std::filesystem::read_symlink(path_, error) == target_) {
    std::filesystem::remove(path_, error);
  }
}

}  // namespace kelvo::sim
