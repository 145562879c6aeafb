// Apart from port_handle_unix.cpp, because the kernel's own termios, which alone knows a rate that
// has no name (14400, 4000000), cannot be included together with the C library's.

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstdlib>

#include "adapters/port_handle.h"

namespace kelvo {
namespace {

constexpr tcflag_t kFrameFlags = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR;

// Characters that come damaged are dropped; everything else passes as it is.
void SetRaw(termios2& settings) {
  settings.c_iflag = IGNPAR;
  settings.c_oflag = 0;
  settings.c_lflag = 0;
  settings.c_cflag |= CREAD | CLOCAL;
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
}

tcflag_t ParityFlags(char parity) {
  switch (parity) {
    case 'S':
      return PARENB | CMSPAR;
    case 'O':
      return PARENB | PARODD;
    case 'E':
      return PARENB;
    default:
      return 0;
  }
}

tcflag_t FrameFlags(const LineSettings& line) {
  const tcflag_t bits = line.bits == 7 ? CS7 : CS8;
  const tcflag_t stopBits = line.stopBits == 2 ? CSTOPB : 0;
  return bits | stopBits | ParityFlags(line.parity);
}

void SetLine(termios2& settings, const LineSettings& line) {
  // Without a rate of its own for the input that is the output's.
  settings.c_cflag &= ~(kFrameFlags | CBAUD | (CBAUD << IBSHIFT) | CRTSCTS);
  settings.c_cflag |= FrameFlags(line) | BOTHER;
  settings.c_ospeed = settings.c_ispeed = static_cast<speed_t>(line.baud);
  if (line.handshaking == Handshaking::RtsCts) {
    settings.c_cflag |= CRTSCTS;
  } else {
    settings.c_iflag |= IXON | IXOFF;
    settings.c_cc[VSTART] = 17;
    settings.c_cc[VSTOP] = 19;
  }
}

// A driver that cannot do something takes what comes nearest and says nothing. A rate that is off
// by a twentieth is half a bit off at a character's end.
bool IsSet(const termios2& settings, const LineSettings& line) {
  const long off = std::labs(static_cast<long>(settings.c_ospeed) - line.baud);
  return (settings.c_cflag & kFrameFlags) == FrameFlags(line) && off * 20 < line.baud;
}

}  // namespace

int PortHandle::MakeRaw() {
  termios2 settings{};
  if (ioctl(handle_, TCGETS2, &settings) != 0) return errno;
  SetRaw(settings);
  return ioctl(handle_, TCSETS2, &settings) == 0 ? 0 : errno;
}

int PortHandle::SetUp(const LineSettings& line) {
  if (line.baud <= 0) return EINVAL;
  termios2 settings{};
  if (ioctl(handle_, TCGETS2, &settings) != 0) return errno;
  SetRaw(settings);
  SetLine(settings, line);
  if (ioctl(handle_, TCSETS2, &settings) != 0) return errno;
  if (ioctl(handle_, TCGETS2, &settings) != 0) return errno;
  return IsSet(settings, line) ? 0 : EINVAL;
}

}  // namespace kelvo
