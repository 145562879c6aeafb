#include "keyboards/key_codes.h"

#include <array>
#include <charconv>

#include "base/val.h"

namespace kelvo {

std::string HexCode(std::int32_t number) {
  std::array<char, 8> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), static_cast<std::uint32_t>(number), 16)
          .ptr;
  std::string hex(text.data(), end);
  for (char& c : hex) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return hex;
}

std::vector<std::string_view> TableFields(std::string_view table) {
  table = table.substr(0, table.find(';'));
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t comma = table.find(',');
    fields.push_back(table.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    table.remove_prefix(comma + 1);
  }
}

double HexField(std::string_view text) { return Val(std::string("&H").append(text)); }

std::string TableNumber(std::string_view numberField) { return NumberText(Val(numberField)); }

}  // namespace kelvo
