#include "sheet/characters.h"

#include "base/wire_text.h"
#include "keyboards/key_codes.h"

namespace kelvo {
namespace {

constexpr int kFirstVisible = 33;
constexpr int kDelete = 127;
constexpr int kFirstLatin = 160;
constexpr int kSoftHyphen = 173;

constexpr const char* kControlNames[] = {
    "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "TAB", "LF",
    "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
    "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US",  "Leerzeichen"};

// Of Latin-1 two characters cannot be seen: a blank and a hyphen that only ends lines.
constexpr std::string_view kHardBlank = "\xC2\xA0";
constexpr std::string_view kHyphen = "\xC2\xAD";

}  // namespace

std::string PrintedWords(std::string_view words) {
  std::string printed;
  for (std::size_t at = 0; at < words.size();) {
    const std::string_view rest = words.substr(at);
    if (rest.starts_with(kHardBlank) || rest.starts_with(kHyphen)) {
      printed += rest.starts_with(kHyphen) ? "<AD>" : "<A0>";
      at += kHyphen.size();
      continue;
    }
    const auto code = static_cast<unsigned char>(words[at++]);
    if (code < ' ' || code == kDelete) {
      printed += ReadableText(words.substr(at - 1, 1));
    } else {
      printed += static_cast<char>(code);
    }
  }
  return printed;
}

std::string PrintedText(std::string_view wire) { return PrintedWords(ReadableText(wire)); }

std::string CharacterName(int code) {
  if (code < 0 || code > 255) return "?";
  if (code < kFirstVisible) return kControlNames[code];
  if (code == kDelete) return "DEL";
  if (code == kFirstLatin) return "festes Leerzeichen";
  if (code == kSoftHyphen) return "weicher Trennstrich";
  return PrintedText(std::string(1, static_cast<char>(code)));
}

std::string CodeText(int code) {
  return std::to_string(code) + (code < 16 ? " · $0" : " · $") + HexCode(code);
}

}  // namespace kelvo
