#pragma once

namespace kelvo::sim {

/// How a character looks on the wire: a start bit, data bits from the lowest on, a parity bit if
/// there is one, and then the idle line.
struct Frame {
  int baud = 0;    ///< bits a second; 0 = not known, taken to be the other end's
  int bits = 8;    ///< 7 or 8; 0 = not known, then bits and parity are taken to be the other end's
  int parity = 0;  ///< numbered as in "!B": 0 none, 1 space, 2 odd, 3 even

  bool operator==(const Frame&) const = default;
};

/// Bits of one character, start bit included and stop bits not.
int FrameBits(const Frame& frame);

/// What a receiver makes of a character that was sent in another frame than its own: it looks at
/// the line at its own bit times, and a character whose parity or stop bit is not as it must be
/// arrives with its highest bit wrong. Equal frames give the character itself, of 7 bits those 7.
unsigned char Resampled(unsigned char byte, Frame sender, Frame receiver);

}  // namespace kelvo::sim
