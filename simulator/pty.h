#pragma once

#include <string>
#include <string_view>

#include "simulator/line.h"

namespace kelvo::sim {

/// A file handle that closes itself.
class Handle {
 public:
  Handle() = default;
  explicit Handle(int fd) : fd_(fd) {}
  Handle(Handle&& other) noexcept : fd_(other.Release()) {}
  Handle& operator=(Handle&& other) noexcept;
  ~Handle();
  int Get() const { return fd_; }
  bool Open() const { return fd_ >= 0; }
  void Close();

 private:
  int Release();
  int fd_ = -1;
};

/// A serial port that exists only here: the host opens the one end as its port, this is the other.
class Pty {
 public:
  /// Opens a new one, set so that every character passes unchanged. Throws std::system_error.
  Pty();

  /// Path that the host opens.
  const std::string& HostPath() const { return hostPath_; }
  /// Handle to wait on for what the host sends.
  int Get() const { return master_.Get(); }

  struct Received {
    std::string bytes;
    /// The host has given up what it had sent before `bytes`, as far as it has not left yet.
    bool discarded = false;
    /// The host has switched XON/XOFF on or off, as it does when it opens its port.
    bool handshakeSet = false;
  };
  /// The next piece of what the host has sent; empty when that is nothing.
  Received Read();
  /// What the host does not take in time is lost, as on a wire.
  void Write(std::string_view bytes);
  /// The rate, stop bits and handshake that the host has set; a pty keeps no data bits and no
  /// parity.
  HostFraming Framing() const;

 private:
  Handle master_;
  // Kept open, so that the host can close and open again without a hang-up here.
  Handle keeper_;
  std::string hostPath_;
};

/// Makes a pty known under a fixed path for as long as this lives.
class PortLink {
 public:
  /// Takes the place of a link that is there already; throws std::runtime_error, in German, when
  /// something else is, or it cannot be made.
  PortLink(std::string path, std::string target);
  PortLink(const PortLink&) = delete;
  PortLink& operator=(const PortLink&) = delete;
  /// Leaves a link alone that meanwhile leads elsewhere.
  ~PortLink();

 private:
  std::string path_;
  std::string target_;
};

}  // namespace kelvo::sim
