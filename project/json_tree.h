#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "project/project.h"

namespace kelvo {

/// A value of a JSON text with the place where it begins.
struct JsonNode {
  enum class Type : std::uint8_t { Null, Bool, Whole, Real, String, Array, Object };
  Type type = Type::Null;
  std::size_t offset = 0;  ///< in bytes, from 0
  bool yes = false;
  std::int64_t whole = 0;
  double real = 0;
  std::string text;
  std::vector<JsonNode> items;     ///< of an array, or the members' values
  std::vector<std::string> names;  ///< of the members, each once

  /// A member's value; nullptr without it.
  const JsonNode* Find(std::string_view name) const;
};

struct JsonFault {
  std::size_t offset = 0;
  std::string reason;  ///< German, UTF-8
};
struct JsonStopped {};

/// Deeper than this nothing is read.
inline constexpr std::size_t kJsonDepth = 200;

std::variant<JsonNode, JsonFault, JsonStopped> ReadJson(std::string_view text,
                                                        const ProjectProgress& progress);

}  // namespace kelvo
