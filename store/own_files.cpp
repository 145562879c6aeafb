#include "store/own_files.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>

namespace kelvo {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNames[] = {"bestand.txt", "gelesen.txt",      "kelvo",
                                       "kelvo-cli",   "kelvo-simulator",  "kelvo.hlp",
                                       "kelvo.mdb",   "simulator.eeprom", "simulator.tty"};
// The database's own companions while it is written.
constexpr std::string_view kDatabaseFiles = "kelvo.mdb-";
// Each program and each line has files of its own with these: "kelvo-2.entwurf".
constexpr std::string_view kProgramFiles = "kelvo";
constexpr std::string_view kEndings[] = {".ausstattung", ".entwuerfe", ".entwurf", ".lock"};

// While it is written it has another name.
constexpr std::string_view kFresh = ".neu";

bool IsOwnName(const std::string& file) {
  const bool fresh = file.ends_with(kFresh);
  const std::string name = fresh ? file.substr(0, file.size() - kFresh.size()) : file;
  const auto isName = [&name](std::string_view own) { return name == own; };
  const auto endsSo = [&name](std::string_view ending) { return name.ends_with(ending); };
  return std::any_of(std::begin(kNames), std::end(kNames), isName) ||
         name.starts_with(kDatabaseFiles) ||
         (name.starts_with(kProgramFiles) &&
          std::any_of(std::begin(kEndings), std::end(kEndings), endsSo));
}

bool IsSame(const fs::path& one, const fs::path& other) {
  std::error_code missing;
  return fs::equivalent(one, other, missing) && !missing;
}

}  // namespace

bool IsSameFolder(const std::string& one, const std::string& other) { return IsSame(one, other); }

bool IsOwnFile(const std::string& folder, const std::string& path) {
  std::error_code failed;
  const fs::path target = fs::weakly_canonical(path, failed);
  if (!failed && IsOwnName(target.filename()) && IsSame(target.parent_path(), folder)) return true;
  // Its name may be another one: the own file is a link, or the operator's is.
  fs::directory_iterator entry(folder, failed);
  for (const fs::directory_iterator end; !failed && entry != end; entry.increment(failed)) {
    if (IsOwnName(entry->path().filename()) && IsSame(entry->path(), path)) return true;
  }
  return false;
}

}  // namespace kelvo
