#include "simulator/files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "store/data_folder.h"

namespace kelvo::sim {

std::optional<std::string> ReadWhole(const std::string& path, std::string& text) {
  constexpr std::size_t kBlock = 65536;
  const std::string cannot = "kann nicht gelesen werden: ";
  if (auto reason = FolderReason(path)) return cannot + *reason;
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) return cannot + FileReason(errno);
  std::string block(kBlock, '\0');
  text.clear();
  do {
    file.read(block.data(), static_cast<std::streamsize>(kBlock));
    text.append(block, 0, static_cast<std::size_t>(file.gcount()));
  } while (file);
  if (file.bad()) return cannot + FileReason(errno);
  return std::nullopt;
}

std::optional<std::string> FolderReason(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(path, ignored)) return std::nullopt;
  return "das ist ein Ordner";
}

bool ReplaceFile(const std::string& path, std::string_view bytes) {
  const std::string fresh = path + "." + std::to_string(getpid());
  {
    std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
      std::remove(fresh.c_str());
      return false;
    }
  }
  if (std::rename(fresh.c_str(), path.c_str()) == 0) return true;
  std::remove(fresh.c_str());
  return false;
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

std::string ProgramFolder() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? "." : program.parent_path().string();
}

}  // namespace kelvo::sim
