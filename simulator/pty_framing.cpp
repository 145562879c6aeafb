// Apart from pty.cpp, because the kernel's own termios, which alone tells a rate that has no name
// (14400), cannot be included together with the C library's.

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include "simulator/pty.h"

namespace kelvo::sim {

HostFraming Pty::Framing() const {
  termios2 settings{};
  if (ioctl(master_.Get(), TCGETS2, &settings) != 0) return {};
  HostFraming framing;
  framing.baud = static_cast<int>(settings.c_ospeed);
  framing.stopBits = (settings.c_cflag & CSTOPB) != 0 ? 2 : 1;
  if ((settings.c_iflag & IXON) != 0) framing.handshake = HostHandshake::XonXoff;
  if ((settings.c_cflag & CRTSCTS) != 0) framing.handshake = HostHandshake::RtsCts;
  return framing;
}

}  // namespace kelvo::sim
