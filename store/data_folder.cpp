#include "store/data_folder.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace kelvo {
namespace {

namespace fs = std::filesystem;

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return home;
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
// it gets its name. (std::filesystem's copy takes a full disc for a fault of the disc.)
std::error_code Copy(const std::string& from, const std::string& to) {
  const int source = open(from.c_str(), O_RDONLY | O_CLOEXEC);
  const int copy =
      source < 0 ? -1 : open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  ssize_t count = copy < 0 ? -1 : 1;
  while (count > 0) count = sendfile(copy, source, nullptr, std::size_t{1} << 20);
  if (count == 0) count = fsync(copy);
  const int error = count < 0 ? errno : 0;
  for (const int file : {source, copy}) {
    if (file >= 0) close(file);
  }
  return {error, std::generic_category()};
}

// Gives the finished copy its name. A program that was started at the same time may have been
// sooner: its file may be in use already and stays. Some file systems know no second name for a
// file; there the copy is renamed.
std::error_code Place(const std::string& copy, const std::string& name) {
  std::error_code error;
  fs::create_hard_link(copy, name, error);
  if (!error || error == std::errc::file_exists) return {};
  fs::rename(copy, name, error);
  return error;
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
    default:
      return std::strerror(error);
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
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return;
  const std::string fresh = to + '.' + std::to_string(getpid());
  error = Copy(from, fresh);
  if (!error) error = Place(fresh, to);
  std::error_code ignored;
  fs::remove(fresh, ignored);
  if (!error) return;
  throw std::runtime_error("Die Datenbank \"" + to + "\" kann nicht aus \"" + from +
                           "\" angelegt werden: " + FileReason(error.value()) + ".");
}

}  // namespace kelvo
