#include "system/process_name.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace kelvo {
namespace {

constexpr std::string_view kSigns = " -_.+:/";  // beside letters and digits

bool IsStrange(char c) {
  const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return !plain && kSigns.find(c) == kSigns.npos;
}

}  // namespace

std::string ProcessName(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/comm");
  std::string name;
  std::getline(file, name);
  std::replace_if(name.begin(), name.end(), IsStrange, '?');
  return name;
}

}  // namespace kelvo
