#include "store/data_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "store/file_calls.h"
#include "store/whole_file.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestDatabase = 1U << 30U;

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

// As the desktop's rules for a user's files have it: a relative path does not count.
std::string UserDataFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  const bool given = data != nullptr && *data == '/';
  return (given ? std::string(data) : HomeFolder() + "/.local/share") + "/kelvo";
}

// A copy that the user may write, whatever the delivered file allows, and that is on the disc when
// it gets its name. What a program that died has left of one is in nobody's way.
std::optional<std::string> Copy(const std::string& from, const std::string& to) {
  std::string bytes;
  if (auto reason = ReadWholeFile(from, kLargestDatabase, bytes)) return reason;
  Files().Remove(to);
  const int error = WriteNewFile(to, bytes, Until::OnDisc, 0644);
  if (error == 0) return std::nullopt;
  return FileReason(error);
}

// Gives the finished copy its name. A program that was started at the same time may have been
// sooner: its file may be in use already and stays. Some file systems know no second name for a
// file; there the copy is renamed.
std::optional<std::string> Place(const std::string& copy, const std::string& name) {
  std::error_code error;
  fs::create_hard_link(copy, name, error);
  int failed = 0;
  if (error && error != std::errc::file_exists && Files().Rename(copy, name) != 0) failed = errno;
  if (failed == 0) failed = SyncFolderOf(name);
  if (failed == 0) return std::nullopt;
  return FileReason(failed);
}

}  // namespace

std::string FileReason(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return "keine Berechtigung";
    case EROFS:
      return "der Datenträger ist schreibgeschützt";
    case ENOSPC:
    case EDQUOT:
      return "kein Platz mehr";
    case ENOENT:
      return "nicht gefunden";
    case ENOTDIR:
    case EEXIST:
      return "es gibt dort eine Datei dieses Namens";
    case EISDIR:
      return "das ist ein Ordner";
    case ELOOP:
      return "die Verknüpfung führt zu keiner Datei";
    case ENAMETOOLONG:
      return "der Name ist zu lang";
    case EFBIG:
      return "die Datei darf nicht so groß werden";
    case EIO:
      return "der Datenträger meldet einen Fehler";
    case EBUSY:
    case ETXTBSY:
      return "die Datei ist in Gebrauch";
    case EMFILE:
    case ENFILE:
      return "es sind zu viele Dateien offen";
    case ENXIO:
    case ENODEV:
      return "das Gerät ist nicht da";
    case EINVAL:
      return "das geht dort nicht";
    default:
      return std::string("Systemfehler ") + std::to_string(error) + " (" + std::strerror(error) +
             ")";
  }
}

std::string DataFolder(const DataPlace& place) {
  const std::string& program = place.programFolder;
  const bool system = program.starts_with("/usr/lib/") || program.starts_with("/usr/local/lib/");
  return place.programFolderWritable && !system ? program : place.userDataFolder;
}

std::string DataFolder(const std::string& programFolder) {
  return DataFolder({programFolder, access(programFolder.c_str(), W_OK) == 0, UserDataFolder()});
}

std::string ProgramFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? "." : program.parent_path().string();
}

void MakeDataFolder(const std::string& dataFolder) {
  std::error_code error;
  if (fs::is_directory(dataFolder, error)) return;
  fs::create_directories(fs::path(dataFolder).parent_path(), error);
  if (!error) fs::create_directory(dataFolder, error);
  if (!error) fs::permissions(dataFolder, fs::perms::owner_all, error);
  if (!error) return;
  throw std::runtime_error("Der Ordner \"" + dataFolder +
                           "\" kann nicht angelegt werden: " + FileReason(error.value()) + ".");
}

void TakeDeliveredDatabase(const std::string& programFolder, const std::string& dataFolder) {
  if (dataFolder == programFolder) return;
  MakeDataFolder(dataFolder);
  const std::string from = programFolder + '/' + kDatabaseFile;
  const std::string to = dataFolder + '/' + kDatabaseFile;
  if (IsThere(to)) return;
  const std::string fresh = to + '.' + std::to_string(getpid());
  auto problem = Copy(from, fresh);
  if (!problem) problem = Place(fresh, to);
  static_cast<void>(RemoveOwnFile(fresh));
  if (!problem) return;
  throw std::runtime_error("Die Datenbank \"" + to + "\" kann nicht aus \"" + from +
                           "\" angelegt werden: " + *problem + ".");
}

}  // namespace kelvo
