#include "simulator/frame.h"

#include <bit>
#include <cstdint>

namespace kelvo::sim {
namespace {

constexpr unsigned char kDamage = 0x80;

unsigned DataOf(unsigned byte, const Frame& frame) { return frame.bits == 7 ? byte & 0x7F : byte; }

unsigned ParityOf(unsigned data, const Frame& frame) {
  const auto ones = static_cast<unsigned>(std::popcount(data));
  return frame.parity == 1 ? 0 : frame.parity == 2 ? (ones + 1) & 1 : ones & 1;
}

// All bits in the order in which they are sent, the first one lowest; above them the idle line.
std::uint64_t OnTheWire(unsigned char byte, const Frame& frame) {
  const std::uint64_t data = DataOf(byte, frame);
  std::uint64_t wire = ~std::uint64_t{0} << FrameBits(frame) | data << 1;
  if (frame.parity != 0)
    wire |= std::uint64_t{ParityOf(DataOf(byte, frame), frame)} << (frame.bits + 1);
  return wire;
}

void TakeUnknown(Frame& frame, const Frame& other) {
  if (frame.baud <= 0) frame.baud = other.baud;
  if (frame.bits != 0) return;
  frame.bits = other.bits;
  frame.parity = other.parity;
}

}  // namespace

int FrameBits(const Frame& frame) {
  return 1 + (frame.bits == 7 ? 7 : 8) + (frame.parity != 0 ? 1 : 0);
}

unsigned char Resampled(unsigned char byte, Frame sender, Frame receiver) {
  TakeUnknown(sender, receiver);
  TakeUnknown(receiver, sender);
  if (sender == receiver) return static_cast<unsigned char>(DataOf(byte, sender));
  const std::uint64_t wire = OnTheWire(byte, sender);
  // The middle of a bit of the receiver, in bits of the sender.
  const auto seen = [&](int bit) {
    const std::int64_t position = (2 * bit + 1) * std::int64_t{sender.baud} / 2 / receiver.baud;
    return position > 63 ? 1U : static_cast<unsigned>(wire >> position & 1);
  };
  const int last = FrameBits(receiver) - 1;
  const int dataBits = receiver.parity != 0 ? last - 1 : last;
  unsigned data = 0;
  for (int bit = 0; bit < dataBits; ++bit) data |= seen(bit + 1) << bit;
  const bool parityGood = receiver.parity == 0 || seen(last) == ParityOf(data, receiver);
  const bool whole = parityGood && seen(last + 1) == 1;
  return static_cast<unsigned char>(whole ? data : data ^ kDamage);
}

}  // namespace kelvo::sim
