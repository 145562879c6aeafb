#include "widgets/files.h"

#include "store/whole_file.h"

namespace kelvo {

std::optional<std::string> ReadFile(const std::string& path, std::size_t limit) {
  std::string bytes;
  if (ReadWholeFile(path, limit, bytes)) return std::nullopt;
  return bytes;
}

std::optional<std::string> WriteFile(const std::string& path, const std::string& bytes) {
  return WriteWholeFile(path, bytes);
}

}  // namespace kelvo
