#pragma once

#include <string>

#include "cli/content.h"
#include "project/project.h"

namespace kelvo::cli {

/// Whether a file is meant to be a project.
bool LooksLikeProject(const std::string& path, const std::string& bytes);

/// Reads a project; throws std::runtime_error, naming the file, line and reason.
Project ProjectFrom(const std::string& path, const std::string& bytes);

/// What of a project can go to a Terminal.
void AddProject(Contents& contents, const std::string& path, const Project& project,
                TerminalTraits traits);

}  // namespace kelvo::cli
