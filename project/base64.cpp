#include "project/base64.h"

#include <cstdint>

namespace kelvo {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kFill = '=';

}  // namespace

std::string Base64(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i > group.size() ? kFill : kDigits[bits >> (18 - 6 * i) & 63U];
    }
  }
  return text;
}

std::optional<std::string> FromBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t fill = 0;
  while (fill < 2 && text.ends_with(kFill)) {
    text.remove_suffix(1);
    ++fill;
  }
  std::string bytes;
  std::uint32_t bits = 0;
  std::size_t count = 0;
  for (const char c : text) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = (bits << 6 | static_cast<std::uint32_t>(digit)) & 0xFFFFFFU;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 255U);
  }
  return bytes;
}

}  // namespace kelvo
