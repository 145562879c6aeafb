#include "cli/files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "store/data_folder.h"
#include "store/own_files.h"

namespace kelvo::cli {
namespace {

constexpr std::size_t kLargestFile = 64U << 20U;
constexpr std::size_t kBlock = 65536;

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

[[noreturn]] void Refuse(const std::string& path, const char* what, const std::string& why) {
  throw std::runtime_error("Die Datei \"" + path + "\" kann nicht " + what + " werden: " + why +
                           ".");
}

// Whether all of it is on the disc; errno says why not.
bool WriteTo(const std::string& path, const std::string& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                       std::fflush(file) == 0 && fsync(fileno(file)) == 0;
  const int error = errno;
  const bool closed = std::fclose(file) == 0;
  if (!written) errno = error;
  return written && closed;
}

}  // namespace

std::string ReadWhole(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) {
    Refuse(path, "gelesen", "sie ist ein Ordner");
  }
  const File file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) Refuse(path, "gelesen", FileReason(errno));
  std::string bytes;
  std::size_t read = 0;
  do {
    bytes.resize(bytes.size() + kBlock);
    read = std::fread(bytes.data() + (bytes.size() - kBlock), 1, kBlock, file.get());
    bytes.resize(bytes.size() - kBlock + read);
    if (bytes.size() > kLargestFile) Refuse(path, "gelesen", "sie ist zu groß");
  } while (read == kBlock);
  if (std::ferror(file.get()) != 0) Refuse(path, "gelesen", FileReason(errno));
  return bytes;
}

void WriteWhole(const std::string& path, const std::string& bytes, const std::string& dataFolder) {
  if (IsOwnFile(dataFolder, path)) Refuse(path, "geschrieben", "sie gehört kelvo selbst");
  std::error_code ignored;
  // What a link leads to is replaced, not the link; a device or a pipe is written to.
  const std::string real = std::filesystem::weakly_canonical(path, ignored).string();
  const std::string& target = real.empty() ? path : real;
  const bool other = std::filesystem::exists(target, ignored) &&
                     !std::filesystem::is_regular_file(target, ignored);
  const std::string fresh = other ? target : target + "." + std::to_string(getpid());
  if (WriteTo(fresh, bytes) && (other || std::rename(fresh.c_str(), target.c_str()) == 0)) return;
  const std::string why = FileReason(errno);
  if (!other) std::remove(fresh.c_str());
  Refuse(path, "geschrieben", why);
}

}  // namespace kelvo::cli
