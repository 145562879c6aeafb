#include "inventory/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>

#include "store/data_folder.h"
#include "store/file_calls.h"
#include "store/whole_file.h"

namespace kelvo {
namespace {

constexpr mode_t kMode = 0644;

bool EndsTorn(int file, off_t size) {
  char last = '\n';
  return size > 0 && pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

// A rewritten file has taken the place of the one that was opened.
bool IsStillAt(const std::string& path, int file) {
  struct stat opened {};
  struct stat named {};
  return fstat(file, &opened) == 0 && stat(path.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

// The journal, alone; nothing, with errno, when it cannot be had.
std::unique_ptr<OpenFile> OpenLocked(const std::string& path, int flags) {
  for (;;) {
    auto file = std::make_unique<OpenFile>(path, O_RDWR | O_APPEND | O_CREAT | flags, kMode);
    if (!file->IsOpen() || flock(file->Get(), LOCK_EX) != 0) return nullptr;
    if (IsStillAt(path, file->Get())) return file;
  }
}

int AppendLine(const OpenFile& file, const std::string& path, std::string_view line) {
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) return errno;
  std::string text = EndsTorn(file.Get(), status.st_size) ? "\n" : "";
  text += line;
  const ssize_t written = Files().Write(file.Get(), text.data(), text.size());
  if (written < 0) return errno;
  if (static_cast<std::size_t>(written) != text.size()) return ENOSPC;
  const int error = file.Sync();
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

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

std::string JoinedLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

}  // namespace

int JournalFile::Flags() const { return own_ ? O_NOFOLLOW : 0; }

std::optional<std::string> JournalFile::Append(std::string_view line) const {
  const auto file = OpenLocked(path_, Flags());
  const int error = file ? AppendLine(*file, path_, line) : errno;
  if (error == 0) return std::nullopt;
  return FileReason(error);
}

std::optional<std::string> JournalFile::Rewrite(const Change& change) const {
  const auto file = OpenLocked(path_, Flags());
  struct stat status {};
  if (!file || fstat(file->Get(), &status) != 0) return FileReason(errno);
  const auto size = static_cast<std::uint64_t>(status.st_size);
  const std::string text = ReadFrom(file->Get(), 0, size);
  if (text.size() != size) return FileReason(EIO);  // what was not read would be lost
  // It may itself be a link to where it lies.
  std::error_code failed;
  const std::string real = std::filesystem::canonical(path_, failed).string();
  if (failed) return FileReason(failed.value());
  return WriteWholeFile(real, JoinedLines(change(SplitLines(text))), FileKind::Own);
}

JournalFile::Lines JournalFile::Read() {
  Lines news;
  const OpenFile file(path_, O_RDONLY | Flags());
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
