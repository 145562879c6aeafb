#include "simulator/files.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kelvo::sim {

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
