#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

// What the Terminal keeps without power, and the file that it lies in between runs:
//
//   file     = "KEEP" version records check
//   version  = 0x01
//   records  = { kind number length bytes }
//   kind     = 1 configuration, 2 macro, 3 keyboard table, 4 bitmap (one byte)
//   number   = one byte; 0 for the configuration
//   length   = number of bytes, two bytes, the lower one first
//   check    = FNV-1a of everything before it, four bytes, the lowest one first
//
// A record takes as much of the memory as it takes of the file.

namespace kelvo::sim {

class Eeprom {
 public:
  enum class Kind : unsigned char { Config = 1, Macro = 2, KeyTable = 3, Bitmap = 4 };
  using Key = std::pair<Kind, unsigned char>;

  static constexpr int kRecordOverhead = 4;  ///< bytes that a record takes beside its content
  static constexpr int kMaxCapacity = 65536;

  /// Capacity in bytes, overheads included; brought into 0..kMaxCapacity.
  explicit Eeprom(int capacity);

  int Capacity() const { return capacity_; }
  int Free() const { return capacity_ - used_; }
  /// Grows with every change.
  std::uint64_t Revision() const { return revision_; }

  /// Replaces a record of the same key. False, and nothing changed, when there is no room.
  bool Write(Kind kind, unsigned char number, std::string_view bytes);
  /// A record that is not there is no error: it is gone afterwards either way.
  void Delete(Kind kind, unsigned char number);
  void Erase();
  std::optional<std::string> Read(Kind kind, unsigned char number) const;
  const std::map<Key, std::string>& Records() const { return records_; }

  /// The file's content.
  std::string Save() const;
  /// False, and an empty memory, when this is no such file, it is damaged, or it holds more than
  /// there is room for.
  bool Load(std::string_view file);

 private:
  bool LoadRecords(std::string_view records);

  int capacity_;
  int used_ = 0;
  std::uint64_t revision_ = 0;
  std::map<Key, std::string> records_;
};

}  // namespace kelvo::sim
