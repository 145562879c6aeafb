#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "project/project.h"

namespace kelvo {

/// Which record of `others` is the same as each of `records`, whatever it holds. All are of one
/// kind.
std::vector<std::optional<std::size_t>> Matched(const std::vector<const ProjectRecord*>& records,
                                                const std::vector<const ProjectRecord*>& others);

/// Which lines of two texts stand side by side; nothing where one of them has none there.
using LinePair = std::pair<std::optional<std::size_t>, std::optional<std::size_t>>;
std::vector<LinePair> AlignedLines(const std::vector<std::string>& one,
                                   const std::vector<std::string>& other);

/// What both sides have made of a text since `base`, line by line; nothing where both have changed
/// the same place.
std::optional<std::vector<std::string>> MergedLines(const std::vector<std::string>& base,
                                                    const std::vector<std::string>& one,
                                                    const std::vector<std::string>& other);
/// The same of a record, field by field, and of its commands one by one.
std::optional<ProjectRecord> MergedRecord(const ProjectRecord& base, const ProjectRecord& one,
                                          const ProjectRecord& other);

}  // namespace kelvo
