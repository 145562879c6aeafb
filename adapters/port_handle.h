#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/serial_port.h"

namespace kelvo {

/// What a serial line is set to.
struct LineSettings {
  int baud = 0;       ///< bits per second
  char parity = 'N';  ///< N(one), S(pace), O(dd) or E(ven)
  int bits = 8;       ///< 7 or 8
  int stopBits = 1;   ///< 1 or 2
  Handshaking handshaking = Handshaking::XOnXOff;

  /// Start and stop bits included.
  int BitsOfCharacter() const { return 1 + bits + (parity == 'N' ? 0 : 1) + stopBits; }
};

/// An open serial device as the operating system gives it. Nothing waits here unless it says so.
/// Errors are the system's numbers, 0 for none; that a device has, or takes, nothing just now is
/// none.
class PortHandle {
 public:
  PortHandle() = default;
  PortHandle(const PortHandle&) = delete;
  PortHandle& operator=(const PortHandle&) = delete;
  ~PortHandle() { Close(); }

  /// For this program alone; every character passes unchanged, and none from before arrives.
  PortError Open(const std::string& path);
  void Close();
  bool IsOpen() const { return handle_ >= 0; }
  int Get() const { return handle_; }

  int SetUp(const LineSettings& line);
  /// Switches the request-to-send line on; a device without one is no error.
  int RequestToSend();

  /// What has arrived.
  std::string Read(int& error);
  /// How much of `text` the device has taken.
  std::size_t Write(std::string_view text, int& error);
  /// Characters that the driver holds and has not sent.
  std::size_t Queued() const;
  void DiscardOutput();
  /// The other end is gone: adapter unplugged, pseudo-terminal closed.
  bool HungUp() const;

  /// What ends a wait, beside a hang-up.
  struct Events {
    bool readable = false;
    bool writable = false;
  };
  /// Waits for one of them, at most `longest`; false when none has come.
  bool Wait(Events events, std::chrono::nanoseconds longest) const;

 private:
  int MakeRaw();

  int handle_ = -1;
};

}  // namespace kelvo
