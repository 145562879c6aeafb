#include "inventory/room.h"

#include <algorithm>

namespace kelvo {
namespace {

// More than any EEPROM has.
constexpr std::int64_t kAnything = 1 << 24;
// What a Terminal may need beside an item's content.
constexpr std::int64_t kOverhead = 64;
// Nobody sees what a configuration consists of.
constexpr std::int64_t kConfig = 4096;

std::int64_t Most(const Item& item) {
  if (item.key.kind == ItemKind::Config) return kConfig;
  return static_cast<std::int64_t>(ItemBytes(item)) + kOverhead;
}

// Tables and bitmaps are packed, nobody knows how tight.
std::int64_t Least(const Item& item) {
  return item.key.kind == ItemKind::Macro ? static_cast<std::int64_t>(ItemBytes(item)) : 0;
}

}  // namespace

void Room::Read(Reading reading) {
  if (reading_ && !lost_ && !begun_) {
    const std::int64_t least = reading_->bytes - mostUsed_;
    const std::int64_t most = reading_->bytes - leastUsed_;
    if (reading.bytes < least || reading.bytes > most) {
      disagreement_ = {*reading_, reading, std::max<std::int64_t>(least, 0), most};
    }
  }
  reading_ = reading;
  leastUsed_ = mostUsed_ = 0;
  changed_ = lost_ = begun_ = false;
}

void Room::Written(const Item& item, const Item* replaced) {
  WrittenAnew(item);
  leastUsed_ -= replaced != nullptr ? Most(*replaced) : kAnything;
}

void Room::WrittenAnew(const Item& item) {
  changed_ = true;
  mostUsed_ += Most(item);
  leastUsed_ += Least(item);
}

void Room::Deleted(const Item* item) {
  changed_ = true;
  leastUsed_ -= item != nullptr ? Most(*item) : kAnything;
  mostUsed_ += kOverhead;
}

}  // namespace kelvo
