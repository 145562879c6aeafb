#include "simulator/eeprom.h"

#include <algorithm>

namespace kelvo::sim {
namespace {

constexpr std::string_view kMagic("KEEP\x01", 5);
constexpr std::size_t kCheckBytes = 4;

std::uint32_t Check(std::string_view bytes) {
  std::uint32_t hash = 2166136261u;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
  return hash;
}

void AppendLittleEndian(std::string& to, std::uint32_t value, std::size_t bytes) {
  for (; bytes > 0; --bytes, value >>= 8) to += static_cast<char>(value & 0xFF);
}

std::uint32_t LittleEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) {
    value = value << 8 | static_cast<unsigned char>(bytes[i - 1]);
  }
  return value;
}

}  // namespace

Eeprom::Eeprom(int capacity) : capacity_(std::clamp(capacity, 0, kMaxCapacity)) {}

bool Eeprom::Write(Kind kind, unsigned char number, std::string_view bytes) {
  const auto old = records_.find({kind, number});
  const int oldSize =
      old == records_.end() ? 0 : static_cast<int>(old->second.size()) + kRecordOverhead;
  if (bytes.size() > 0xFFFF) return false;
  const int size = static_cast<int>(bytes.size()) + kRecordOverhead;
  if (size > Free() + oldSize) return false;
  records_[{kind, number}] = bytes;
  used_ += size - oldSize;
  ++revision_;
  return true;
}

void Eeprom::Delete(Kind kind, unsigned char number) {
  const auto record = records_.find({kind, number});
  if (record == records_.end()) return;
  used_ -= static_cast<int>(record->second.size()) + kRecordOverhead;
  records_.erase(record);
  ++revision_;
}

void Eeprom::Erase() {
  records_.clear();
  used_ = 0;
  ++revision_;
}

std::optional<std::string> Eeprom::Read(Kind kind, unsigned char number) const {
  const auto record = records_.find({kind, number});
  if (record == records_.end()) return std::nullopt;
  return record->second;
}

std::string Eeprom::Save() const {
  std::string file(kMagic);
  for (const auto& [key, bytes] : records_) {
    file += static_cast<char>(key.first);
    file += static_cast<char>(key.second);
    AppendLittleEndian(file, static_cast<std::uint32_t>(bytes.size()), 2);
    file += bytes;
  }
  AppendLittleEndian(file, Check(file), kCheckBytes);
  return file;
}

bool Eeprom::Load(std::string_view file) {
  Erase();
  if (!file.starts_with(kMagic) || file.size() < kMagic.size() + kCheckBytes) return false;
  const std::string_view checked = file.substr(0, file.size() - kCheckBytes);
  const bool whole = LittleEndian(file.substr(checked.size())) == Check(checked) &&
                     LoadRecords(checked.substr(kMagic.size()));
  if (!whole) Erase();
  return whole;
}

bool Eeprom::LoadRecords(std::string_view records) {
  constexpr std::size_t kHead = kRecordOverhead;
  while (!records.empty()) {
    if (records.size() < kHead) return false;
    const auto kind = static_cast<unsigned char>(records[0]);
    const std::size_t length = LittleEndian(records.substr(2, 2));
    if (kind < 1 || kind > 4 || records.size() - kHead < length) return false;
    const auto number = static_cast<unsigned char>(records[1]);
    if (!Write(static_cast<Kind>(kind), number, records.substr(kHead, length))) return false;
    records.remove_prefix(kHead + length);
  }
  return true;
}

}  // namespace kelvo::sim
