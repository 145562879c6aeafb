#include "project/identity.h"

namespace kelvo {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

std::string WithoutOuterBlanks(std::string_view name) {
  const std::size_t first = name.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return std::string(name.substr(first, name.find_last_not_of(kBlanks) - first + 1));
}

NameKey NameKeyOf(const ProjectRecord& record) {
  return {record.kind, WithoutOuterBlanks(NameOf(record))};
}

std::optional<std::size_t> IdentityField(const KindRow& kind) {
  switch (kind.identity) {
    case KindRow::Identity::Name:
      return kind.name;
    case KindRow::Identity::Number:
      return kind.number;
    case KindRow::Identity::Single:
      break;
  }
  return std::nullopt;
}

std::optional<NameKey> IdentityOf(const ProjectRecord& record) {
  const KindRow& kind = RowOf(record.kind);
  if (kind.identity == KindRow::Identity::Name) {
    NameKey key = NameKeyOf(record);
    return key.second.empty() ? std::nullopt : std::optional(std::move(key));
  }
  const auto number = IdentityField(kind) ? NumberOf(record) : std::nullopt;
  return number ? std::optional(NameKey(record.kind, std::to_string(*number))) : std::nullopt;
}

}  // namespace kelvo
