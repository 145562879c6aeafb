#include "keyboards/key_display.h"

#include <array>
#include <cstdio>

namespace kelvo {
namespace {

constexpr int kKeyCount = 64;

std::string PositionText(unsigned char code) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "$%X", code);
  return text.data();
}

}  // namespace

void KeyDisplay::Show(std::string_view received) {
  if (received.empty()) return;
  grid_.PaintKey(KeyHighlightIndex, KeyColour::White);
  const auto code = static_cast<unsigned char>(received.front());
  if (code > 127) {
    ShowPosition(code);
  } else {
    ShowCharacter(received);
  }
}

void KeyDisplay::Release() {
  grid_.PaintKey(KeyHighlightIndex, KeyColour::White);
  grid_.SetKlartext({});
}

void KeyDisplay::ShowPosition(unsigned char code) {
  const int column = code & 7;
  const int row = (code & 112) / 16;
  KeyHighlightIndex = column * 8 + row;
  grid_.PaintKey(KeyHighlightIndex, KeyColour::LightBlue);
  grid_.SetKeyText(KeyHighlightIndex, PositionText(code));
}

void KeyDisplay::ShowCharacter(std::string_view received) {
  for (int index = 0; index < kKeyCount; ++index) {
    if (grid_.KeyText(index) != received) continue;
    KeyHighlightIndex = index;
    break;
  }
  grid_.PaintKey(KeyHighlightIndex, KeyColour::LightBlue);
  const auto code = static_cast<unsigned char>(received.front());
  grid_.SetKlartext(code >= 32 ? grid_.Klartext() + std::string(received)
                               : "&" + std::to_string(code));
}

}  // namespace kelvo
