#include "inventory/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "store/data_folder.h"

namespace kelvo {
namespace {

constexpr mode_t kMode = 0644;

class Descriptor {
 public:
  Descriptor(const std::string& path, int flags)
      : descriptor_(open(path.c_str(), flags | O_CLOEXEC, kMode)) {}
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return descriptor_; }
  bool IsOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

// 0, or the system's number of the reason.
int Sync(int file) { return fsync(file) == 0 ? 0 : errno; }

// A new file's name, too, must be on the disc.
int SyncFolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const Descriptor descriptor(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
  return descriptor.IsOpen() ? Sync(descriptor.Get()) : errno;
}

bool EndsTorn(int file, off_t size) {
  char last = '\n';
  return size > 0 && pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

int AppendLine(int file, const std::string& path, std::string_view line) {
  if (flock(file, LOCK_EX) != 0) return errno;
  struct stat status {};
  if (fstat(file, &status) != 0) return errno;
  std::string text = EndsTorn(file, status.st_size) ? "\n" : "";
  text += line;
  const ssize_t written = write(file, text.data(), text.size());
  if (written < 0) return errno;
  if (static_cast<std::size_t>(written) != text.size()) return ENOSPC;
  const int error = Sync(file);
  return error != 0 || status.st_size > 0 ? error : SyncFolderOf(path);
}

std::string ReadFrom(int file, std::uint64_t from, std::uint64_t to) {
  std::string text(static_cast<std::size_t>(to - from), '\0');
  std::size_t read = 0;
  while (read < text.size()) {
    const ssize_t count =
        pread(file, text.data() + read, text.size() - read, static_cast<off_t>(from + read));
    if (count <= 0) break;
    read += static_cast<std::size_t>(count);
  }
  text.resize(read);
  return text;
}

}  // namespace

std::optional<std::string> JournalFile::Append(std::string_view line) const {
  const Descriptor file(path_, O_RDWR | O_APPEND | O_CREAT);
  const int error = file.IsOpen() ? AppendLine(file.Get(), path_, line) : errno;
  if (error == 0) return std::nullopt;
  return FileReason(error);
}

JournalFile::Lines JournalFile::Read() {
  Lines news;
  const Descriptor file(path_, O_RDONLY);
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Get(), &status) != 0) return news;
  const auto size = static_cast<std::uint64_t>(status.st_size);
  news.anew = inode_ != status.st_ino || size < read_;
  if (news.anew) read_ = 0;
  inode_ = status.st_ino;
  const std::string text = ReadFrom(file.Get(), read_, size);
  std::size_t at = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', at)) {
    news.lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  read_ += at;
  return news;
}

}  // namespace kelvo
