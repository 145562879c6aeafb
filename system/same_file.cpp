#include "system/same_file.h"

#include <sys/stat.h>

namespace kelvo {

bool IsStillAt(const std::string& path, int file) {
  struct stat opened {};
  struct stat named {};
  return fstat(file, &opened) == 0 && lstat(path.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

}  // namespace kelvo
