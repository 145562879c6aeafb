#pragma once

#include <string>
#include <vector>

#include "cli/options.h"
#include "cli/outside.h"

namespace kelvo::cli {

/// The program: does what the arguments (without its own name) say.
Status Run(const std::vector<std::string>& arguments, const Outside& outside);

}  // namespace kelvo::cli
