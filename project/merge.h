#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "project/project.h"

namespace kelvo {

/// Which record of `others` is the same as each of `records`, whatever it holds. All are of one
/// kind.
std::vector<std::optional<std::size_t>> Matched(const std::vector<const ProjectRecord*>& records,
                                                const std::vector<const ProjectRecord*>& others);

/// What both sides have made of a text since `base`, line by line; nothing where both have changed
/// the same place.
std::optional<std::vector<std::string>> MergedLines(const std::vector<std::string>& base,
                                                    const std::vector<std::string>& one,
                                                    const std::vector<std::string>& other);
/// The same of a record, field by field, and of its commands one by one.
std::optional<ProjectRecord> MergedRecord(const ProjectRecord& base, const ProjectRecord& one,
                                          const ProjectRecord& other);

}  // namespace kelvo
