#include "cli/files.h"

#include <stdexcept>

#include "store/own_files.h"
#include "store/whole_file.h"

namespace kelvo::cli {
namespace {

constexpr std::size_t kLargestFile = 64U << 20U;

[[noreturn]] void Refuse(const std::string& path, const char* what, const std::string& why) {
  throw std::runtime_error("Die Datei \"" + path + "\" kann nicht " + what + " werden: " + why +
                           ".");
}

}  // namespace

std::string ReadWhole(const std::string& path) {
  std::string bytes;
  if (const auto why = ReadWholeFile(path, kLargestFile, bytes, FileKind::Any)) {
    Refuse(path, "gelesen", *why);
  }
  return bytes;
}

void WriteWhole(const std::string& path, const std::string& bytes, const std::string& dataFolder) {
  if (IsOwnFile(dataFolder, path)) Refuse(path, "geschrieben", "sie gehört kelvo selbst");
  if (const auto why = WriteWholeFile(path, bytes, FileKind::Any)) {
    Refuse(path, "geschrieben", *why);
  }
}

}  // namespace kelvo::cli
