#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "project/project.h"

// What tells one record of a kind from another.

namespace kelvo {

/// Blanks around a name tell nobody one record from another: names are compared without them.
std::string WithoutOuterBlanks(std::string_view name);

/// A name as it is compared.
using NameKey = std::pair<ProjectKind, std::string>;
NameKey NameKeyOf(const ProjectRecord& record);

/// The index of the field that tells the records of a kind apart; nothing where there is only one.
std::optional<std::size_t> IdentityField(const KindRow& kind);
/// What only one record of its kind should have: its name as it is compared, or its number. Nothing
/// where it has none.
std::optional<NameKey> IdentityOf(const ProjectRecord& record);

}  // namespace kelvo
