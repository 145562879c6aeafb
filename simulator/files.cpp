#include "simulator/files.h"

#include <filesystem>
#include <fstream>

#include "store/whole_file.h"

namespace kelvo::sim {
namespace {

constexpr std::size_t kLargestText = 1U << 30U;

}  // namespace

std::optional<std::string> ReadWhole(const std::string& path, std::string& text) {
  const auto reason = ReadWholeFile(path, kLargestText, text, FileKind::Any);
  if (!reason) return std::nullopt;
  return "kann nicht gelesen werden: " + *reason;
}

std::optional<std::string> FolderReason(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(path, ignored)) return std::nullopt;
  return "das ist ein Ordner";
}

bool ReplaceFile(const std::string& path, std::string_view bytes) {
  return !WriteWholeFile(path, bytes, FileKind::Own, Until::Written);
}

EepromFile LoadEeprom(const std::string& path, Eeprom& eeprom) {
  eeprom.Erase();
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return EepromFile::Missing;
  if (!std::filesystem::is_regular_file(path, error)) return EepromFile::Damaged;
  std::ifstream file(path, std::ios::binary);
  // Somewhat more than the largest EEPROM; a longer file is none.
  std::string bytes(std::size_t{2} * Eeprom::kMaxCapacity, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return eeprom.Load(bytes) ? EepromFile::Loaded : EepromFile::Damaged;
}

}  // namespace kelvo::sim
