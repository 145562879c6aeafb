#include "base/wire_text.h"

namespace kelvo {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

void AppendUtf8(std::string& out, unsigned code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

void AppendHex(std::string& out, unsigned char byte) {
  out += kHexDigits[byte >> 4];
  out += kHexDigits[byte & 15];
}

}  // namespace

std::string ScreenText(std::string_view wire) {
  std::string out;
  out.reserve(wire.size());
  for (const char c : wire) AppendUtf8(out, static_cast<unsigned char>(c));
  return out;
}

std::optional<std::string> WireText(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      out += static_cast<char>(lead);
      continue;
    }
    // Only the two-byte forms of codes 128..255 fit.
    if ((lead != 0xC2 && lead != 0xC3) || i + 1 == utf8.size()) return std::nullopt;
    const auto next = static_cast<unsigned char>(utf8[++i]);
    if ((next & 0xC0) != 0x80) return std::nullopt;
    out += static_cast<char>(((lead & 3) << 6) | (next & 0x3F));
  }
  return out;
}

std::string ReadableText(std::string_view wire) {
  std::string out;
  for (const char c : wire) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20) {
      AppendUtf8(out, kControlGlyphs[code]);
    } else if (code == 0x7F) {
      AppendUtf8(out, kDeleteGlyph);
    } else if (code > 0x7F && code < 0xA0) {
      out += '<';
      AppendHex(out, code);
      out += '>';
    } else {
      AppendUtf8(out, code);
    }
  }
  return out;
}

std::string HexText(std::string_view wire) {
  std::string out;
  for (const char c : wire) {
    if (!out.empty()) out += ' ';
    AppendHex(out, static_cast<unsigned char>(c));
  }
  return out;
}

}  // namespace kelvo
