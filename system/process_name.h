#pragma once

#include <sys/types.h>

#include <string>

namespace kelvo {

/// What a process calls itself, which may be anything: signs that do not belong into a program's
/// name are '?'. Empty where it has no name for us.
std::string ProcessName(pid_t process);

}  // namespace kelvo
