#include "project/notation.h"

#include "settings/macro_text.h"

namespace kelvo {
namespace {

constexpr std::string_view kHex = "0123456789ABCDEF";
constexpr unsigned char kEscape = 0x1B;
constexpr unsigned char kSoftHyphen = 0xAD;

// How long the sequence is that begins here; 0 for none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

// The second byte tells forms that are too long, surrogates, and what is beyond Unicode.
bool SecondFits(unsigned char lead, unsigned char second) {
  const unsigned char first = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char last = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  return second >= first && second <= last;
}

std::size_t ValidSequence(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = SequenceLength(lead);
  if (length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if (i == 1 ? !SecondFits(lead, next) : (next & 0xC0) != 0x80) return 0;
  }
  return length;
}

bool Unseen(unsigned code) {
  return code < 0x20 || (code >= 0x7F && code <= 0xA0) || code == kSoftHyphen;
}

void AppendCode(std::string& out, unsigned code) {
  if (code == kEscape) {
    out += "\\e";
    return;
  }
  out += "\\x";
  out += kHex[code >> 4];
  out += kHex[code & 15];
}

// A character of the first 256, as the UTF-8 that stands here; above them 256.
unsigned CodeAt(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return lead;
  if ((lead != 0xC2 && lead != 0xC3) || text.size() < 2) return 256;
  return ((lead & 3U) << 6) | (static_cast<unsigned char>(text[1]) & 0x3FU);
}

void AppendUtf8(std::string& out, unsigned code) {
  if (code >= 0x80) out += static_cast<char>(0xC0 | (code >> 6));
  out += static_cast<char>(code >= 0x80 ? 0x80 | (code & 0x3F) : code);
}

// One escape behind its backslash; false when it is none.
bool TakeEscape(std::string_view& text, std::string& out) {
  const char kind = text.empty() ? '\0' : text.front();
  if (kind == '\\' || kind == 'e') {
    out += kind == 'e' ? static_cast<char>(kEscape) : kind;
    text.remove_prefix(1);
    return true;
  }
  if (kind != 'x' || text.size() < 3) return false;
  const std::size_t high = kHex.find(text[1]);
  const std::size_t low = kHex.find(text[2]);
  if (high == std::string_view::npos || low == std::string_view::npos) return false;
  AppendUtf8(out, static_cast<unsigned>(high * 16 + low));
  text.remove_prefix(3);
  return true;
}

}  // namespace

std::size_t Utf8Length(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = ValidSequence(text.substr(at));
    if (length == 0) break;
    at += length;
  }
  return at;
}

std::string Notation(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 8);
  for (std::size_t at = 0; at < text.size();) {
    const unsigned code = CodeAt(text.substr(at));
    const std::size_t length = code >= 0x80 && code < 256 ? 2 : 1;
    if (Unseen(code)) {
      AppendCode(out, code);
    } else {
      if (code == '\\') out += '\\';
      out += text.substr(at, length);
    }
    at += length;
  }
  return out;
}

std::optional<std::string> PlainNotation(std::string_view notation) {
  std::string out;
  out.reserve(notation.size());
  while (!notation.empty()) {
    const std::size_t escape = std::min(notation.find('\\'), notation.size());
    out += notation.substr(0, escape);
    notation.remove_prefix(escape);
    if (notation.empty()) break;
    notation.remove_prefix(1);
    if (!TakeEscape(notation, out)) return std::nullopt;
  }
  return out;
}

std::string JsonString(std::string_view text) {
  std::string out = "\"";
  for (const char c : Notation(text)) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

// What ends a command, and what begins one, is ASCII: no character is cut.
std::vector<std::string_view> CommandPieces(std::string_view text) {
  std::vector<std::string_view> pieces;
  std::size_t at = 0;
  const auto take = [&](std::size_t past) {
    if (past > at) pieces.push_back(text.substr(at, past - at));
    at = past;
  };
  for (const PlacedCommand& command : PlacedCommands(text)) {
    take(command.begin);
    take(command.next);
  }
  take(text.size());
  return pieces;
}

}  // namespace kelvo
