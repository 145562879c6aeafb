#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvo {

std::string Base64(std::string_view bytes);
/// Nothing for what is none.
std::optional<std::string> FromBase64(std::string_view text);

}  // namespace kelvo
