#include "store/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "store/data_folder.h"
#include "store/file_calls.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 200;  // bytes, so that there is room for more behind it
constexpr int kNamesToTry = 100;
constexpr mode_t kPermissions = 07777;
constexpr mode_t kMayRun = 07111;

// How a file is replaced.
struct Way {
  FileKind kind;
  Until until;
  bool replaces = false;  // a file
  mode_t mode = 0666;
};

std::optional<std::string> Reason(int error) {
  if (error == 0) return std::nullopt;
  return FileReason(error);
}

// A pipe that nobody writes to would keep whoever opens it.
int ReadingFlags(FileKind kind) {
  if (kind == FileKind::Any) return O_RDONLY;
  return O_RDONLY | O_NONBLOCK | (kind == FileKind::Own ? O_NOFOLLOW : 0);
}

std::optional<std::string> WrongKind(const struct stat& state, FileKind kind) {
  if (S_ISDIR(state.st_mode)) return "das ist ein Ordner";
  if (kind != FileKind::Any && !S_ISREG(state.st_mode)) return "das ist keine gewöhnliche Datei";
  return std::nullopt;
}

// What a link leads to is replaced, not the link. A loop of links leads nowhere, and says so when
// it is looked at.
std::string Target(const std::string& path, FileKind kind) {
  if (kind == FileKind::Own) return path;
  std::error_code failed;
  const std::string target = fs::weakly_canonical(path, failed).string();
  return failed || target.empty() ? path : target;
}

// The operator's files may be written by several programs at once, one of a program's own by it
// alone: what a program that died has left of it is in nobody's way then.
std::string Beside(const std::string& path, FileKind kind, int number) {
  if (kind == FileKind::Own) return path + ".neu";
  const fs::path whole(path);
  const std::string name = whole.filename().string();
  const std::string more = number == 0 ? "" : "-" + std::to_string(number);
  return (whole.parent_path() / (name.size() > kLongestName ? "kelvo" : name)).string() + "." +
         std::to_string(getpid()) + more;
}

// Under a name that nobody has.
int WriteBeside(const std::string& path, std::string_view bytes, const Way& way,
                std::string& fresh) {
  const bool own = way.kind == FileKind::Own;
  int error = EEXIST;
  for (int number = 0; number < (own ? 1 : kNamesToTry) && error == EEXIST; ++number) {
    fresh = Beside(path, way.kind, number);
    if (own) Files().Remove(fresh);
    error = WriteNewFile(fresh, bytes, way.until, way.mode & ~kMayRun);
  }
  return error;
}

int WriteDirectly(const std::string& path, std::string_view bytes) {
  OpenFile file(path, O_WRONLY);
  if (!file.IsOpen()) return errno;
  const int error = file.Write(bytes);
  const int closed = file.Close();
  return error != 0 ? error : closed;
}

int Replace(const std::string& path, std::string_view bytes, const Way& way) {
  std::string fresh;
  int error = WriteBeside(path, bytes, way, fresh);
  if (error != 0) return error;
  // A umask may have taken some of them away; that is no reason to refuse.
  if (way.replaces) static_cast<void>(fchmodat(AT_FDCWD, fresh.c_str(), way.mode, 0));
  if (Files().Rename(fresh, path) != 0) {
    error = errno;
    Files().Remove(fresh);
    return error;
  }
  return way.until == Until::OnDisc ? SyncFolderOf(path) : 0;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit,
                                         std::string& bytes, FileKind kind) {
  bytes.clear();
  const OpenFile file(path, ReadingFlags(kind));
  struct stat state {};
  if (!file.IsOpen() || fstat(file.Get(), &state) != 0) return FileReason(errno);
  if (auto wrong = WrongKind(state, kind)) return wrong;
  const int error = file.ReadUpTo(limit, bytes);
  if (error == 0 && bytes.size() <= limit) return std::nullopt;
  bytes.clear();
  if (error == 0) return "sie ist zu groß";
  return FileReason(error);
}

std::optional<std::string> WriteWholeFile(const std::string& path, std::string_view bytes,
                                          FileKind kind, Until until) {
  const std::string target = Target(path, kind);
  Way way{kind, until};
  struct stat state {};
  if (lstat(target.c_str(), &state) == 0) {
    if (kind != FileKind::Own && S_ISLNK(state.st_mode)) return FileReason(ELOOP);
    if (auto wrong = kind == FileKind::Own ? std::nullopt : WrongKind(state, kind)) return wrong;
    if (kind == FileKind::Any && !S_ISREG(state.st_mode)) {
      return Reason(WriteDirectly(target, bytes));
    }
    way.replaces = S_ISREG(state.st_mode);
    if (way.replaces) way.mode = state.st_mode & kPermissions;
    // Renaming asks the folder alone.
    if (way.replaces && access(target.c_str(), W_OK) != 0) return FileReason(errno);
  }
  return Reason(Replace(target, bytes, way));
}

int WriteNewFile(const std::string& path, std::string_view bytes, Until until, mode_t mode) {
  OpenFile file(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
  if (!file.IsOpen()) return errno;
  int error = file.Write(bytes);
  if (error == 0 && until == Until::OnDisc) error = file.Sync();
  const int closed = file.Close();
  if (error == 0) error = closed;
  if (error != 0) Files().Remove(path);
  return error;
}

std::optional<std::string> RemoveOwnFile(const std::string& path) {
  if (Files().Remove(path) == 0 || errno == ENOENT) return std::nullopt;
  return FileReason(errno);
}

}  // namespace kelvo
